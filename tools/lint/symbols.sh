#!/usr/bin/env bash
# Checks that no source of the library uses a function or a variable of a higher layer, by the symbols
# of its object. Run from the top of the tree, with the build that holds the objects.
set -euo pipefail
# shellcheck source=tools/lint/layer.sh
source "$(dirname "${BASH_SOURCE[0]}")/layer.sh"

# What may point upward: source, symbol.
readonly exceptions=(
    'toolkit/OvxClassRegistry.cpp olvex::slots::*'             # where the toolkit meets the classes
    'toolkit/OvxClass.cpp olvex::slots::ovx_basicformatter'    # stands in for what a formatter leaves out
    'toolkit/OvxClass.cpp OvxBasicHandlerF*'                   # public; stand in for what a handler leaves out
    'toolkit/OvxToolkit.cpp ovxIntlHandlerSetFormatter'        # public; joins the handler of the error logger
    'toolkit/OvxToolkit.cpp olvex::discardEventText()'         # what handlers free when the toolkit closes
    'util/OvxApiMutex.cpp OvxReportPlatformErr'                # public; a mutex that fails is reported
)
readonly objects=$1/olvex/CMakeFiles/olvex_objects.dir/src
failures=0
declare -A used

# For each object: source, its layer, D or U, symbol. Inline functions, which are weak, have no home.
list_symbols() {
    local source object
    while IFS= read -r source; do
        object=$objects/${source#olvex/src/}.o
        [[ -e $object ]] || { echo "$object has not been built" >&2 && return 1; }
        nm -P "$object" | awk -v source="${source#olvex/src/}" -v layer="$(layer_of "$source")" \
            '$2 ~ /^[TDBRC]$/ { print source, layer, "D", $1 } $2 == "U" { print source, layer, "U", $1 }'
    done < <(git ls-files --cached --others --exclude-standard 'olvex/src/*.cpp')
}

# The uses that point upward: source, source of the symbol, symbol.
upward_uses() {
    list_symbols | awk '
        $3 == "D" { home[$4] = $1; layer[$4] = $2 }
        $3 == "U" { use[++uses] = $1; from[uses] = $2; symbol[uses] = $4 }
        END {
            for (i = 1; i <= uses; ++i)
                if (symbol[i] in home && layer[symbol[i]] > from[i])
                    print use[i], home[symbol[i]], symbol[i]
            if (!uses) exit 1
        }' | c++filt
}

is_excepted() {
    local exception
    for exception in "${exceptions[@]}"; do
        # shellcheck disable=SC2053 # the exceptions are patterns
        [[ "$1 $2" == $exception ]] || continue
        used[$exception]=1
        return
    done
    return 1
}

found=$(upward_uses)
while read -r source home symbol; do
    if [[ -z $source ]] || is_excepted "$source" "$symbol"; then continue; fi
    echo "olvex/src/$source: uses $symbol of olvex/src/$home, a higher layer" >&2
    failures=1
done <<<"$found"
for exception in "${exceptions[@]}"; do
    [[ -z ${used[$exception]:-} ]] || continue
    echo "tools/lint/symbols.sh: the exception '$exception' is no longer needed" >&2
    failures=1
done
exit "$failures"
