#!/usr/bin/env bash
# Compares a built library's binary interface with what was released. See usage below and docs/abi.md.
set -uo pipefail

# shellcheck source=cmake/steps.sh
. "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

usage() {
    cat <<'TEXT'
Usage: cmake/abi.sh compare|record x86-64|armhf

  compare   fails when a function, variable or structure that abi/<machine>.abi holds is gone or changed in the library
            of that machine's build (build/dev, build/armhf), and tells what; new ones are no difference
  record    writes abi/<machine>.abi from that library

Needs abidw and abidiff of the package abigail-tools.
TEXT
}

[ $# -eq 2 ] || { usage >&2 && exit 2; }
case $2 in
x86-64) library=build/dev/lib/libProviderHelper.so.0 ;;
armhf) library=build/armhf/lib/libProviderHelper.so.0 ;;
*) usage >&2 && exit 2 ;;
esac
baseline=abi/$2.abi
# What clients see: exported names, and the types that the public headers define.
interface=(--exported-interfaces-only --drop-private-types)

[ -f "$library" ] || fail "there is no $library: build it first"
case $1 in
compare)
    [ -f "$baseline" ] || fail "there is no $baseline: cmake/abi.sh record $2 writes it"
    abidiff "${interface[@]}" --headers-dir2 include --no-added-syms "$baseline" "$library" ||
        fail "the interface is not the released one; docs/abi.md says what may change"
    ;;
record)
    mkdir -p abi && abidw "${interface[@]}" --headers-dir include --no-show-locs --no-corpus-path --no-comp-dir-path \
        --no-parameter-names --type-id-style hash --out-file "$baseline" "$library" &&
        sed -i -E "s|path='[^']*/src/|path='src/|" "$baseline" # no matter where the tree was built
    ;;
*) usage >&2 && exit 2 ;;
esac
