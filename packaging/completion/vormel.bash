# Completion of vormel's arguments in bash.
_vormel() {
    local cur=${COMP_WORDS[COMP_CWORD]} word
    local only_files=no
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ $word == -- ]] && only_files=yes
    done
    compopt -o filenames 2>/dev/null
    if [[ $cur == -* && $only_files == no ]]; then
        mapfile -t COMPREPLY < <(compgen -W '--help --version --' -- "$cur")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
    fi
}
complete -F _vormel vormel
