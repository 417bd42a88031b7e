#!/usr/bin/env bash
# Runs the sample configurations for rsyslog for real: one rsyslogd reads a log that rolls over while it
# is written, one of XML records and one of JSON lines, and sends them to another, where every record
# must arrive once. On demand, since it needs rsyslog: tests/shipping/rsyslog.sh BUILD_DIR
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
samples=$here/../../samples/shipping
olvex=$(realpath "$1/tools/olvex")
work=$(mktemp -d)
port=$((20000 + $$ % 20000))
daemons=()

stop() {
    local daemon
    for daemon in "${daemons[@]}"; do kill "$daemon" 2>/dev/null || true; done
    wait
}
trap 'stop; rm -rf "$work"' EXIT

fail() {
    echo "FAILED: $*" >&2
    tail -n 5 "$work"/*.messages >&2
    exit 1
}

# The samples, with their paths below the work directory and a port that is free.
start() {
    local name=$1
    {
        echo "global(workDirectory=\"$work/state-$name\")"
        sed -e "s|/var/log/|$work/|; s|logs\.example\.org|127.0.0.1|; s|port=\"514\"|port=\"$port\"|" \
            "$samples/rsyslog-$name.conf"
    } >"$work/$name.conf"
    mkdir -p "$work/state-$name"
    rsyslogd -N1 -f "$work/$name.conf" >"$work/$name.messages" 2>&1 || fail "$name.conf is not accepted"
    rsyslogd -n -f "$work/$name.conf" -i "$work/$name.pid" >>"$work/$name.messages" 2>&1 &
    daemons+=($!)
}

# Waits until a file has so many lines.
await() {
    local file=$1 lines=$2 try
    for try in {1..300}; do
        [[ -e $file && $(wc -l <"$file") -ge $lines ]] && break
        sleep 0.1
    done
    [[ $(wc -l <"$file") -eq $lines ]] || fail "$file has $(wc -l <"$file") lines, not $lines ($try)"
    echo "ok: ${file##*/} has $lines records"
}

cat >"$work/app.properties" <<END
text.className = ovx_basiclogger
text.listenerNames = textFile
textFile.className = ovx_filehandler
textFile.fileName = $work/app/app.log
textFile.maxFileBytes = 20000
textFile.maxFiles = 20
xml.className = ovx_pdlogger
xml.listenerNames = xmlFile
xmlFile.className = ovx_filehandler
xmlFile.fileName = $work/app/app.xml
xmlFile.formatterName = xmlFormat
xmlFormat.className = ovx_xmlformatter
END
log() { "$olvex" log --config "$work/app.properties" "$@"; }

mkdir -p "$work/app" "$work/collected"
start collector
start sender
# Ten parts, so that the log rolls over while it is read.
for part in {1..10}; do
    seq -f "APP0001I part $part, record %g" 200 | log --logger text
    sleep 0.3
done
printf 'APP0002E broken\nAPP0003I mended\n' | log --logger xml --level ERROR
"$olvex" view --json --id 'APP*' "$work/app/app.xml" >"$work/app/app.json"

await "$work/collected/app.log" 2000
[[ $(grep -o 'part .*' "$work/collected/app.log" | sort -u | wc -l) -eq 2000 ]] || fail "records are there twice"
echo "ok: over $(find "$work/app" -name 'app*.log' | wc -l) files, each record is there once"
await "$work/collected/app-xml.log" 2
await "$work/collected/app.json" 2
await "$work/collected/errors.json" 2
grep -q '"id": *"APP0002E"' "$work/collected/app.json" || fail "no identifier in $(cat "$work/collected/app.json")"
echo "ok: JSON lines are taken apart"
