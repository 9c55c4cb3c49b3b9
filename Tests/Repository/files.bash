# Sourced by the checks of this folder.

# The files of the project under $1, relative to it and one a line: those that git tracks or would track;
# without git, everything but the build.
project_files() {
    git -C "$1" ls-files --cached --others --exclude-standard 2>/dev/null ||
        (cd "$1" && find . -type f -not -path './build/*' -not -path './.git/*' -printf '%P\n')
}

# Those of them that are files now (one that is staged as deleted is not) and match the pattern $2.
project_files_matching() {
    local root=$1 pattern=$2 file
    project_files "$root" | grep -E -- "$pattern" | while IFS= read -r file; do
        if [[ -f $root/$file ]]; then
            printf '%s\n' "$file"
        fi
    done
}
