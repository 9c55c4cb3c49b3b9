# fish completion for kelmothctl, which itself knows what may follow

function __kelmothctl_complete
    set -l words (commandline -opc) "$(commandline -ct)"
    kelmothctl complete $words[2..-1] 2>/dev/null
end

complete -c kelmothctl -f -a '(__kelmothctl_complete)'
complete -c kelmothctl -F -n '__fish_seen_subcommand_from export import'
