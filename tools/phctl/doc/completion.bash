# shellcheck shell=bash
# Bash completion for phctl: commands and options as its help has them, and the classes that it serves.

_phctl_commands() {
    phctl "$@" --help 2>/dev/null | sed -n '/^Subcommands:/,/^$/s/^  \([a-z][a-z, -]*[a-z]\)\(  .*\)\?$/\1/p' | tr -d ,
}
_phctl_options() {
    phctl "$@" --help 2>/dev/null | grep -oE -- '--[a-z-]+' | sort -u
}

_phctl() {
    local current=${COMP_WORDS[COMP_CWORD]} words=() word i
    if [ "${COMP_WORDS[COMP_CWORD - 1]}" = --bmc ]; then
        mapfile -t COMPREPLY < <(compgen -W "$(phctl bmcs 2>/dev/null | awk 'NR > 1 {print $1}')" -- "$current")
        return
    fi
    # The command and its own commands, up to the first argument.
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        if [ "$word" = --bmc ]; then
            ((++i))
            continue
        fi
        [[ $word == -* ]] && break
        _phctl_commands "${words[@]}" | tr ' ' '\n' | grep -qx -- "$word" || break
        words+=("$word")
    done
    local candidates
    if [[ $current == -* ]]; then
        candidates=$(_phctl_options "${words[@]}")
    else
        candidates=$(_phctl_commands "${words[@]}")
        if [ -z "$candidates" ]; then
            case ${words[*]} in
            bmc* | fru | metrics | monitor* | power | sel* | sensors | serve | sync*) ;;
            ?*) candidates=$(phctl classes 2>/dev/null | awk '/^CIM_/ {print $1}') ;;
            esac
        fi
    fi
    mapfile -t COMPREPLY < <(compgen -W "$candidates" -- "$current")
}
complete -o default -F _phctl phctl
