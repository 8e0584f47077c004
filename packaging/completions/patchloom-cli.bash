# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Completions of patchloom-cli for bash.

# _patchloom_cli_options COMMAND: the options of a command; without one, the program's
_patchloom_cli_options() {
    local table="--scale --space --table"
    case $1 in
        chart)
            echo "-h --help $table -d --device -p --paper -m --margins -s --patch -n --name -f --format --resolution" \
                "--compression --scale-mark -o --output" \
                "--clip --gaps --order --effort --force --lenient --presets --json -q --quiet"
            ;;
        convert) echo "-h --help $table -o --output --ids --force" ;;
        describe) echo "-h --help $table --json" ;;
        list) echo "-h --help --presets --json" ;;
        table)
            echo "-h --help --space --patches --fit -o --output --ink-limit --profile --whites --neutrals --ramps" \
                "--include --round --neutral-weight --seed -d --device -p --paper -m --margins -s --patch --presets" \
                "--force --json"
            ;;
        *) echo "-h --help --version" ;;
    esac
}

# _patchloom_cli_choices PROGRAM devices|papers [PRESETS]: the ids that the program lists, those of one's own included
_patchloom_cli_choices() {
    "$1" list "$2" ${3:+--presets "$3"} 2>/dev/null | sed -n -e '1d' -e '/^Lengths are/d' -e 's/ .*//p'
}

_patchloom_cli() {
    local program=$1 current=$2 option=$3 command="" presets="" i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
            chart | convert | describe | list | table) [[ -n $command ]] || command=${COMP_WORDS[i]} ;;
            --presets) presets=${COMP_WORDS[i + 1]} ;;
        esac
    done
    # bash splits --gaps=auto at the sign.
    if [[ $current == "=" ]]; then
        current=""
    elif [[ $option == "=" ]]; then
        option=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    local words="" takes_file=""
    case $command:$option in
        chart:-d | chart:--device | table:-d | table:--device) words=$(_patchloom_cli_choices "$program" devices "$presets") ;;
        chart:-p | chart:--paper | table:-p | table:--paper) words=$(_patchloom_cli_choices "$program" papers "$presets") ;;
        chart:-f | chart:--format) words="eps tiff pdf eps,tiff eps,pdf" ;;
        chart:--compression) words="none lzw deflate" ;;
        chart:--resolution) words="300 600 1200" ;;
        chart:--gaps) words="auto never always" ;;
        chart:--order) words="standard best" ;;
        chart:-o | chart:--output) takes_file=-d ;;
        convert:-o | convert:--output | convert:--ids | *:--presets) takes_file=-f ;;
        table:-o | table:--output | table:--profile | table:--include) takes_file=-f ;;
        table:--round) words="1 0.1 8bit" ;;
        table:-m | table:--margins | table:-s | table:--patch | table:--patches | table:--fit | table:--ink-limit) return ;;
        table:--whites | table:--neutrals | table:--ramps | table:--neutral-weight | table:--seed) return ;;
        *:--scale) words="1 100 255 65535" ;;
        *:--space) words="cmyk rgb" ;;
        *:--table | chart:-m | chart:--margins | chart:-s | chart:--patch | chart:-n | chart:--name | chart:--effort)
            return
            ;;
        *)
            if [[ $current == -* ]]; then
                words=$(_patchloom_cli_options "$command")
            elif [[ -z $command ]]; then
                words="chart convert describe list table"
            elif [[ $command == table ]]; then
                return
            elif [[ $command == list ]]; then
                words="devices papers"
            else
                takes_file=-f
            fi
            ;;
    esac
    if [[ -n $takes_file ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen "$takes_file" -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    fi
}
complete -F _patchloom_cli patchloom-cli
