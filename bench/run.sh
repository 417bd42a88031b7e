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
    --benchmark_min_time=0.2 "$@" |
    grep -v -E '_(mean|stddev|cv) '

printf '\n== Start to first record: a whole process\n'
printf '%-44s' "with a properties file of 100 lines"
"$build/bench/olvex_run_many" 101 "$build/bench/olvex_first_record" \
    "$here/startup/hundred.properties"
printf '%-44s' "for comparison, /bin/true"
"$build/bench/olvex_run_many" 101 /bin/true
