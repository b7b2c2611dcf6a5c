# bash completion for velmora-cli. The program's own help tells its commands and options.

# The commands (a line of the part "Subcommands:") and options of the help that the arguments choose.
_velmora_cli_words() {
    velmora-cli "$@" --help 2>/dev/null | awk '
        /^[A-Z]/ { commands = /^Subcommands:/ }
        commands && /^  [a-z]/ { print $1 }
        match($0, /^  (-[a-z],)?--[a-z-]+/) { sub(/.*,/, "", $1); print $1 }'
}

# The words that fit behind an option; fails behind anything that isn't an option with a value.
_velmora_cli_values() {
    case $1 in
        --program-dir | --folder) compgen -d -- "$2" || true ;;
        --file | --failed-to) compgen -f -- "$2" || true ;;
        --levels) compgen -W "phone company equipment" -- "$2" || true ;;
        --as | --company | --equipment | --from | --to | --port | --separator | --phone | --phones | --parameter | --at-once | --pause) ;;
        *) return 1 ;;
    esac
}

_velmora_cli() {
    local current=$2 values commands=() i
    COMPREPLY=()
    if values=$(_velmora_cli_values "$3" "$current"); then
        [ -z "$values" ] || mapfile -t COMPREPLY <<< "$values"
        [ "$3" = --levels ] || compopt -o filenames 2>/dev/null || true
        return
    fi
    for ((i = 1; i < COMP_CWORD; ++i)); do
        if _velmora_cli_values "${COMP_WORDS[i]}" "" >/dev/null; then
            ((++i))
        elif [[ ${COMP_WORDS[i]} != -* ]]; then
            commands+=("${COMP_WORDS[i]}")
        fi
    done
    mapfile -t COMPREPLY < <(
        compgen -W "$(_velmora_cli_words "${commands[@]}"; _velmora_cli_words | grep '^--')" -- "$current" | sort -u)
}

complete -F _velmora_cli velmora-cli
