#!/usr/bin/env bash
# Does the package work in a Debian that has nothing but what it asks for, and go without a trace?
# fresh_system.bash PACKAGE TARBALL RELEASE: as root. TARBALL holds the bare system of that release (bookworm,
# trixie); it is made when it is missing.
set -euo pipefail

package=$(realpath "$1")
tarball=$(realpath -m "$2")
readonly mirror=http://deb.debian.org/debian

if ((EUID != 0)); then
    echo "This needs root: it makes a system of its own." >&2
    exit 1
fi
# What is mounted in a name space of its own goes with it, however this ends.
release=$3
if [[ ${4-} != unshared ]]; then
    exec unshare --mount --pid --fork --kill-child bash "${BASH_SOURCE[0]}" "$package" "$tarball" "$release" unshared
fi

work=$(mktemp -d)
root=$work/root
end() {
    # shellcheck disable=SC2046 # numbers
    kill $(jobs -p) 2>/dev/null || true
    umount --recursive "$root"/{proc,dev,tmp} 2>/dev/null || true
    rm -rf --one-file-system "$work"
}
trap end EXIT

step() { printf '\n--- %s\n' "$*"; }
quietly() { "$@" >"$work/log" 2>&1 || { cat "$work/log" && exit 1; }; }
readonly home=/home/user
paths=PATH=/usr/sbin:/usr/bin:/sbin:/bin
as_root=(chroot "$root" env -i "$paths" HOME=/root LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive)
as_user=(chroot --userspec=user:user "$root" env -i "$paths" HOME="$home" LANG=C.UTF-8 XDG_RUNTIME_DIR=/tmp/session)

step "a fresh Debian, $release"
mkdir "$root"
if [[ ! -e $tarball ]]; then
    quietly debootstrap --variant=minbase "$release" "$root" "$mirror"
    tar -C "$root" --exclude './var/cache/apt/archives/*.deb' -cf "$tarball.new" .
    mv "$tarball.new" "$tarball"
else
    tar -C "$root" -xpf "$tarball"
fi
cp --dereference /etc/resolv.conf "$root/etc/resolv.conf"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
mount --make-rslave "$root/dev"
mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d" # no services here
chmod 755 "$root/usr/sbin/policy-rc.d"
"${as_root[@]}" useradd --create-home user
"${as_user[@]}" mkdir --mode=700 /tmp/session

step "what the package asks for"
quietly "${as_root[@]}" apt-get -q update
quietly "${as_root[@]}" apt-get -q -y --no-install-recommends satisfy "$(dpkg-deb --field "$package" Depends)"
# shellcheck disable=SC2016 # dpkg replaces it
mapfile -t packages < <("${as_root[@]}" dpkg-query -W -f='${Package}\n')
if printf '%s\n' "${packages[@]}" | grep -E -- '-dev$'; then
    echo "for building only"
    exit 1
fi
# dpkg's own records apart.
files() { (cd "$root" && find . -xdev -not -path './var/lib/dpkg/*' -not -path './var/log/*' | LC_ALL=C sort); }
files >"$work/before"
echo "${#packages[@]} packages, $(wc -l <"$work/before") files"

step "installed"
cp "$package" "$root/tmp/kelmoth.deb"
"${as_root[@]}" dpkg --install /tmp/kelmoth.deb

step "kelmothctl"
"${as_user[@]}" kelmothctl --simulate basilisk-v3-pro read | tee "$work/read"
grep -q 'Battery *78 %' "$work/read"

step "the panel, drawn"
"${as_user[@]}" QT_QPA_PLATFORM=offscreen kelmoth --screenshots /tmp/shots --scene dpi --scene about
pictures=$(find "$root/tmp/shots" -name '*.png' -size +8k | wc -l)
((pictures == 8)) || { # of nothing they are smaller
    echo "Only $pictures of 8 show the panel."
    exit 1
}

step "the program, on an X server"
exec {ready}<> <(:)
Xvfb -displayfd "$ready" -screen 0 1280x1024x24 -nolisten tcp -noreset -ac 2>/dev/null &
read -r -t 20 display <&"$ready"
exec {said}<> <(:)
"${as_user[@]}" DISPLAY=":$display" kelmoth --verbose --show --simulate basilisk-v3-pro-wired >&"$said" 2>&1 &
program=$!
# The panel is opened before the mouse is asked.
while read -r -t 30 line <&"$said"; do
    echo "$line"
    [[ $line != *❌* ]]
    [[ $line != *📥* ]] || break
done
[[ $line == *📥* ]]
kill -TERM "$program"
wait "$program"

step "removed"
"${as_root[@]}" apt-get -q -y purge kelmoth >"$work/log"
files >"$work/after"
LC_ALL=C comm -13 "$work/before" "$work/after" | tee "$work/left"
if comm -23 "$work/before" "$work/after" | grep . || grep -v "^.$home/" "$work/left"; then
    echo "That is not the user's."
    exit 1
fi
grep -q '/defaults.ini$' "$work/left" || {
    echo "The user's settings are gone."
    exit 1
}
