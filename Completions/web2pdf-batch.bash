# bash completion for web2pdf-batch(1)

_web2pdf-batch() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} IFS=$'\n' options
    case $previous in
        -m | --mode) mapfile -t COMPREPLY < <(compgen -W $'print\nscreen' -- "$current"); return ;;
        -j | --jobs | --timeout | --retries | --shard) return ;;
        -o | --output | --base) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- "$current"); return ;;
        --report | --tool) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- "$current"); return ;;
    esac
    if [[ $current == -* ]]; then
        options=$'--output\n--mode\n--jobs\n--null\n--base\n--timeout\n--retries\n--retry-failed\n--no-resume\n--strict'
        options+=$'\n--shard\n--dry-run\n--quiet\n--report\n--xmp\n--attach\n--text\n--manifest\n--doctor\n--json\n--tool'
        mapfile -t COMPREPLY < <(compgen -W "$options"$'\n--help\n--version' -- "$current")
        return
    fi
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X '!*.webarchive' -- "$current")
} && complete -F _web2pdf-batch web2pdf-batch
