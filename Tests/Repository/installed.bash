#!/usr/bin/env bash
# What is installed: installed.bash ROOT, where ROOT holds what lies below the prefix. Prints each fault; status 1
# if there is one.
set -euo pipefail

root=$1
bad=0
fault() {
    printf '%s\n' "$*"
    bad=1
}

# --- every file is there, and no other -------------------------------------------------------------

readonly wanted='bin/kelmoth
bin/kelmothctl
lib/udev/rules.d/70-kelmoth.rules
share/applications/com.kelmoth.app.desktop
share/bash-completion/completions/kelmoth
share/bash-completion/completions/kelmothctl
share/fish/vendor_completions.d/kelmothctl.fish
share/icons/hicolor/scalable/apps/com.kelmoth.app.svg
share/icons/hicolor/symbolic/apps/com.kelmoth.app-symbolic.svg
share/man/man1/kelmoth.1
share/man/man1/kelmothctl.1
share/metainfo/com.kelmoth.app.metainfo.xml
share/zsh/vendor-completions/_kelmothctl'
found=$(cd "$root" && find . -not -type d -not -path './share/doc/*' -not -path './share/lintian/*' -printf '%P\n' |
    sed -E '/^share\/man/s/\.gz$//; s/site-functions/vendor-completions/' | LC_ALL=C sort)
[[ $found == "$wanted" ]] || fault "$(diff <(echo "$wanted") <(echo "$found"))"

# --- what kelmoth itself says of its options and models is in its manual and its completion ---------

words=$("$root/bin/kelmoth" --help | grep -oE -e '--[a-z]+|^  [a-z][a-z0-9-]+$')
(($(wc -l <<<"$words") >= 15)) || fault "kelmoth --help: $words"
for word in $words; do
    grep -qE -e "(^|[' ])$word($|[' ])" "$root/share/bash-completion/completions/kelmoth" || fault "not offered: $word"
    [[ $word != --* ]] || zgrep -qF -e "Fl \\-${word#--}" "$root"/share/man/man1/kelmoth.1* ||
        fault "not in the manual: $word"
done

# --- the desktop reads it --------------------------------------------------------------------------

entry=$root/share/applications/com.kelmoth.app.desktop
desktop-file-validate "$entry" || bad=1
for key in Name GenericName Comment Keywords; do
    grep -q "^$key=" "$entry" || fault "$entry: no $key"
done
diff <(sed -nE '/^(GenericName|Comment|Keywords)=/s/=.*//p' "$entry") \
    <(sed -nE 's/^([A-Za-z]+)\[pl\]=.*/\1/p' "$entry" | grep -v '^Name$') || fault "$entry: not all in Polish"

appstreamcli validate --no-net "$root/share/metainfo/com.kelmoth.app.metainfo.xml" >/dev/null ||
    fault "$(appstreamcli validate --no-net --explain "$root/share/metainfo/com.kelmoth.app.metainfo.xml")"
while IFS= read -r picture; do
    [[ -f ${BASH_SOURCE%/*}/../../docs/images/$picture ]] || fault "no screenshot $picture"
done < <(sed -nE 's|.*<image.*/images/(.*)</image>|\1|p' "$root/share/metainfo/"*.xml)

# --- udev reads its rule ---------------------------------------------------------------------------

# Rules of a file that udev cannot parse are dropped with a line in the journal, and the mouse stays locked.
rule_faults() {
    awk '
        function fault(why) { printf "%s:%d: %s\n", FILENAME, FNR, why; bad = 1 }
        FNR == 1 && FILENAME !~ /\/([0-6][0-9]|7[0-2])-[^\/]*[.]rules$/ { fault("too late a number: 73 acts on uaccess") }
        /^(#|$)/ { next }
        {
            rest = $0
            while (match(rest, /^(ACTION|SUBSYSTEMS?|KERNELS?|TAG|GOTO|LABEL|ENV[{][A-Z_]+[}]|ATTRS?[{][A-Za-z]+[}])(==|!=|[+]?=)"[^"]*"/)) {
                token = substr(rest, 1, RLENGTH); value = token
                sub(/^[^"]*"/, "", value); sub(/"$/, "", value)
                matches = token ~ /^(ACTION|SUBSYSTEM|KERNEL|ENV|ATTR)/
                if (matches != (token ~ /^[^"]*[=!]=/)) fault("wrong operator: " token)
                if (token ~ /^GOTO/) wanted[value] = FNR
                if (token ~ /^LABEL/) delete wanted[value]
                if (token == "TAG+=\"uaccess\"") gives++
                rest = substr(rest, RLENGTH + 1)
                if (!sub(/^, */, "", rest)) break
            }
            if (rest != "") fault("not understood: " rest)
        }
        END {
            for (label in wanted) fault("no label " label)
            if (gives < 2) fault("gives no access to hidraw and usb")
            exit bad
        }' "$1"
    if udevadm verify --help >/dev/null 2>&1; then # since systemd 254
        udevadm verify --no-summary "$1"
    fi
}
rule_faults "$root/lib/udev/rules.d/70-kelmoth.rules" || bad=1

exit $bad
