# Completion of vormel's arguments in bash. Files are left to readline, which knows of quotes and blanks.
_vormel() {
    local cur=${COMP_WORDS[COMP_CWORD]} word
    COMPREPLY=()
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ $word == -- ]] && return
    done
    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '--help --version --' -- "$cur")
    fi
}
complete -o default -F _vormel vormel
