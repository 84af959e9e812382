# bash completion for webarchive(1)

_webarchive() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} IFS=$'\n' options
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W $'list\ncat\ncheck\nextract\ncreate\n--help\n--version' -- "$current")
        return
    fi
    case ${COMP_WORDS[1]} in
        list) options=$'--json' ;;
        cat) options=$'--frame' ;;
        check) options=$'--json\n--strict' ;;
        extract) options=$'--force\n--mhtml' ;;
        create) options=$'--root\n--url\n--strict\n--xml' ;;
        *) return ;;
    esac
    case $previous in
        --frame | --url) return ;;
        --root) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- "$current"); return ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options"$'\n--help' -- "$current")
        return
    fi
    compopt -o filenames
    if [ "${COMP_WORDS[1]}" = create ]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X '!*.webarchive' -- "$current")
    fi
} && complete -F _webarchive webarchive
