#!/usr/bin/env bash
# Builds the Debian packages, and tries them: lintian, an installation in an empty root, a request there, and the
# removal. The packages are in build/packages/debs afterwards.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=$PWD/build/packages
root=$build/root

cmake --preset packages
cmake --build --preset packages
rm -rf "$build/debs" "$root"
cpack --config "$build/CPackConfig.cmake" -B "$build/debs"
rm -rf "$build/debs/_CPack_Packages"
lintian --fail-on error "$build"/debs/*.deb

# Nothing else is in that root: dependencies are the machine's, and scripts run outside of it.
inRoot() {
    dpkg --root="$root" --force-not-root --force-depends --force-script-chrootless --log="$build/dpkg.log" "$@"
}
mkdir -p "$root/var/lib/dpkg"/{info,updates,triggers}
touch "$root/var/lib/dpkg/status"
inRoot --install "$build"/debs/*.deb
packages=$(dpkg-query --admindir="$root/var/lib/dpkg" -W -f '${Package} ')
apt-get --quiet --simulate install "$build"/debs/*.deb >/dev/null || {
    echo "The packages' dependencies cannot be installed."
    exit 1
}

libraries=$(dirname "$(find "$root/usr/lib" -name libProviderHelper.so.0)")
sysroot=$(mktemp -d)
trap 'rm -rf "$sysroot"' EXIT
phctl() { LD_LIBRARY_PATH=$libraries PH_SYSROOT=$sysroot "$root/usr/bin/phctl" "$@"; }
phctl bmc create sample-server
phctl sync
phctl ei CIM_NumericSensor --properties ElementName,CurrentReading | grep 'CPU1 Temp'
[ "$(readlink "$root/usr/local/lib/libProviderHelper.so")" = "${libraries#"$root"}/libProviderHelper.so.0" ]

# shellcheck disable=SC2086 # names of packages
inRoot --purge $packages
left=$(find "$root" -path "$root/var/lib/dpkg" -prune -o ! -type d -print)
if [ -n "$left" ]; then
    echo "The removal has left:" "$left"
    exit 1
fi
