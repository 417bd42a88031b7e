#!/usr/bin/env bash
# Runs the benchmarks of a build and prints their figures. Further arguments go to Google Benchmark.
# Usage: run.sh BUILD_DIR [ARGUMENTS]
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$1
shift

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
