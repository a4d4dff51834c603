SUMMARY = "SQLite3 wrapper for C++"
HOMEPAGE = "https://github.com/SRombauts/SQLiteCpp"
LICENSE = "MIT"
LIC_FILES_CHKSUM = "file://LICENSE.txt;md5=2dada23ec19c1989030af57b8040496a"

SRC_URI = "git://github.com/SRombauts/SQLiteCpp.git;protocol=https;branch=master;destsuffix=${BP}"
SRCREV = "bd5bf7996adaafad736ec5b4a185e9822edbe95c"

DEPENDS = "sqlite3"
inherit cmake

EXTRA_OECMAKE = "-DSQLITECPP_INTERNAL_SQLITE=OFF -DSQLITECPP_RUN_CPPLINT=OFF -DSQLITECPP_RUN_CPPCHECK=OFF"
# A static library, which the platform's libraries take in.
ALLOW_EMPTY:${PN} = "1"
