#!/usr/bin/env bash
# Writes a page about a verb of the olvex command, in Markdown, from what its --help says; the page
# about the command itself when no verb is named. Manual pages and HTML are both made from it.
# Usage: verb.sh COMMAND VERSION [VERB]
set -euo pipefail
command=$1 version=$2 verb=${3:-}
name=olvex${verb:+-$verb}

# Lists become lists, what is indented is kept as it stands, everything else is running text.
to_markdown() {
    awk -v level="$1" '
        function mark() { return level == 2 ? "##" : "###" }
        function escaped(text) { gsub(/[\\*_<>#$`\[\]]/, "\\\\&", text); return text }
        function close_code() { if (code) print "```\n"; code = 0 }
        NR == 1 && level == 2 && !/^Usage: / { next }
        /^Usage: / { sub(/^Usage: /, ""); print "\n```\n" $0 "\n```\n"; next }
        /^[A-Z][a-z]+:$/ { close_code(); sub(/:$/, ""); print "\n" mark() " " $0 "\n"; list = /^(Options|Positionals|Subcommands|Verbs)$/; next }
        /^$/ { close_code(); list = 0; print; next }
        list && /^  [^ ]/ {
            text = $0; sub(/^  /, "", text); split_at = match(text, /  +/)
            if (split_at) print "- `" substr(text, 1, RSTART - 1) "`: " escaped(substr(text, RSTART + RLENGTH))
            else print "- `" text "`:"
            next
        }
        list { sub(/^ +/, "  "); print escaped($0); next }
        /^  / { if (!code) print "\n```"; code = 1; print; next }
        { close_code(); print escaped($0) }
        END { close_code() }
    '
}

names() { sed -nE '/^(Verbs|Subcommands):/,/^$/s/^  ([a-z][a-z-]*) .*/\1/p'; }

# What the verb is for, as the list of verbs says.
purpose() { "$command" --help | sed -nE "/^Verbs:/,/^\$/s/^  $verb +(.*)/\\1/p"; }

page() {
    local help subcommand
    printf '# %s(1) {#%s}\n\n' "$name" "${name//-/_}"
    if [[ -n $verb ]]; then
        help=$("$command" "$verb" --help)
        printf '## Name\n\n%s - %s\n\n' "$name" "$(purpose)"
    else
        help=$("$command" --help)
        printf '## Name\n\nolvex - Log, read logs, make catalogs and tables of code sets\n\n'
    fi
    printf '## Synopsis\n'
    to_markdown 2 <<<"$help"
    for subcommand in $([[ -z $verb ]] || names <<<"$help"); do
        printf '\n## olvex %s %s\n\n' "$verb" "$subcommand"
        # What stands behind the options is the same for all subcommands.
        "$command" "$verb" "$subcommand" --help | awk '/^Options:/ { options = 1 } options && /^$/ { exit } 1' |
            to_markdown 3
    done
    printf '\n## See also\n\n'
    if [[ -n $verb ]]; then
        printf 'olvex(1), olvex.properties(5)\n'
    else
        "$command" --help | names | sed 's/.*/olvex-&(1),/'
        printf 'olvex.properties(5)\n'
    fi
    printf '\nThis is olvex %s.\n' "$version"
}

page
