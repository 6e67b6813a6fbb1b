# Bash completion of qx9ctl. The program says what a word completes to (`qx9ctl __complete
# WORD…`, from the same grammar it parses with): commands, options, the words and key names the
# arguments take, ids from the database (--db), and "FILES<TAB>LEAD" for file names after LEAD.
_qx9ctl() {
    local breaks=${COMP_WORDBREAKS//[^=:]/} words=() i w join=0
    # The words as qx9ctl reads them: bash splits "--db=FILE" and "virtual:FILE" at = and :.
    for ((i = 1; i <= COMP_CWORD; i++)); do
        w=${COMP_WORDS[i]}
        if [[ -n $breaks && $w =~ ^[$breaks]+$ && ${#words[@]} -gt 0 ]]; then
            words[-1]+=$w
            join=1
        elif ((join)); then
            words[-1]+=$w
            join=0
        else
            words+=("$w")
        fi
    done
    ((${#words[@]})) || words=("")
    local cur=${words[-1]} keep= line lead
    # Readline replaces only what follows the last = or : of the word.
    [[ -n $breaks ]] && keep=${cur%"${cur##*[$breaks]}"}
    COMPREPLY=()
    while IFS= read -r line; do
        if [[ $line == FILES$'\t'* ]]; then
            lead=${line#FILES$'\t'}
            while IFS= read -r w; do COMPREPLY+=("${lead#"$keep"}$w"); done < <(compgen -f -- "${cur#"$lead"}")
            compopt -o filenames 2>/dev/null
        elif [[ $line == "$keep"* ]]; then
            COMPREPLY+=("${line#"$keep"}")
        fi
    done < <("${COMP_WORDS[0]}" __complete "${words[@]}" 2>/dev/null)
    [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *[:=] ]] && compopt -o nospace 2>/dev/null
    return 0
}
complete -F _qx9ctl qx9ctl
