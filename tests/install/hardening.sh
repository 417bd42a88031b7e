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

report() {
    if [[ $2 -eq 0 ]]; then
        echo "ok: $1"
    else
        echo "FAILED: $1" >&2
        failures=1
    fi
}

has() {
    local code=0
    grep -Eq -- "$2" <<<"$3" || code=1
    report "$1" "$code"
}

lacks() {
    local code=0
    ! grep -Eq -- "$2" <<<"$3" || code=1
    report "$1" "$code"
}

has "relocated data is read-only" 'GNU_RELRO' "$segments"
has "all addresses are bound at the start" 'BIND_NOW|FLAGS.*NOW' "$dynamic"
lacks "code has no relocations" 'TEXTREL' "$dynamic"
has "no stack that runs" 'GNU_STACK.* RW +0x' "$segments"
lacks "no segment is written and run" ' (RWE|WE) ' "$segments"
has "stacks are checked" '__stack_chk_fail' "$imports"
has "copying is checked" '__(mem|str|v?snprintf|read|readlink|fdelt)[a-z]*_chk' "$imports"
exit "$failures"
