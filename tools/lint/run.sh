#!/usr/bin/env bash
# All static checks, one after the other; fails when one of them does. Run through `./dev lint`.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
build=build/lint
failed=()

check() {
    local name=$1
    shift
    printf '\n== %s\n' "$name"
    if "$@"; then echo "   ok"; else failed+=("$name"); fi
}

sources() { git ls-files --cached --others --exclude-standard "$@"; }

check_format() { sources '*.h' '*.hpp' '*.c' '*.cpp' | xargs clang-format --dry-run -Werror; }

check_scripts() { sources dev .ci/run '*.sh' | xargs shellcheck; }

check_cppcheck() {
    cppcheck --quiet --error-exitcode=1 --inline-suppr --std=c++20 -j 2 \
        --enable=warning,performance,portability --suppressions-list=tools/lint/cppcheck.txt \
        --project="$build/compile_commands.json" --file-filter='olvex/src/*' \
        --file-filter='src/common/*' --file-filter='tools/*'
}

check_tidy() {
    run-clang-tidy -quiet -j 2 -p "$build" -extra-arg=-fno-color-diagnostics \
        "^$PWD/(olvex/src|src/common|tools|samples)/" >"$build/tidy.log" 2>&1 && return
    sed -i 's/\x1b\[[0-9;]*m//g' "$build/tidy.log" # it colours whatever it is told
    grep -E ' (warning|error|note): ' "$build/tidy.log" | sort -u || tail "$build/tidy.log"
    return 1
}

cmake --preset debug -B "$build" >/dev/null
check "Format, by clang-format" check_format
check "Layers of includes" tools/lint/layers.sh
check "Public headers: alone as C11 and C++17, documented" tools/lint/headers.sh
check "Pages: the links, files and tests that they name" tools/lint/docs.sh
check "Scripts, by shellcheck" check_scripts
check "Sources, by cppcheck" check_cppcheck
check "Sources, by clang-tidy with the profile of .clang-tidy" check_tidy

if [[ ${#failed[@]} -gt 0 ]]; then
    printf '\nThese checks failed:\n'
    printf '   %s\n' "${failed[@]}"
    exit 1
fi
printf '\nAll checks passed.\n'
