#compdef trevallo
# SPDX-License-Identifier: MIT
# Completion of trevallo for zsh. What there is to complete is read from the program's own help.

local program=$words[1] before=$words[CURRENT-1] current=$words[CURRENT] help listed values='' each
local -a command commands options choices

# --option=value is one word
if [[ $current == --*=* ]]; then
    before=${current%%=*}
    compset -P '*='
fi

for each in '' ${words[2,CURRENT-1]}; do
    [[ -z $each ]] || (( $commands[(Ie)$each] )) || continue
    command+=($each)
    help=$($program $command --help 2>/dev/null)
    commands=()
    if [[ $help == *Subcommands:* ]]; then
        listed=${${help#*Subcommands:$'\n'}%%$'\n\n'*}
        commands=(${${${(M)${(f)listed}:#  [a-z]*}#  }%% *})
    fi
done

# what may follow the option before: the word behind its name in the help, with a choice between bars
if [[ $before == -* ]]; then
    values=${${(M)${(f)help}:#  (|-?,)$before(|,--[a-z0-9-]#) [^ ]*}[1]}
    values=${${values#  }#* }
    values=${values%% *}
fi

case $values in
    (DIR*) _files -/ ;;
    (FILE*) _files ;;
    (?*)
        choices=(${(M)${(s:|:)values}:#[a-z0-9-]##})
        (( $#choices )) && compadd -- $choices || _message "$values"
        ;;
    (*)
        if [[ $current == -* ]]; then
            options=(${(M)${(f)help}:#  (|-?,( |))--[a-z]*})
            compadd -- --${^${options#*--}%%[^a-z0-9-]*}
        elif (( $#commands )); then
            compadd -- $commands
        else
            _files
        fi
        ;;
esac
