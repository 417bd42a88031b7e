# Completion of the olvex command in bash. It asks the command itself for its verbs and options, so
# there is no list here that could fall behind.

# The names in the lists of verbs or subcommands of a help text.
_olvex_names() { sed -n '/^\(Verbs\|Subcommands\):/,/^$/s/^  \([a-z][a-z-]*\) .*/\1/p' <<<"$1"; }

# The options in a help text.
_olvex_options() { sed -n 's/^  \(olvex \)\?\(-[^ ]*\).*/\2/p' <<<"$1" | tr ',' '\n'; }

# The values that a help text allows for an option.
_olvex_values() { sed -n "s/^  \(.*,\)\?$2 [A-Z]*:{\([^}]*\)}.*/\2/p" <<<"$1" | tr ',' '\n'; }

_olvex() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=("${COMP_WORDS[0]}") help word words
    help=$("${command[@]}" --help 2>/dev/null)
    # Verb and subcommand, as far as they are typed.
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        grep -qxF -e "$word" <<<"$(_olvex_names "$help")" || break
        command+=("$word")
        help=$("${command[@]}" --help 2>/dev/null)
    done
    words=
    [[ $previous != -* ]] || words=$(_olvex_values "$help" "$previous")
    if [[ -z $words ]]; then
        if [[ $current == -* ]]; then words=$(_olvex_options "$help"); else words=$(_olvex_names "$help"); fi
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

complete -o default -F _olvex olvex
