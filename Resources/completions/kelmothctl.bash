# bash completion for kelmothctl

# Offers the models to simulate for the last name of a list, the names before it kept.
_kelmothctl_models() {
    local list=$1 before='' model
    local models='basilisk-v3 basilisk-v3-pro-wired basilisk-v3-pro-wireless basilisk-v3-pro
        basilisk-v3-x-hyperspeed basilisk-v3-x-hyperspeed-2'
    [[ $list == *,* ]] && before=${list%,*},
    local -a names=("${before}unknown")
    for model in $models; do
        names+=("$before$model" "$before$model:bluetooth")
    done
    mapfile -t COMPREPLY < <(compgen -W "${names[*]}" -- "$list")
    # The shell replaces only what stands after the last colon.
    if [[ $list == *:* && $COMP_WORDBREAKS == *:* ]]; then
        COMPREPLY=("${COMPREPLY[@]#"${list%:*}:"}")
    fi
    # Another name may follow.
    compopt -o nospace 2> /dev/null
}

# The words for an operand or an option of a change; all that any model knows.
_kelmothctl_words() {
    local change=$1 position=$2
    case $change:$position in
        :0) echo 'dpi stage light button lift-off' ;;
        dpi:0) echo '400 800 1600 3200 6400' ;;
        stage:0 | *:--stage) echo '1 2 3 4 5' ;;
        light:0) echo 'scroll_wheel logo underglow dpi_light' ;;
        *:--effect) echo 'off static breathing spectrum wave reactive starlight ripple' ;;
        *:--brightness) echo '0 25 50 75 100' ;;
        *:--profile) echo '0 1 2 3 4 5' ;;
        button:0) echo 'left right middle forward back dpi_up dpi_down scroll_up scroll_down clutch profile' ;;
        button:1)
            echo 'leftClick rightClick middleClick forward back scrollUp scrollDown doubleClick disabled' \
                dpiChange:{0..6} profileSwitch:{0..5} 'hypershift keyPress: scrollModeToggle other:'
            ;;
        lift-off:0) echo 'low medium high' ;;
    esac
}

# Offers words for "set"; the arguments are those after it, the last of them unfinished.
_kelmothctl_set() {
    local word=${!#} change='' position=0 takes=''
    while (($# > 1)); do
        if [[ -n $takes ]]; then
            takes=''
        elif [[ $1 == --@(stage|effect|color|brightness|profile|product|simulate) ]]; then
            takes=$1
        elif [[ $1 != -* && -z $change ]]; then
            change=$1
        elif [[ $1 != -* ]]; then
            position=$((position + 1))
        fi
        shift
    done
    mapfile -t COMPREPLY < <(compgen -W "$(_kelmothctl_words "$change" "${takes:-$position}")" -- "$word")
    # The shell replaces only what stands after the last colon.
    if [[ $word == *:* && $COMP_WORDBREAKS == *:* ]]; then
        COMPREPLY=("${COMPREPLY[@]#"${word%:*}:"}")
    fi
}

_kelmothctl() {
    local commands='list read set export import watch doctor'
    local options='--json --simulate --product --verbose --help --version'
    local products='0x0099 0x00aa 0x00ab 0x00ac 0x00b9 0x00ba'
    local line=${COMP_LINE:0:COMP_POINT} word previous given
    local -a words
    # The shell's own words are cut at colons and equals signs.
    read -ra words <<< "$line"
    [[ $line == *[[:space:]] ]] && words+=('')
    word=${words[-1]}
    previous=${words[-2]-}
    if [[ $word == --*=* ]]; then
        previous=${word%%=*}
        word=${word#*=}
    fi

    COMPREPLY=()
    case $previous in
        --simulate)
            _kelmothctl_models "$word"
            return
            ;;
        --product)
            mapfile -t COMPREPLY < <(compgen -W "$products" -- "$word")
            return
            ;;
    esac
    case " $line " in
        *' set light '*) options+=' --effect --color --brightness' ;;
        *' set button '*) options+=' --profile --hypershift' ;;
        *' set dpi '*) options+=' --stage' ;;
    esac
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
        return
    fi
    local -i at
    for ((at = 1; at < ${#words[@]} - 1; ++at)); do
        given=${words[at]}
        case $given in
            set)
                _kelmothctl_set "${words[@]:at + 1}"
                return
                ;;
            export | import)
                mapfile -t COMPREPLY < <(compgen -f -- "$word")
                compopt -o filenames 2> /dev/null
                return
                ;;
        esac
        [[ " $commands " == *" $given "* ]] && return
    done
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word")
}

complete -F _kelmothctl kelmothctl
