#!/usr/bin/env bash
# Installs a build into an empty prefix, moves that prefix, and uses it as programs outside the tree
# do: through the CMake package, through pkg-config, and with a handler class of the host's own.
# Usage: install.sh BUILD_DIR WORK_DIR CC CXX, with the target's flags in CFLAGS and CXXFLAGS
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
samples=$(cd "$here/../../samples" && pwd)
build=$1 work=$2 cc=$3 cxx=$4
read -ra flags <<<"-Wall -Wextra -Wpedantic -Werror ${CFLAGS:-}"

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# Runs a program and looks for a line that matches in what it prints.
expect() {
    local pattern=$1 output
    shift
    output=$("$@" 2>&1) || fail "$* ended with $?: $output"
    grep -Eq "$pattern" <<<"$output" || fail "$* printed no '$pattern' but: $output"
    echo "ok: $* printed $pattern"
}

check_programs() {
    local folder=$1 stamp='^[0-9-]{10} [0-9:.]{12}[+-][0-9:]{5}'
    expect "$stamp Hello from C 11\$" "$folder/hello_c"
    expect '^message 1: from a String of its own$' "$folder/own_tracer"
    expect '^[0-9/]{8} [0-9:]{8} F \[Vpd     \] main {26} \[[0-9]{4,}\] console$' "$folder/own_tracer"
    expect '^types are right$' "$folder/own_tracer"
}

# The sample of the C++ front in C++17.
check_front() {
    local folder=$1
    expect '^  Order 17 of Ada is on its way$' "$folder/sample_front"
    expect '^! The stock is at 4\.3 percent$' "$folder/sample_front"
    expect '^  3 left of it$' "$folder/sample_front"
    expect '^shop: 2$' "$folder/sample_front"
}

# The sample that traces, as a program outside the tree: to standard error, and through the toolkit
# to a file in the current directory.
check_tracing_sample() {
    local folder=$1
    expect '\[Hardware\] readSensor {21}\[[0-9]{4,}\] ----> ENTRY$' "$folder/sample_trace" --stderr
    expect '^the trace is in olvex-trace.log$' \
        env -C "$folder" ./sample_trace "$samples/trace.properties"
    expect 'Entry readSensor' cat "$folder/olvex-trace.log"
    expect '^00000010: 30 30 00 {40}00\.$' cat "$folder/olvex-trace.log"
    expect '^Error: 2  File: .*trace.cpp  Line: [0-9]+$' cat "$folder/olvex-trace.log"
}

# The programs and the properties file that the README shows.
check_readme() {
    local readme=$here/../../README.md
    mkdir "$work/readme"
    awk '/^```/ { inside = $0 == "```c"; next } inside' "$readme" >"$work/readme/app.c"
    awk '/^```/ { inside = $0 == "```properties"; next } inside' "$readme" \
        >"$work/readme/app.properties"
    "$cc" -std=c11 "${flags[@]}" "$work/readme/app.c" -o "$work/readme/app" "${options[@]}"
    awk '/^```/ { inside = $0 == "```cpp"; next } inside' "$readme" >"$work/readme/app.cpp"
    "$cxx" -std=c++17 "${flags[@]}" "$work/readme/app.cpp" -o "$work/readme/app_cpp" "${options[@]}"
    cd "$work/readme"
    expect ':[0-9]{2} Disk /var is 93 percent full$' ./app
    expect 'app.cpp main 6 Disk /var is 93 percent full$' ./app_cpp
}

rm -rf "$work"
mkdir -p "$work/installed"
cmake --install "$build" --prefix "$work/installed" >"$work/install.log"
mv "$work/installed" "$work/moved"
prefix=$work/moved
expect '^olvex [0-9]+\.[0-9]+\.[0-9]+$' "$prefix/bin/olvex" --version
expect '^Usage: olvex' "$prefix/bin/olvex" --help

# Messages in the user's language, with no other setting than it; but a search path comes first.
mkdir -p "$work/own/de"
echo '51 eigene Meldung: %s' >"$work/de.msg"
"$prefix/bin/olvex" catalog compile "$work/de.msg" -o "$work/own/de/ovxmsg.cat"
# shellcheck disable=SC2016
says() { expect "$1" env LANG="$2" "${@:3}" bash -c '"$0" log --config missing.properties || true' "$prefix/bin/olvex"; }
says 'OVX0051E The log manager' C
says 'OVX0051E Die Protokollverwaltung konnte .* missing\.properties nicht lesen' de_DE.UTF-8
says 'OVX0051E .*プロパティー・ファイル missing\.properties を' ja_JP.UTF-8
says 'OVX0051E O gerenciador' pt_PT
says 'OVX0051E 日志管理器' zh_CN.GB18030
says '^eigene Meldung: missing\.properties' de_AT NLSPATH="$work/own/%L/%N.cat"

# Text in another code set, whose table is found in the moved tree without UCVDIR, however long its
# path is.
deep=$work/$(printf 'd%.0s' {1..200})/$(printf 'e%.0s' {1..200})
mkdir -p "$deep"
cp -a "$prefix/." "$deep"
for place in "$prefix" "$deep"; do
    koi8=$(printf 'Журнал\n' | env -u UCVDIR -u BINDIR UCV_CODESET=KOI8-R "$place/bin/olvex" log |
        od -An -tx1 | tr -d ' \n')
    [[ $koi8 == *20f6d5d2cec1cc0a ]] || fail "no KOI8-R bytes were written but: $koi8"
    echo "ok: KOI8-R bytes are written"
done

cmake -S "$here/consumer" -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
    -DSAMPLES="$samples" \
    -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" >"$work/cmake.log"
cmake --build "$work/cmake" >"$work/build.log" || fail "$(cat "$work/build.log")"
check_programs "$work/cmake"
check_tracing_sample "$work/cmake"
check_front "$work/cmake"
expect '^initialised: 1, catalog: ovxmsg$' "$work/cmake/fixed"
[[ $("$work/cmake/fixed" 2>&1 >/dev/null) == "to standard error" ]] || fail "fixed: the header is elsewhere"

pc=$(find "$prefix" -name olvex.pc)
PKG_CONFIG_PATH=$(dirname "$pc")
export PKG_CONFIG_PATH
read -ra options <<<"$(pkg-config --cflags --libs olvex)"
LD_LIBRARY_PATH=$(pkg-config --variable=libdir olvex)
export LD_LIBRARY_PATH
check_readme

# The pages whose programs are run as they are printed, with the command that was installed and with
# compilers for this target.
mkdir -p "$work/compilers"
printf '#!/bin/sh\nexec %s %s "$@"\n' "$cc" "${CFLAGS:-}" >"$work/compilers/cc"
printf '#!/bin/sh\nexec %s %s "$@"\n' "$cxx" "${CXXFLAGS:-}" >"$work/compilers/c++"
chmod +x "$work"/compilers/*
for page in getting-started recipes extending tracing; do
    [[ ! -e $here/../../docs/$page.md ]] ||
        PATH=$work/compilers:$prefix/bin:$PATH bash "$here/start.sh" "$here/../../docs/$page.md" "$work/$page" || fail "$page.md"
done

# Completion in bash, for the command that was installed.
# shellcheck source=/dev/null
source "$prefix/share/bash-completion/completions/olvex"
completes() {
    local expected=$1
    shift
    COMP_WORDS=("$prefix/bin/olvex" "$@") COMP_CWORD=$#
    _olvex
    [[ " ${COMPREPLY[*]} " == *" $expected "* ]] || fail "$* does not complete to $expected but: ${COMPREPLY[*]}"
    echo "ok: $* completes to $expected"
}
completes view vi
completes --version --v
completes compile catalog co
completes --output catalog compile --
completes xml view --format x
