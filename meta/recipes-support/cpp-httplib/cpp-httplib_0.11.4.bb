SUMMARY = "HTTP server and client library for C++"
HOMEPAGE = "https://github.com/yhirose/cpp-httplib"
LICENSE = "MIT"
LIC_FILES_CHKSUM = "file://LICENSE;md5=1321bdf796c67e3a8ab8e352dd81474b"

SRC_URI = "git://github.com/yhirose/cpp-httplib.git;protocol=https;branch=master;destsuffix=${BP}"
SRCREV = "7992b148969fbf8093230b37a6a36c2f61135937"

DEPENDS = "openssl brotli zlib"
inherit meson pkgconfig python3native

# A shared library with pkg-config's file, as distributions have it.
EXTRA_OEMESON = "-Dcpp-httplib_compile=true -Dcpp-httplib_openssl=enabled -Dcpp-httplib_zlib=enabled \
    -Dcpp-httplib_brotli=enabled"
