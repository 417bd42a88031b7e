#!/usr/bin/env bash
# Does what the five-minute start tells its readers to do, with the blocks of code as they are printed:
# a block whose first line names a file becomes that file, ```sh is run, ```text is what it must
# have written. olvex must be installed where `olvex`, pkg-config and the loader find it.
# Usage: start.sh PAGE WORK_DIR
set -euo pipefail
page=$(realpath "$1") work=$2
rm -rf "$work"
mkdir -p "$work/.steps"
cd "$work"

# Writes the blocks as .steps/NN.KIND, in their order.
awk '
    /^```$/ && inside { inside = 0; close(file); next }
    /^```[a-z]+$/ { inside = 1; kind = substr($0, 4); file = sprintf(".steps/%02d.%s", ++blocks, kind); printf "" >file; next }
    inside { print >file }
' "$page"

without_times() { sed -E 's/^[0-9-]{10} [0-9:.]{12}[+-][0-9:]{5} /TIME /'; }

run() {
    bash -euo pipefail "$1" >.steps/output 2>&1 && return
    echo "FAILED: $(cat "$1")"
    cat .steps/output
    exit 1
}

ran=0
: >.steps/output
for block in .steps/*.*; do
    case $block in
    *.sh) run "$block" ;;
    *.text)
        diff <(without_times <"$block") <(without_times <.steps/output) || exit 1
        ran=$((ran + 1))
        ;;
    *) cp "$block" "$(head -n 1 "$block" | grep -oE '[A-Za-z0-9_]+\.(c|cpp|properties)')" ;;
    esac
done
[[ $ran -gt 0 ]] || { echo "FAILED: there is nothing to run in $page"; exit 1; }
echo "ok: the $ran outputs of ${page##*/} are as printed"
