# bash completion for kelmoth

_kelmoth() {
    local word=$2 previous=$3
    case $previous in
        --simulate)
            mapfile -t COMPREPLY < <(compgen -W 'basilisk-v3 basilisk-v3-pro-wired basilisk-v3-pro-wireless
                basilisk-v3-pro basilisk-v3-x-hyperspeed basilisk-v3-x-hyperspeed-2 unknown' -- "$word")
            ;;
        --screenshots)
            mapfile -t COMPREPLY < <(compgen -d -- "$word")
            compopt -o filenames 2> /dev/null
            ;;
        --scene) ;;
        *)
            mapfile -t COMPREPLY < <(compgen -W '--show --quit --simulate --screenshots --scene --verbose --help
                --version' -- "$word")
            ;;
    esac
}

complete -F _kelmoth kelmoth
