#!/usr/bin/env bash
# Compares the sizes of what a BMC's flash has to hold with their budget. See usage below.
set -uo pipefail

# shellcheck source=cmake/steps.sh
. "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

usage() {
    cat <<'TEXT'
Usage: cmake/budget.sh [BUILD]

Strips the libraries of a 32-bit ARM build (default: build/armhf) and compares their sizes with the budget:

  libProviderHelper.so    what it has with the first classes, and for every further class of src/classes.inc a share
  the others              the provider module, the hooks, the support and the database library, together: likewise

Prints a table. Exit status: 0 when both are within their budget.
TEXT
}

case ${1-} in
--help | -h) usage && exit ;;
-*) usage >&2 && exit 2 ;;
esac
libraries=${1:-build/armhf}/lib

# Bytes.
firstClasses=26
libraryBudget=$((256 * 1024))
classShare=3000
othersClasses=45
othersBudget=$((256 * 1024))
othersShare=1000

stripped() { # FILE: its size
    local copy size
    copy=$(mktemp) || return
    arm-linux-gnueabihf-strip -o "$copy" "$1" && size=$(stat -c %s "$copy")
    rm -f "$copy"
    [ -n "${size-}" ] && echo "$size"
}

# Prints a line of the table, and whether it is within its budget.
line() { # NAME SIZE BUDGET
    local verdict="within"
    [ "$2" -le "$3" ] || verdict="beyond"
    printf '%-44s %7d of %7d bytes, %s\n' "$1" "$2" "$3" "$verdict"
    [ $verdict = within ]
}

classes=$(grep -c '^PH_CLASS(' src/classes.inc)
size=$(stripped "$libraries/libProviderHelper.so.0") || fail "there is no 32-bit ARM build in ${libraries%/lib}"
result=0
line "libProviderHelper.so, $classes classes" "$size" $((libraryBudget + classShare * (classes - firstClasses))) || result=1
total=0
for name in ProviderHelperProviders CIMAPIHooks CIMTRZHooks CIMOEMHooks phsupport smashdb; do
    size=$(stripped "$libraries/lib$name.so") || fail "there is no lib$name.so in $libraries"
    printf '  %-42s %7d bytes\n' "lib$name.so" "$size"
    total=$((total + size))
done
line "module, hooks, support and database" $total $((othersBudget + othersShare * (classes - othersClasses))) || result=1
exit $result
