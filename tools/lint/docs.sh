#!/usr/bin/env bash
# Checks what the pages lead to: links and the files that they name exist, docs/README.md leads to every page,
# and the tests that docs/promises.md calls upon are there. Run from the top of the tree.
# shellcheck disable=SC2016 # back quotes are what is looked for
set -euo pipefail
failures=0
mapfile -t pages < <(git ls-files --cached --others --exclude-standard '*.md')

fail() {
    echo "$*" >&2
    failures=1
}

# Headings as links name them.
anchors() { sed -nE 's/^#+ +(.*)/\L\1/p' "$1" | sed -E 's/[^a-z0-9 _-]//g; s/ /-/g'; }

check_link() {
    local page=$1 target=$2 file anchor
    [[ $target != *://* ]] || return 0
    file=${target%%#*} anchor=${target#"$file"}
    [[ -z $file ]] || file=$(dirname "$page")/$file
    # The drawing is made with the pages.
    if [[ $file == *.svg && ! -e $file ]]; then file=${file%.svg}.dot; fi
    [[ -e ${file:-$page} ]] || fail "$page: the link to $target leads nowhere"
    [[ -z $anchor ]] || anchors "${file:-$page}" | grep -qxF "${anchor#\#}" || fail "$page: there is no heading $target"
}

for page in "${pages[@]}"; do
    while read -r target; do check_link "$page" "$target"; done < <(grep -oE '\]\([^) ]+\)' "$page" | sed -E 's/^\]\((.*)\)$/\1/' || true)
    # Names in capitals stand for others.
    while read -r file; do
        [[ $file =~ /[A-Z]+[./] || -e $file ]] || fail "$page: there is no $file"
    done < <(grep -ohE '`(bench|catalogs|cmake|codesets|debian|docs|fuzz|olvex|samples|src|tests|tools)/[A-Za-z0-9_./-]+' "$page" | tr -d '`' || true)
done

for page in docs/*.md; do
    [[ $page == docs/README.md ]] || grep -qF "(${page#docs/}" docs/README.md || fail "docs/README.md does not lead to $page"
done

tests=$({
    git grep -hoE --untracked '^TEST(_[FP])?\([A-Za-z]+, [A-Za-z0-9]+' -- tests | sed -E 's/.*\(//; s/, /./'
    sed -nE 's/.*add_test\(NAME ([A-Za-z.]+).*/\1/p' tests/CMakeLists.txt
})
while read -r name; do
    grep -qE "^${name/./\\.}" <<<"$tests" || fail "docs/promises.md: there is no test $name"
done < <(sed -nE 's/^\| \*\*.*\|(.*)\|$/\1/p' docs/promises.md | grep -oE '`[^`]+`' | tr -d '`')
exit "$failures"
