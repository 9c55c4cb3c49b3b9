#!/usr/bin/env bash
# What must be true of the files of the project: tree.bash CHECK ROOT. Prints each fault; status 1 if there
# is one.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/files.bash"

version_of() {
    sed -nE 's/^project\(.*VERSION ([0-9.]+).*/\1/p' "$1/CMakeLists.txt"
}

# Paths of the machine that somebody worked on, and papers that are not part of the project, mean nothing to
# a reader.
check_words() {
    local words='(^|[^[:alnum:]_}])/(wor[k]|tmp/w(t-[a-z]+)?|home/[a-z]+)/|spec[.]md|FACTS[.]md|DESIGN[.]md|\bParts? [0-9][.][0-9]'
    local found
    found=$(cd "$1" && project_files_matching . '' | grep -vE '^(DEVELOPERS\.md|Fuzz/corpus/.*)$' |
        tr '\n' '\0' | xargs -0 -r grep -nIE -- "$words") || true
    [[ -z $found ]] && return 0
    printf '%s\n' "$found"
    return 1
}

# The version is told by CMakeLists.txt; the changelog's history and examples in comments may name it. The files
# of other distributions' packages have to.
check_version() {
    local version found
    version=$(version_of "$1")
    [[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || {
        echo "CMakeLists.txt: no version"
        return 1
    }
    found=$(cd "$1" && project_files_matching . '' | grep -vxE 'CMakeLists\.txt|CHANGELOG\.md|packaging/.*' |
        tr '\n' '\0' | xargs -0 -r grep -nIE -- "(^|[^0-9.])${version//./[.]}([^0-9.]|$)" |
        grep -vE '^[^:]*\.(h|cpp):[0-9]+: *//') || true
    local file
    for file in packaging/fedora/kelmoth.spec packaging/arch/PKGBUILD; do
        if [[ -e $1/$file ]] && ! grep -qE "^(Version: +|pkgver=)${version//./[.]}$" "$1/$file"; then
            found+=$'\n'"$file: not version $version"
        fi
    done
    [[ -z $found ]] && return 0
    printf '%s\n' "$found"
    return 1
}

# A file that no build knows is neither compiled nor tested.
check_sources() {
    local root=$1 file dir bad=0
    while IFS= read -r file; do
        dir=${file%/*}
        while [[ ! -e $root/$dir/CMakeLists.txt && $dir == */* ]]; do
            dir=${dir%/*}
        done
        if ! tr -s ' \t()' '\n' 2>/dev/null <"$root/$dir/CMakeLists.txt" | grep -qxF -- "${file#"$dir"/}"; then
            echo "$file: not in $dir/CMakeLists.txt"
            bad=1
        fi
    done < <(project_files_matching "$root" '^[A-Z][A-Za-z]*/.*\.cpp$')
    return $bad
}

# The wall clock jumps: nothing may be timed by it.
check_clock() {
    local clocks='system_clock|high_resolution_clock|(QDateTime|QTime|QDate)::current|CLOCK_REALTIME|gettimeofday'
    local found
    found=$(cd "$1" && project_files_matching . '^(App|CLI|Core|Platform|Program|UI)/.*\.(h|cpp|qml)$' |
        tr '\n' '\0' | xargs -0 -r grep -nIE -- "\<($clocks|time\((NULL|nullptr|0)\))|Date\.now") || true
    [[ -z $found ]] && return 0
    printf '%s\n' "$found"
    return 1
}

check_changelog() {
    local version
    version=$(version_of "$1")
    grep -qE "^## \[${version//./\\.}\]( - |$)" "$1/CHANGELOG.md" && return 0
    echo "CHANGELOG.md: no entry for $version"
    return 1
}

case ${1-} in
words | version | sources | clock | changelog) "check_$1" "${2:-.}" ;;
*)
    echo "Usage: tree.bash words|version|sources|clock|changelog [ROOT]" >&2
    exit 2
    ;;
esac
