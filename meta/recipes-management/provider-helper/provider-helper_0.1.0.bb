SUMMARY = "Library behind the CIM providers of a BMC"
DESCRIPTION = "libProviderHelper turns a BMC's IPMI state, database and configuration into instances of DMTF's SMASH \
and DASH classes. With it come a CMPI provider module, a reference platform and an embedded broker."
LICENSE = "Apache-2.0"
LIC_FILES_CHKSUM = "file://${S}/LICENSE;md5=f2e636752827cae5206bed8a9ac9a8d9"

# The tree that this layer is part of.
inherit externalsrc
EXTERNALSRC = "${@os.path.abspath(d.getVar('THISDIR') + '/../../..')}"

# Programs of the build write the schema: they run under qemu-user.
inherit cmake-qemu pkgconfig
DEPENDS = "cli11 cpp-httplib curl freeipmi iniparser libxcrypt nlohmann-json openssl pugixml sqlite3 sqlitecpp"

# Vendors of a BMC: -DPH_INTEROP_NAMESPACE=... and -DPH_CMPI_INCLUDE_DIR=... as the object manager has them.
EXTRA_OECMAKE = "-DPH_BUILD_TESTS=OFF -DPH_BUILD_BENCH=OFF -DPH_SMALL=ON"

PACKAGES =+ "phctl ${PN}-platform ${PN}-providers"
FILES:${PN} = "${libdir}/libProviderHelper.so.*"
FILES:${PN}-platform = "${libdir}/lib*.so"
FILES:${PN}-providers = "${libdir}/cmpi ${datadir}/provider-helper/schema ${bindir}/deploy-check"
FILES:phctl = "${bindir}/phctl ${libdir}/phctl ${datadir}/provider-helper/models ${datadir}/bash-completion ${nonarch_libdir}/systemd"
FILES:${PN}-dev = "${includedir} ${libdir}/libProviderHelper.so ${libdir}/cmake ${libdir}/pkgconfig \
                   ${datadir}/provider-helper/examples"
# Their names have no version, and the linker's search is where they belong.
INSANE_SKIP:${PN}-platform = "dev-so"
RDEPENDS:${PN}-providers = "bash ${PN}"

# The library opens these by path.
do_install:append() {
    install -d ${D}${prefix}/local/lib
    ln -s ${libdir}/libProviderHelper.so.0 ${D}${prefix}/local/lib/libProviderHelper.so
    for library in libinterop_provider.so libEventLogDes.so; do
        ln -s ${libdir}/$library ${D}${prefix}/local/lib/$library
    done
}
FILES:${PN} += "${prefix}/local/lib/libProviderHelper.so"
FILES:${PN}-platform += "${prefix}/local/lib/libinterop_provider.so ${prefix}/local/lib/libEventLogDes.so"
