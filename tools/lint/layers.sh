#!/usr/bin/env bash
# Checks that no include of the library points upward, and that programs see the public headers only.
# Layers, lowest first: util/shapes with the two headers that everything rests on, util, ucv, the
# toolkit. Run from the top of the tree.
set -euo pipefail

readonly source_root=olvex/src
failures=0

layer_of() {
    case $1 in
    "$source_root"/util/shapes/* | "$source_root"/util/Memory.h | "$source_root"/util/Locked.h)
        echo 0
        ;;
    "$source_root"/util/*) echo 1 ;;
    "$source_root"/ucv/*) echo 2 ;;
    "$source_root"/*) echo 3 ;;
    *) echo 4 ;; # the tracing front end, programs
    esac
}

fail() {
    echo "$1: $2" >&2
    failures=1
}

# The file that an include in quotes means: beside the including file, or below its top folder.
resolve() {
    local folder
    for folder in "$(dirname "$1")" tools "$source_root"; do
        [[ $folder == tools && $1 != tools/* ]] || [[ ! -e $folder/$2 ]] || break
    done
    echo "$folder/$2"
}

check_file() {
    local file=$1 own number name target
    own=$(layer_of "$file")
    while IFS=: read -r number name; do
        target=$(resolve "$file" "$name")
        if [[ ! -e $target ]]; then
            fail "$file:$number" "includes \"$name\", which does not exist"
        elif [[ $own -lt 4 && $(layer_of "$target") -gt $own ]]; then
            fail "$file:$number" "includes \"$name\" of a higher layer"
        elif [[ $own -eq 4 && $target == "$source_root"/* ]]; then
            fail "$file:$number" "includes \"$name\", which is internal to the library"
        fi
    done < <(sed -nE '/^#include "/{=;s/^#include "([^"]+)".*/\1/p}' "$file" | paste -d: - -)
}

while IFS= read -r file; do
    check_file "$file"
done < <(git ls-files --cached --others --exclude-standard \
    'olvex/src/*.h' 'olvex/src/*.cpp' 'src/*.h' 'src/*.cpp' 'tools/*.h' 'tools/*.cpp' 'samples/*' 'bench/*' |
    grep -E '\.(h|c|cpp)$')

exit "$failures"
