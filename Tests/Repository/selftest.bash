#!/usr/bin/env bash
# Do the checks of this folder catch what they are for? Each row below plants one fault in a small sound tree.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
sound=$(mktemp -d)
faulty=$(mktemp -d)
trap 'rm -rf "$sound" "$faulty"' EXIT
failures=0

# fault CHECK FILE LINE: the sound tree with LINE added to FILE fails CHECK, and the report names FILE.
fault() {
    local check=$1 file=$2 line=$3 report
    rm -rf "$faulty"
    cp -r "$sound" "$faulty"
    mkdir -p "$(dirname "$faulty/$file")"
    printf '%s\n' "$line" >>"$faulty/$file"
    if report=$(run "$check" "$faulty") || [[ $report != *"$file"* ]]; then
        echo "not caught by $check: $file with: $line"
        failures=1
    fi
}

# fine CHECK FILE LINE: such a line is no fault.
fine() {
    local check=$1 file=$2 line=$3 report
    rm -rf "$faulty"
    cp -r "$sound" "$faulty"
    printf '%s\n' "$line" >>"$faulty/$file"
    if ! report=$(run "$check" "$faulty"); then
        echo "wrongly reported by $check: $report"
        failures=1
    fi
}

run() {
    case $1 in
    dependencies) bash "$here/dependencies.bash" "$2" 2>&1 ;;
    *) bash "$here/tree.bash" "$1" "$2" 2>&1 ;;
    esac
}

mkdir -p "$sound"/{packaging/arch,Core/{Device,HID,Services},Platform/{Linux,Simulated},CLI,UI}
echo 'project(Kelmoth VERSION 7.8.9 LANGUAGES CXX)' >"$sound/CMakeLists.txt"
echo '## [7.8.9] - Unreleased' >"$sound/CHANGELOG.md"
echo 'kelmoth_room(x SOURCES HID/A.cpp)' >"$sound/Core/CMakeLists.txt"
echo '#include "Core/Device/A.h"' >"$sound/Core/HID/A.cpp"
for header in Core/Device/A.h Platform/A.h Platform/Linux/A.h Platform/Simulated/A.h CLI/A.h UI/A.h; do
    echo '#include <vector>' >"$sound/$header"
done
for check in dependencies words version sources clock changelog; do
    fine "$check" Core/HID/A.cpp '// nothing'
done

fault version packaging/arch/PKGBUILD 'pkgver=7.8.8'
fine version packaging/arch/PKGBUILD 'pkgver=7.8.9'
fault dependencies Core/HID/A.cpp '#include "Platform/Linux/A.h"'
fault dependencies Core/HID/A.cpp '  #  include "UI/A.h"'
fault dependencies Core/HID/A.cpp '#include "A.h"'
fault dependencies Core/HID/A.cpp '#include <libudev.h>'
fault dependencies Core/HID/A.cpp '#include <Core/Device/A.h>'
fault dependencies Core/Device/A.h '#include "Core/HID/A.h"'
fault dependencies Core/Device/A.h '#include "Platform/A.h"'
fault dependencies Core/Services/A.h '#include "Core/HID/A.h"'
fault dependencies CLI/Commands/A.cpp '#include "CLI/Commands/B.h"'
fault dependencies CLI/A.cpp '#include "CLI/Commands/B.h"'
fault dependencies Platform/A.h '#include "Platform/Linux/A.h"'
fault dependencies Platform/A.h '#include <QObject>'
fault dependencies Platform/Linux/A.h '#include "Core/Device/A.h"'
fault dependencies Platform/Simulated/A.h '#include "Core/HID/A.h"'
fault dependencies UI/A.h '#include "Platform/A.h"'
fault dependencies Other/A.h '#include "Core/Device/A.h"'
fine dependencies Core/Device/A.h '#include "Core/Services/L10n.h"'
fine dependencies Platform/Simulated/A.h '#include "Core/HID/RazerProtocol.h"'
fine dependencies CLI/A.h '#include "Platform/Linux/A.h"'
fine dependencies Core/HID/A.cpp '#include "A.moc"'

fault words Core/HID/A.cpp "// as seen in /wo""rk/shared"
fault words CHANGELOG.md "as Pa""rt 1.2 says"
fault version UI/A.h 'constexpr auto version = "7.8.9";'
fault version README.md 'Kelmoth 7.8.9'
fine version UI/A.h '/// Such as "7.8.9".'
fine version UI/A.h 'constexpr auto address = "17.8.9";'
fault sources Core/HID/B.cpp '// forgotten'
fault sources CLI/A.cpp '// a room without a list'
fine sources Core/HID/A.h '// a header'
fault clock Core/HID/A.cpp 'auto now = std::chrono::system_clock::now();'
fault clock CLI/A.h 'auto now = time(nullptr);'
fine clock UI/A.h 'auto now = std::chrono::steady_clock::now();'
sed -i s/7.8.9/7.8.8/ "$sound/CHANGELOG.md"
fault changelog CHANGELOG.md ''

exit $failures
