#!/usr/bin/env bash
# Runs the fuzz targets of a build, one after the other. Ends with 1 when one of them found something;
# the input that shows it is kept then.
# Usage: run.sh BUILD_DIR SECONDS [TARGET]
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$1 seconds=$2 wanted=${3:-}
failed=()

run_target() {
    local target=$1 work=$build/$1 code=0
    mkdir -p "$work/corpus" "$work/findings"
    env -u NLSPATH -u UCVDIR LANG=C "$build/fuzz/$target" -max_total_time="$seconds" -max_len=4096 \
        -timeout=10 -rss_limit_mb=1024 -print_final_stats=1 -close_fd_mask=3 \
        -artifact_prefix="$work/findings/" "$work/corpus" "$here/corpus/$target" \
        >"$work/log" 2>&1 || code=$?
    printf '%-16s %12s executions in %s s: ' "$target" \
        "$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/log")" "$seconds"
    if [[ $code -eq 0 ]]; then
        echo "nothing found"
        return
    fi
    echo "FAILED"
    grep -E '^(SUMMARY|artifact_prefix|.*(ERROR|runtime error):)' "$work/log" || tail -n 5 "$work/log"
    echo "   the whole report is in $work/log"
    failed+=("$target")
}

for program in "$build"/fuzz/*; do
    [[ -f $program && -x $program ]] || continue
    target=${program##*/}
    [[ -n $wanted && $target != "$wanted" ]] || run_target "$target"
done
[[ ${#failed[@]} -eq 0 ]] || exit 1
