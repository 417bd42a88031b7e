#!/usr/bin/env bash
# Runs clang-tidy over one source, unless it was found clean before and neither it nor what it includes
# of the tree, its compile command, the profiles or clang-tidy's version have changed since. What they
# were then is kept below BUILD/clean, to be removed when everything is to be checked anew.
# Usage, from the top of the tree: tools/lint/tidy.sh BUILD VERSION SOURCE
set -euo pipefail
readonly build=$1 version=$2 source=$3
readonly clean=$build/clean/${source//\//_}

command=$(grep -F -m 1 -- " -c $PWD/$source\"" "$build/compile_commands.json" |
    sed -E 's/^ *"command": "(.*)",?$/\1/; s/\\(.)/\1/g')

# The source, what it includes, and the profiles, with checksums.
checksums() {
    local list
    list=$(eval "${command/ -o * -c / -MM }" | sed -E 's/^[^ ]+://; s/\\$//')
    # shellcheck disable=SC2086 # a list of names
    sha256sum $list .clang-tidy tests/.clang-tidy
}

was_clean() {
    [[ -e $clean && $(head -n 1 "$clean") == "$version $command" ]] &&
        tail -n +2 "$clean" | sha256sum --check --status 2>/dev/null
}

if was_clean; then exit; fi
rm -f "$clean"
code=0
report=$(clang-tidy -quiet -p "$build" --extra-arg=-fno-color-diagnostics "$source" 2>&1 |
    sed 's/\x1b\[[0-9;]*m//g') || code=$? # it colours whatever it is told
if [[ $code -ne 0 ]] || grep -qE ' (warning|error): ' <<<"$report"; then
    grep -E ' (warning|error|note): ' <<<"$report" | sort -u || tail <<<"$report"
    exit 1
fi
{
    echo "$version $command"
    checksums
} >"$clean.new"
mv "$clean.new" "$clean"
