# bash completion for kelmothctl, which itself knows what may follow

_kelmothctl() {
    local line=${COMP_LINE:0:COMP_POINT} word
    local -a words
    # The shell's own words are cut at colons and equals signs.
    read -ra words <<< "$line"
    [[ $line == *[[:space:]] ]] && words+=('')
    word=${words[-1]}
    mapfile -t COMPREPLY < <(kelmothctl complete "${words[@]:1}" 2> /dev/null)
    if ((!${#COMPREPLY[@]})) && [[ $line =~ [[:space:]](export|import)[[:space:]] ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        compopt -o filenames 2> /dev/null
        return
    fi
    # A key comes behind the colon, another model behind a comma.
    if [[ ${COMPREPLY[*]} == *: || ${words[-2]-} == --simulate || $word == --simulate=* ]]; then
        compopt -o nospace 2> /dev/null
    fi
    # The shell replaces only what stands after the last of these.
    if [[ $word == *[:=]* ]]; then
        COMPREPLY=("${COMPREPLY[@]#"${word%"${word##*[:=]}"}"}")
    fi
}

complete -F _kelmothctl kelmothctl
