# Bash completion of qx9ctl: the commands and subcommands are the ones its --help lists.
_qx9ctl() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]} words=() i
    case $prev in
        --db | --wire) mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
        --device) mapfile -t COMPREPLY < <(compgen -W "auto virtual $(compgen -G '/dev/hidraw*')" -- "$cur"); return ;;
    esac
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
            --db | --device | --wire) ((i++)) ;;
            -*) ;;
            *) words+=("${COMP_WORDS[i]}") ;;
        esac
    done
    local offered
    offered=$("${COMP_WORDS[0]}" "${words[@]}" --help 2>/dev/null | sed -n '/^Subcommands:/,$s/^  \([a-z-]*\) .*/\1/p')
    [ ${#words[@]} -eq 0 ] && offered+=" --db --device --wire --json --verbose --version"
    mapfile -t COMPREPLY < <(compgen -W "$offered --help" -- "$cur")
}
complete -F _qx9ctl qx9ctl
