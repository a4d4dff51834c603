#!/usr/bin/env bash
# Unpacks the armhf libraries of packages.txt into a folder, for cmake/armhf-toolchain.cmake to find. The packages
# are not installed and apt's own lists are left alone, so the machine need not become a multiarch one.
# Usage: cmake/armhf-sysroot.sh [FOLDER]        default: build/armhf-sysroot
set -euo pipefail

source=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
sysroot=${1:-$source/build/armhf-sysroot}
crossLibraries=/usr/arm-linux-gnueabihf/lib # of the packages libc6-armhf-cross and libstdc++6-armhf-cross

fail() {
    echo "armhf-sysroot: $*" >&2
    exit 1
}

[ -e $crossLibraries/ld-linux-armhf.so.3 ] || fail "the cross compiler is missing: install g++-arm-linux-gnueabihf"

mapfile -t packages < <(awk '!/^#/ && / armhf( |$)/ {print $1}' "$source/packages.txt")
stamp=$sysroot/.packages
if [ -e "$stamp" ] && [ "$(cat "$stamp")" = "${packages[*]}" ]; then
    exit 0
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/lists/partial" "$work/cache/archives/partial" "$work/debs"
touch "$work/status"
chmod -R a+rwX "$work" # apt fetches as its own user
apt=(apt-get -q -o APT::Architecture=armhf -o APT::Architectures=armhf -o Dir::State::Lists="$work/lists"
    -o Dir::State::status="$work/status" -o Dir::Cache="$work/cache" -o APT::Sandbox::User=root)

# One archive of the machine's may have no armhf index; whether the packages were found shows below.
"${apt[@]}" update || echo "armhf-sysroot: not every package index could be read" >&2
(cd "$work/debs" && "${apt[@]}" download "${packages[@]/%/:armhf}") || fail "cannot download ${packages[*]}"

rm -rf "$sysroot"
mkdir -p "$sysroot/lib"
for package in "$work"/debs/*.deb; do
    dpkg -x "$package" "$sysroot"
done
# The C and C++ run-time libraries where qemu's -L looks for them.
ln -s $crossLibraries/*.so* "$sysroot/lib/"
echo "${packages[*]}" >"$stamp"
