#!/usr/bin/env bash
# All static checks, one after the other; fails when one of them does. Run through `./dev lint`. With
# --fresh, clang-tidy reads again what was clean and has not changed since.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
build=build/lint
built=build/release
jobs=${OLVEX_JOBS:-$(nproc)}
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
    cppcheck --quiet --error-exitcode=1 --inline-suppr --std=c++20 -j "$jobs" \
        --enable=warning,performance,portability --suppressions-list=tools/lint/cppcheck.txt \
        --project="$build/compile_commands.json" --file-filter='olvex/src/*' \
        --file-filter='src/common/*' --file-filter='tools/*'
}

# The sources that are compiled; those that have not changed since they were clean are left out.
check_tidy() {
    local version
    version=$(clang-tidy --version | sed -n 's/.*version //p')
    mkdir -p "$build/clean"
    sed -nE "s|^ *\"file\": \"$PWD/(.*)\".*|\1|p" "$build/compile_commands.json" | sort -u |
        grep -E '^(olvex/src|src/common|tools|samples|tests)/' |
        xargs -P "$jobs" -n 1 tools/lint/tidy.sh "$build" "$version"
}

# Checks of what is built read the build that tests use, so that nothing is compiled for them alone.
check_built() {
    if [[ ! -e $built/build.ninja ]]; then
        cmake --preset release -DOLVEX_BUILD_BENCH=OFF >/dev/null || return
    fi
    cmake --build "$built" -j "$jobs" --target olvex_objects olvex_tool >"$build/built.log" 2>&1 ||
        { tail -n 30 "$build/built.log" >&2 && return 1; }
}

if [[ ${1:-} == --fresh ]]; then rm -rf "$build/clean"; fi
cmake --preset debug -B "$build" -DOLVEX_BUILD_BENCH=OFF >/dev/null
check "Format, by clang-format" check_format
check "Layers of includes" tools/lint/layers.sh
check "Public headers: alone as C11 and C++17, documented" tools/lint/headers.sh
check "Pages: the links, files and tests that they name" tools/lint/docs.sh
check "The library and the command, built in $built" check_built
check "Layers of symbols" tools/lint/symbols.sh "$built"
check "Classes in docs/configuration.md" tools/lint/classes.sh "$built/tools/olvex"
check "Scripts, by shellcheck" check_scripts
check "Sources, by cppcheck" check_cppcheck
if [[ ${1:-} != --quick ]]; then
    check "Sources, by clang-tidy with the profile of .clang-tidy" check_tidy
fi

if [[ ${#failed[@]} -gt 0 ]]; then
    printf '\nThese checks failed:\n'
    printf '   %s\n' "${failed[@]}"
    exit 1
fi
printf '\nAll checks passed.\n'
