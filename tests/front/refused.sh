#!/usr/bin/env bash
# Compiles the sources below refused/, each by the standard that it is called after: with WRONG defined as
# a number it must fail with the message that stands behind that number; without it, it must compile,
# link, run, and print lines that end in what stands behind "prints". They use a header made of app.msg.
# Usage: refused.sh INCLUDE_DIR LIBRARY OLVEX_COMMAND WORK_DIR CC CXX
set -euo pipefail
sources=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/refused
include=$1 library=$2 olvex=$3 work=$4 cc=$5 cxx=$6
read -ra target <<<"${CFLAGS:-}" # of another machine than the compiler's own
flags=(-Wall -Wextra -Wpedantic -Werror -I"$include" -I"$work" "${target[@]}")
failures=0
count=0

fail() {
    echo "FAILED: $*" >&2
    failures=$((failures + 1))
}

# Texts are checked by the methods of loggers where the compiler has consteval.
has_consteval() {
    printf '#if !defined __cpp_consteval || __cpp_consteval < 201811L\n#error none\n#endif\n' |
        "$cxx" -std=c++20 -fsyntax-only -x c++ - 2>/dev/null
}

# Compilers quote names by the locale.
compile() { LC_ALL=C "$@" 2>&1; }

# Saves most of the time, with compilers that look for such files by themselves.
precompile() {
    [[ $1 != c11 ]] || return 0
    mkdir -p "$work/$1/olvex"
    compile "$cxx" -std="$1" "${flags[@]}" -w -x c++-header "$include/olvex/olvex.hpp" \
        -o "$work/$1/olvex/olvex.hpp.gch"
}

# One of the wrong forms that a source holds.
check_refusal() {
    local number=$1 message=$2 output
    shift 2
    if output=$(compile "$@" -DWRONG="$number" -fsyntax-only); then
        fail "$number of ${*: -1} compiles when it is wrong"
    elif ! grep -Eq "error: .*$message" <<<"$output"; then
        fail "$number of ${*: -1} is refused without '$message' but with: $output"
    fi
    count=$((count + 1))
}

check_source() {
    local standard=$1 source compiler=$cxx program=$work/$1.program output line number message
    source=$(echo "$sources/${standard//+/p}".c*)
    [[ $source != *.c ]] || compiler=$cc
    local command=("$compiler" -std="$standard" -I"$work/$standard" "${flags[@]}" "$source")
    if ! output=$(compile "${command[@]}" -o "$program" "$library"); then
        fail "the right form of $source does not compile: $output"
    elif ! output=$("$program" 2>&1); then
        fail "the right form of $source does not run: $output"
    fi
    while read -r line; do
        grep -Eq " ?$line\$" <<<"$output" || fail "$source prints no '$line' but: $output"
    done < <(sed -nE 's,.*// prints (.*),\1,p' "$source")
    while read -r number message; do
        check_refusal "$number" "$message" "${command[@]}"
    done < <(sed -nE 's,^#.*WRONG == ([0-9]+) // ,\1 ,p' "$source")
}

mkdir -p "$work"
LD_LIBRARY_PATH=$(dirname "$library")
export LD_LIBRARY_PATH
"$olvex" catalog header "$sources/app.msg" -o "$work/app.h"
checks=(c11 c++17)
! has_consteval || checks+=(c++20)
for standard in "${checks[@]}"; do
    precompile "$standard"
    check_source "$standard"
done
[[ $count -ge 10 ]] || fail "only $count wrong forms were found"
echo "$count wrong forms were tried"
exit $((failures > 0))
