#!/usr/bin/env bash
# Checks the public headers: each compiles alone as C11 and as C++17 without a warning, and every
# public declaration has a doc comment before it. Run from the top of the tree.
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

# A declaration follows a line that ends a comment which began with "/**".
awk '
    FNR == 1 { documented = 0 }
    /^ *\/\*\*/ { isDoc = 1 }
    /^ *\/\*([^*]|$)/ { isDoc = 0 }
    /^(extern |class )?OVX_API / && !documented { print FILENAME ":" FNR ": not documented: " $0; bad = 1 }
    /\*\/ *$/ { documented = isDoc; next }
    NF > 0 { documented = 0 }
    END { exit bad }
' "$include"/olvex/*.h "$include"/olvex/trace/*.h "$include"/olvex/trace/base/*.h >&2 || failures=1

exit "$failures"
