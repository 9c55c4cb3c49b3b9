#!/usr/bin/env bash
# Who may include whom: dependencies.bash ROOT. Prints each include against the rules; status 1 if there is one.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/files.bash"

root=${1:-.}

# A room, and what its files may include with quotes: rooms (with a slash at the end, their sub-rooms
# included), single files, or with "/*" the files of the room itself without sub-rooms. The longest
# room that a path begins with is its own.
readonly ours='
App/                App/ UI/ Program/ Core/ Platform/
CLI/                CLI/* CLI/Reports/ Program/ Core/ Platform/
CLI/Commands/       CLI/* CLI/Reports/ Program/ Core/ Platform/
CLI/Reports/        CLI/* CLI/Reports/ Program/ Core/ Platform/
Program/            Program/ Platform/
UI/                 UI/ Core/
Core/Device/        Core/Device/ Core/Services/L10n.h
Core/HID/           Core/HID/ Core/Device/ Core/Services/ Platform/*
Core/Services/      Core/Services/ Platform/*
Platform/           Platform/*
Platform/Linux/     Platform/Linux/ Platform/*
Platform/Qt/        Platform/Qt/ Platform/*
Platform/Simulated/ Platform/Simulated/ Platform/* Core/Device/ Core/HID/RazerProtocol.h
Testbed/            Testbed/ Core/ Platform/
Tests/              Tests/ Testbed/ App/ CLI/ Program/ UI/ Core/ Platform/
Fuzz/               Fuzz/ Core/ Platform/
Bench/              Bench/ App/ UI/ Core/ Platform/
Soak/               Soak/ Testbed/ App/ UI/ Core/ Platform/
'

# Files, and the foreign headers that they must do without: the interfaces show no library, Core knows no
# screen and no kernel, only the Linux room knows udev and libusb.
readonly foreign='
^Platform/[^/]+[.]h$       ^(Q|qcoro|nlohmann/|CLI/|libu|linux/|sys/)
^Core/                     ^(Qt(Gui|Widgets|Quick|Qml|DBus|Network)/|CLI/|libu|linux/|sys/)
^UI/                       ^(CLI/|libu|linux/|sys/)
^Platform/(Qt|Simulated)/  ^(CLI/|libu|linux/)
^Platform/Linux/           ^(CLI/|Qt(Gui|Widgets|Quick|Qml)/)
'

mapfile -t sources < <(project_files_matching "$root" '\.(h|cpp)$')
((${#sources[@]})) || {
    echo "no sources under $root" >&2
    exit 2
}

cd "$root"
awk -v ours="$ours" -v foreign="$foreign" '
    function load(text, into,    lines, words, n, i) {
        n = split(text, lines, "\n")
        for (i = 1; i <= n; i++)
            if (split(lines[i], words, " ") > 1)
                into[words[1]] = substr(lines[i], length(words[1]) + 1)
    }
    function room_of(path, table,    room, best) {
        best = ""
        for (room in table)
            if (index(path, room) == 1 && length(room) > length(best)) best = room
        return best
    }
    function allowed(target, list,    words, n, i, room) {
        n = split(list, words, " ")
        for (i = 1; i <= n; i++) {
            if (words[i] ~ /\/\*$/)       { room = substr(words[i], 1, length(words[i]) - 1)
                                           if (index(target, room) == 1 && substr(target, length(room) + 1) !~ /\//) return 1 }
            else if (words[i] ~ /\/$/)    { if (index(target, words[i]) == 1) return 1 }
            else if (target == words[i])  return 1
        }
        return 0
    }
    function report(why) { printf "%s:%d: %s\n", FILENAME, FNR, why; bad = 1 }

    BEGIN { load(ours, may); load(foreign, mustnot) }

    match($0, /^[ \t]*#[ \t]*include[ \t]*["<][^">]*[">]/) {
        text = substr($0, RSTART, RLENGTH)
        target = text; sub(/^[^"<]*["<]/, "", target); sub(/[">]$/, "", target)
        if (text ~ />$/) {
            for (files in mustnot) {
                pattern = mustnot[files]; gsub(/ /, "", pattern)
                if (FILENAME ~ files && target ~ pattern) report("must do without <" target ">")
            }
            if (room_of(target, may) !~ /^(CLI\/)?$/) report("ours are included with quotes: " target)
        } else {
            room = room_of(FILENAME, may)
            if (room == "") report("a file outside every room")
            else if (target ~ /\.moc$/ && target !~ /\//) next
            else if (room_of(target, may) == "") report("not a path from the root: " target)
            else if (!allowed(target, may[room])) report(room " may not include " target)
        }
    }
    END { exit bad }
' "${sources[@]}"
