# SPDX-License-Identifier: MIT
# Completion of trevallo for bash. What there is to complete is read from the program's own help.
# shellcheck shell=bash disable=SC2207

# _trevallo_commands: the commands that a help on standard input lists
_trevallo_commands() { sed -nE '/^Subcommands:/,/^$/s/^  ([a-z]+) .*/\1/p'; }

_trevallo() {
    local program=$1 word=$2 before=$3 command=() help commands values='' i

    # --option=value comes as three words
    [[ $word != = ]] || word=''
    [[ $before != = ]] || before=${COMP_WORDS[COMP_CWORD - 2]}

    help=$("$program" --help 2>/dev/null)
    for ((i = 1; i < COMP_CWORD; ++i)); do
        grep -qxF -e "${COMP_WORDS[i]}" <(_trevallo_commands <<<"$help") || continue
        command+=("${COMP_WORDS[i]}")
        help=$("$program" "${command[@]}" --help 2>/dev/null)
    done
    commands=$(_trevallo_commands <<<"$help")

    # what may follow the option before: the word behind its name in the help, with a choice between bars
    [[ ! $before =~ ^--?[a-z0-9-]+$ ]] || values=$(sed -nE "s/^  (-.,)?$before(,--[a-z0-9-]+)? ([^ ]+).*/\3/p" <<<"$help")

    compopt -o filenames 2>/dev/null
    case $values in
    DIR*) COMPREPLY=($(compgen -d -- "$word")) ;;
    FILE*) COMPREPLY=($(compgen -f -- "$word")) ;;
    ?*) COMPREPLY=($(compgen -W "$(tr '|' '\n' <<<"$values" | grep -xE '[a-z0-9-]+')" -- "$word")) ;;
    *)
        if [[ $word == -* ]]; then
            COMPREPLY=($(compgen -W "$(sed -nE 's/^  (-., ?)?(--[a-z0-9-]+).*/\2/p' <<<"$help")" -- "$word"))
        elif [[ $commands ]]; then
            COMPREPLY=($(compgen -W "$commands" -- "$word"))
        else
            COMPREPLY=($(compgen -f -- "$word"))
        fi
        ;;
    esac
}

complete -F _trevallo trevallo
