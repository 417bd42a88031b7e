#!/usr/bin/env bash
# Checks that the library was built so that mistakes in it are hard to exploit: addresses bound before
# anything runs and read-only from then on, no memory that is both written and run, stacks and the
# C library's copying functions checked.
# Usage: hardening.sh LIBRARY
set -euo pipefail
library=$1
failures=0
segments=$(readelf -lW "$library")
dynamic=$(readelf -dW "$library")
imports=$(nm -D -u "$library")

check() {
    local wanted=$1 what=$2 pattern=$3 text=$4 found=has
    grep -Eq -- "$pattern" <<<"$text" || found=lacks
    [[ $found != "$wanted" ]] || { echo "ok: $what"; return; }
    echo "FAILED: $what" >&2
    failures=1
}

check has "relocated data is read-only" 'GNU_RELRO' "$segments"
check has "all addresses are bound at the start" 'BIND_NOW|FLAGS.*NOW' "$dynamic"
check lacks "code has no relocations" 'TEXTREL' "$dynamic"
check has "no stack that runs" 'GNU_STACK.* RW +0x' "$segments"
check lacks "no segment is written and run" ' (RWE|WE) ' "$segments"
check has "stacks are checked" '__stack_chk_fail' "$imports"
check has "copying is checked" '__(mem|str|v?snprintf|read|readlink|fdelt)[a-z]*_chk' "$imports"
exit "$failures"
