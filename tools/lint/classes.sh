#!/usr/bin/env bash
# Checks that the section on classes of docs/configuration.md is what the command prints; with --update,
# makes it so. Run from the top of the tree, with the command.
set -euo pipefail

readonly page=docs/configuration.md command=$1
made=$(mktemp)
trap 'rm -f "$made"' EXIT

# The page with the section made anew, which reaches to the next heading of its kind.
{
    sed '/^## Classes$/q' "$page"
    echo
    "$command" config classes --markdown
    awk '/^## / { if (inside) past = 1; inside = $0 == "## Classes" } past && !inside { if (!n++) print ""; print }' "$page"
} >"$made"

if [[ ${2:-} == --update ]]; then
    cat "$made" >"$page"
elif ! diff -u "$page" "$made" >&2; then
    echo "$page is stale: run ./dev docs --update" >&2
    exit 1
fi
