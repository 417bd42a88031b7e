#!/usr/bin/env bash
# Runs the benchmarks of a build and prints their figures: the comparison with other libraries, then
# those of olvex alone. Arguments go to the comparison (compare.py --help); `run.sh BUILD_DIR own
# ARGUMENTS` runs the second half only, with arguments for Google Benchmark.
# Usage: run.sh BUILD_DIR [own] [ARGUMENTS]
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$1
shift

if [[ ${1:-} == own ]]; then
    shift
else
    printf '\n== Other logging libraries, every record in the kernel when the call returns\n'
    /usr/bin/python3 "$here/peers/compare.py" "$build/bench" "$@"
    set --
fi

printf '\n== The path of an event, in nanoseconds; allocations for each event\n'
"$build/bench/olvex_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true \
    --benchmark_min_time=0.2 --benchmark_filter=-'^(file|ask|processes)' "$@" |
    grep -v -E '_(mean|stddev|cv) '

printf '\n== Records in a file: processor time of each, and its ratio to a bare write of the same line\n'
"$build/bench/olvex_bench" --benchmark_filter='^(file|ask)' --benchmark_format=csv \
    --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true \
    --benchmark_report_aggregates_only=true --benchmark_min_time=0.1 2>/dev/null |
    tr -d '"' | awk -F, '
        $1 ~ /_median$/ { sub(/_median$/, "", $1); time[$1] = $4; names[n++] = $1 }
        END {
            for (i = 0; i < n; ++i)
                printf "%-28s %7.0f ns %6.2f\n", names[i], time[names[i]],
                    time[names[i]] / time["fileBareWrite"]
        }' | sort -k 4 -n

printf '\n== Processes that share a rolling log\n'
"$build/bench/olvex_bench" --benchmark_filter='^processes' --benchmark_repetitions=3 \
    --benchmark_report_aggregates_only=true 2>/dev/null | grep -E '_median ' |
    sed -E 's/^([^ ]*)_median .* (items_per_second.*)/\1 \2/'

printf '\n== Start to first record: a whole process\n'
printf '%-44s' "with a properties file of 100 lines"
"$build/bench/olvex_run_many" 101 "$build/bench/olvex_first_record" \
    "$here/startup/hundred.properties"
printf '%-44s' "for comparison, /bin/true"
"$build/bench/olvex_run_many" 101 /bin/true
