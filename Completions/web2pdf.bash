# bash completion for web2pdf(1)

_web2pdf() {
    local current=${COMP_WORDS[COMP_CWORD]} IFS=$'\n'
    compopt -o filenames
    case $COMP_CWORD in
        1) compopt +o filenames; mapfile -t COMPREPLY < <(compgen -W $'screen\nprint' -- "$current") ;;
        2) mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X '!*.webarchive' -- "$current") ;;
        3) mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X '!*.pdf' -- "$current") ;;
    esac
} && complete -F _web2pdf web2pdf
