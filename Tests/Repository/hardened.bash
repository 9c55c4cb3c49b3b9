#!/usr/bin/env bash
# Are these programs, built for release, hardened? hardened.bash PROGRAM... Prints what is missing; status 1 if
# anything is.
set -euo pipefail

bad=0
for program in "$@"; do
    missing() {
        echo "$program: $*"
        bad=1
    }
    header=$(readelf --wide --file-header --program-headers "$program")
    dynamic=$(readelf --wide --dynamic "$program")
    symbols=$(readelf --wide --dyn-syms "$program")
    grep -q 'FLAGS_1.*PIE' <<<"$dynamic" || missing "position-independent code"
    grep -q GNU_RELRO <<<"$header" || missing "RELRO"
    grep -qE 'FLAGS_1.*NOW' <<<"$dynamic" || missing "BIND_NOW, without which RELRO is partial"
    grep -qE 'GNU_STACK.* RW ' <<<"$header" || missing "a stack that is not executable"
    grep -q __stack_chk_fail <<<"$symbols" || missing "stack protector"
    grep -qE '__[a-z]+_chk(@|$| )' <<<"$(grep -v __stack_chk <<<"$symbols")" || missing "_FORTIFY_SOURCE"
    grep -qE 'R(UN)?PATH' <<<"$dynamic" && missing "freedom from paths of the build"
    # Debian's start files are not marked for CET, so neither is what is linked with them: look at the code. What can
    # be reached through a pointer, as most of a C++ program's functions and handlers, begins with a landing mark.
    if grep -q 'X86-64' <<<"$header"; then
        functions=$(readelf --wide --debug-dump=frames "$program" 2>/dev/null | grep -c ' FDE ') || true
        marks=$(objdump -d --no-show-raw-insn "$program" | grep -c endbr64) || true
        ((2 * marks > functions && functions)) || missing "CET: $marks landing marks in $functions functions"
    fi
done
exit $bad
