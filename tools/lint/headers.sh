#!/usr/bin/env bash
# Checks the public headers: each compiles alone as C11 and as C++17 without a warning, and everything in
# them has a doc comment: functions, macros and types as seen here, members of structures and classes
# as Doxygen sees them. Run from the top of the tree.
set -euo pipefail

readonly include=olvex/include
warnings=(-Wall -Wextra -Wpedantic -Werror -fsyntax-only -I"$include")
failures=0

for header in "$include"/olvex/*.h "$include"/olvex/front/*.h; do
    alone="#include <${header#"$include"/}>"$'\ntypedef int NotEmpty;'
    gcc -std=c11 "${warnings[@]}" -Wstrict-prototypes -x c - <<<"$alone" || failures=1
    g++ -std=c++17 "${warnings[@]}" -Wold-style-cast -x c++ - <<<"$alone" || failures=1
done

# The tracing front end and the C++ front are C++; the latter has more to it in C++20.
for header in "$include"/olvex/trace/*.h "$include"/olvex/trace/base/*.h "$include"/olvex/*.hpp \
    "$include"/olvex/front/*.hpp; do
    alone="#include <${header#"$include"/}>"
    for standard in c++17 c++20; do
        g++ -std="$standard" "${warnings[@]}" -Wold-style-cast -Wshadow -Wconversion -x c++ - \
            <<<"$alone" || failures=1
    done
done
g++ -std=c++17 -fno-exceptions -fno-rtti "${warnings[@]}" -x c++ - <<<'#include <olvex/olvex.hpp>' ||
    failures=1

# A declaration follows a line that ends a comment which began with "/**".
awk '
    FNR == 1 { documented = 0 }
    /^ *\/\*\*/ { isDoc = 1 }
    /^ *\/\*([^*]|$)/ { isDoc = 0 }
    FILENAME !~ /\/Export\.h$/ && /^((extern |class )?OVX_API |static inline |typedef |#define [A-Z_0-9]+\()/ && !documented { print FILENAME ":" FNR ": not documented: " $0; bad = 1 }
    /\*\/ *$/ { documented = isDoc; next }
    NF > 0 { documented = 0 }
    END { exit bad }
' "$include"/olvex/*.h "$include"/olvex/trace/*.h "$include"/olvex/trace/base/*.h >&2 || failures=1

output=$(mktemp -d)
trap 'rm -rf "$output"' EXIT
undocumented=$(doxygen - 2>&1 <<END
INPUT = $include/olvex
FILE_PATTERNS = *.h *.hpp
RECURSIVE = YES
GENERATE_HTML = NO
GENERATE_LATEX = NO
GENERATE_XML = YES
OUTPUT_DIRECTORY = $output
EXTRACT_ALL = NO
EXCLUDE_SYMBOLS = olvex::v0::detail olvex::v0::detail::*
JAVADOC_AUTOBRIEF = YES
EXTENSION_MAPPING = h=C++
MACRO_EXPANSION = YES
EXPAND_ONLY_PREDEF = YES
PREDEFINED = OVX_API= OVX_DIRECT= OVX_BEGIN_DECLS= OVX_END_DECLS= __attribute__(x)= __cplusplus
QUIET = YES
WARN_IF_UNDOCUMENTED = YES
END
)
if [[ -n $undocumented ]]; then
    echo "$undocumented" >&2
    failures=1
fi

exit "$failures"
