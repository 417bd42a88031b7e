#!/usr/bin/env bash
# Makes the manual pages, and the same pages in Markdown for the HTML documentation: of the command
# and its verbs from what they print for --help, of the properties file from docs/configuration.md, of
# the classes from `olvex config classes --markdown`. Without lowdown, only the Markdown.
# Usage: make.sh COMMAND VERSION OUTPUT_DIR
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
command=$1 version=$2 output=$3
pages=$output/pages
have_lowdown=$(command -v lowdown || true)

# The manual page of a page: its title goes, sections become those of manual pages.
to_manual() {
    local page=$1 name=$2 section=$3
    [[ -n $have_lowdown ]] || return 0
    mkdir -p "$output/man/man$section"
    sed -E '1d; s/^## (.*)/# \U\1/; s/^### /## /; s/\{#[a-z_]*\}$//' "$page" |
        lowdown -s -Tman --parse-no-intraemph --out-no-smarty -m "title=$name" -m "section=$section" -m "source=olvex $version" \
            -m "date=" -m "volume=olvex" -o "$output/man/man$section/$name.$section" -
}

verb_page() {
    local verb=$1 name=olvex${1:+-$1}
    "$here/verb.sh" "$command" "$version" "$verb" >"$pages/$name.md"
    to_manual "$pages/$name.md" "$name" 1
}

# A guide as a manual page: what it is for in one line, then its text.
guide_page() {
    local guide=$1 name=$2 purpose=$3 text=$pages/$2.guide
    {
        printf '# %s(5)\n\n## Name\n\n%s - %s\n\n## Description\n' "$name" "$name" "$purpose"
        sed 1d "$guide"
    } >"$text"
    to_manual "$text" "$name" 5
    rm "$text"
}

# One page a class: each begins with a heading that has the class's name and nothing else.
class_pages() {
    local listing=$pages/classes.listing page name
    "$command" config classes --markdown >"$listing" 2>/dev/null || { rm -f "$listing"; return 0; }
    awk -v folder="$pages" '
        /^#+ `?ovx_[a-z_]+`?$/ { name = $2; gsub(/`/, "", name); file = folder "/" name ".md"
            print "# " name "(5) {#class_" name "}\n\n## Name\n" >file; begun = 0; next }
        # The first line of text says what the class is for.
        file && !begun && NF { print name " - " tolower(substr($0, 1, 1)) substr($0, 2) "\n\n## Properties\n" >file; begun = 1; next }
        file && !begun { next }
        /^# / { file = "" }
        file { sub(/^#+ /, "## "); print >file }' "$listing"
    rm "$listing"
    for page in "$pages"/ovx_*.md; do
        name=$(basename "$page" .md)
        [[ ! -e $page ]] || to_manual "$page" "$name" 5
    done
}

rm -rf "$output"
mkdir -p "$pages"
verb_page ""
while read -r verb; do verb_page "$verb"; done < <("$command" --help | sed -nE '/^Verbs:/,/^$/s/^  ([a-z][a-z-]*) .*/\1/p')
if [[ -e $here/../configuration.md ]]; then
    guide_page "$here/../configuration.md" olvex.properties "what olvex does in a program, as a properties file says"
fi
class_pages
