#!/usr/bin/env bash
# Checks that no include points to a higher layer, that front end and programs see the public headers
# only (and the command the schema), and that every source has a folder with a layer. Run from the top
# of the tree.
set -euo pipefail
# shellcheck source=tools/lint/layer.sh
source "$(dirname "${BASH_SOURCE[0]}")/layer.sh"

readonly source_root=olvex/src
readonly front_end=5
failures=0

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

is_internal() { [[ $2 == "$source_root"/* && ! ($1 == tools/* && $2 == "$source_root"/schema/*) ]]; }

check_file() {
    local file=$1 own number name target
    own=$(layer_of "$file")
    [[ $own -ge 0 ]] || fail "$file" "stands in no folder of tools/lint/layer.sh"
    while IFS=: read -r number name; do
        target=$(resolve "$file" "$name")
        if [[ ! -e $target ]]; then
            fail "$file:$number" "includes \"$name\", which does not exist"
        elif [[ $own -ge $front_end ]] && is_internal "$file" "$target"; then
            fail "$file:$number" "includes \"$name\", which is internal to the library"
        elif [[ $(layer_of "$target") -gt $own ]]; then
            fail "$file:$number" "includes \"$name\" of a higher layer"
        fi
    done < <(sed -nE '/^#include "/{=;s/^#include "([^"]+)".*/\1/p}' "$file" | paste -d: - -)
}

while IFS= read -r file; do
    check_file "$file"
done < <(git ls-files --cached --others --exclude-standard \
    'olvex/src/*.h' 'olvex/src/*.cpp' 'src/*.h' 'src/*.cpp' 'tools/*.h' 'tools/*.cpp' 'samples/*' 'bench/*' |
    grep -E '\.(h|c|cpp)$')

exit "$failures"
