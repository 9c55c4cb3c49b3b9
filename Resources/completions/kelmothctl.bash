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

_kelmothctl() {
    local commands='list read watch doctor'
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
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
        return
    fi
    for given in "${words[@]:1:${#words[@]}-2}"; do
        [[ " $commands " == *" $given "* ]] && return
    done
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word")
}

complete -F _kelmothctl kelmothctl
