# shellcheck shell=bash
# Sourced by demo and check: titled steps with logs, and the Debian packages that they need. Runs in the source tree.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit
logs=$root/build/logs
summary=()
failures=0

if [ -t 1 ]; then
    bold=$'\e[1m' red=$'\e[31m' green=$'\e[32m' plain=$'\e[0m'
else
    bold='' red='' green='' plain=''
fi

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# step TITLE COMMAND...: runs a command with its output in build/logs, of which a failure shows the end.
step() {
    local title=$1 begin=$SECONDS result=ok colour=$green log line
    shift
    log=$logs/$(tr -cs '[:alnum:]\n' - <<<"${title,,}").log
    mkdir -p "$logs"
    printf '%s' "$bold==> $title$plain "
    if ! "$@" >"$log" 2>&1 </dev/null; then
        result=FAILED colour=$red
        failures=$((failures + 1))
    fi
    line=$(printf '%-34s %-6s %5d s' "$title" $result $((SECONDS - begin)))
    summary+=("$colour$line$plain")
    echo "$colour$result$plain ($((SECONDS - begin)) s)"
    grep -E '^[0-9]+% tests passed' "$log" || true
    [ $result = ok ] && return
    tail -n 60 "$log" | sed 's/^/    /'
    echo "    (the whole log: ${log#"$PWD"/})"
    return 1
}

# Prints what became of every step, and gives the script's exit status.
summarise() {
    printf '\n%s\n' "${bold}Summary$plain"
    printf '%s\n' "${summary[@]}"
    printf '%-34s %-6s %5d s\n' total "" $SECONDS
    [ $failures -eq 0 ]
}

# packagesFor GROUP...: the names in packages.txt that belong to one of the groups.
packagesFor() {
    local group
    for group; do
        awk -v group="$group" '!/^#/ {for (i = 2; i <= NF; i++) if ($i == group) print $1}' "$root/packages.txt"
    done | sort -u
}

# installPackages GROUP...: calls apt only for what is not installed yet.
installPackages() {
    local package missing=() sudo=()
    for package in $(packagesFor "$@"); do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    if [ ${#missing[@]} -eq 0 ]; then
        echo "All packages are installed."
        return
    fi
    echo "To be installed: ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Installing packages needs root or sudo. As root: apt-get install ${missing[*]}"
            return 1
        fi
        sudo=(sudo)
    fi
    # An archive that this project does not need may be unreachable: whether the packages are found decides.
    "${sudo[@]}" apt-get update || echo "Not every package index could be read."
    if ! "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends "${missing[@]}"; then
        echo "The packages could not be installed. Is the package archive reachable, and is this Debian 12?"
        return 1
    fi
}

# The compiler cache where there is one. Objects of two checkouts differ in debug paths only: let them share.
useCompilerCache() {
    command -v ccache >/dev/null || return 0
    export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_NOHASHDIR=1 CCACHE_BASEDIR=$root
}

# build PRESET [OPTION...]: configures and builds, with options for Ninja.
build() {
    cmake --preset "$1" && cmake --build --preset "$1" -- "${@:2}"
}
