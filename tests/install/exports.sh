#!/usr/bin/env bash
# Checks the library as the linker sees it: it exports what the public headers declare and the Debian
# package lists, nothing less and nothing more, under its versioned name, needs no C++ runtime and has no
# destructors of statics.
# Usage: exports.sh LIBRARY INCLUDE_DIR ABI_MAJOR CC
set -euo pipefail
library=$1 include=$2 major=$3 cc=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

fail() {
    echo "FAILED: $*" >&2
    failures=1
}

# Functions: the compiler lists every prototype with the place of its declaration. Variables stand in
# the headers as "extern OVX_API".
declared() {
    printf '#include <olvex/olvex.h>\n#include <olvex/class.h>\n#include <olvex/trace.h>\n' >"$work/all.c"
    "$cc" -std=c11 -I"$include" -fsyntax-only -aux-info "$work/prototypes" "$work/all.c"
    grep -F "/* $include/olvex/" "$work/prototypes" | grep -v ' static ' |
        sed -E 's/^\/\*[^*]*\*\/ //; s/\(\*([A-Za-z0-9_]+) \(/\1 (/; s/^([^(]*[^A-Za-z0-9_(])?([A-Za-z0-9_]+) \(.*$/\2/'
    sed -nE 's/^extern OVX_API .*[^A-Za-z0-9_]([A-Za-z0-9_]+)(\[[^]]*\])*;.*/\1/p' \
        "$include"/olvex/*.h
}

exported() { nm -D --defined-only "$library" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }'; }

# The tracing front end is C++: its functions, variables and classes stand in the namespace
# olvex_trace. Classes are compared by name; their type information must be there to derive from them.
trace_declared() {
    sed -nE 's/^(extern )?OVX_API [^(;]*[ *]([A-Za-z_]+[A-Za-z0-9_]*)(\(|\[|;).*/olvex_trace::\2/p
        s/^class OVX_API ([A-Za-z]+).*/olvex_trace::\1/p' "$include"/olvex/trace/*.h \
        "$include"/olvex/trace/base/*.h
    sed -nE 's/^class OVX_API ([A-Za-z]*Tracer[A-Za-z]*|Trace|Object|OlvexWrapper)\>.*/typeinfo for olvex_trace::\1/p' \
        "$include"/olvex/trace/*.h "$include"/olvex/trace/base/*.h
}

trace_exported() {
    c++filt <"$work/all" | grep -F olvex_trace:: | grep -Ev '^(vtable|typeinfo name) for ' |
        sed -E 's/^(typeinfo for )?(olvex_trace::[A-Za-z0-9_]+).*/\1\2/'
}

exported | sort -u >"$work/all"
declared | sort -u >"$work/declared"
trace_declared | sort -u >>"$work/declared"
{
    grep -v '^_Z.*11olvex_trace' "$work/all"
    trace_exported
} | sort -u >"$work/exported"
sort -u -o "$work/declared" "$work/declared"
missing=$(comm -23 "$work/declared" "$work/exported")
surplus=$(comm -13 "$work/declared" "$work/exported")
[[ -s $work/declared ]] || fail "no declarations were found in $include"
[[ -z $missing ]] || fail "declared but not exported: $missing"
[[ -z $surplus ]] || fail "exported but not declared: $surplus"
echo "$(wc -l <"$work/exported") names are exported, $(wc -l <"$work/declared") declared"

# The names of C++ are one line there.
sed -nE 's/^ ([A-Za-z]\w*)@.*/\1/p' "$(dirname "$0")/../../debian/libolvex0.symbols" | grep -v '^OLVEX_' |
    sort -u >"$work/listed"
unlisted=$(grep -v '^_Z' "$work/all" | comm -3 - "$work/listed" | tr -d '\t')
[[ -z $unlisted ]] || fail "only the library, or only debian/libolvex0.symbols, has: $unlisted"

unversioned=$(nm -D --defined-only --with-symbol-versions "$library" |
    awk '$2 != "A" && $3 !~ /@@OLVEX_/ { print $3 }')
[[ -z $unversioned ]] || fail "exported without a version: $unversioned"

soname=$(readelf -d "$library" | sed -nE 's/.*\(SONAME\).*\[(.*)\]/\1/p')
[[ $soname == libolvex.so.$major ]] || fail "the SONAME is $soname"
needed=$(readelf -d "$library" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p')
strangers=$(grep -Ev '^(libc|libm|ld-linux[^.]*)\.so\.[0-9]+$' <<<"$needed" || true)
[[ -z $strangers ]] ||
    fail "the library needs $strangers for: $(nm -D -u "$library" | grep -E 'GLIBCXX|CXXABI' || true)"

# A destructor of a static would pull the library's memory from under threads that still log while
# the process ends.
at_exit=$(nm -D -u "$library" | grep -o __cxa_atexit || true)
[[ -z $at_exit ]] || fail "the library has destructors of statics"
exit "$failures"
