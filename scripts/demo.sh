#!/usr/bin/env bash
# Installs what is needed, builds, and runs the navigation centre on its demo settings with a
# made-up voyage as its data source: wakeline-tool simulate | wakeline --headless --replay -
# One data line a second, the live display drawn on the terminal. Ctrl-C ends both programs;
# the navigation centre closes with OK, so the track is flushed and the wind history saved.
# The demo's files go to build/demo/.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh"

demo="$root/build/demo"
mkdir -p "$demo/traces"
cp "$root/demo/SeaClear_2.ini" "$demo/SeaClear_2.ini"
export XDG_CONFIG_HOME="$demo/config"
# Notes (the start-up line and "normal closedown") go into the track as well.
if [ ! -f "$XDG_CONFIG_HOME/Wakeline/Wakeline.conf" ]; then
    mkdir -p "$XDG_CONFIG_HOME/Wakeline"
    printf '[Settings]\nSetLogData=True\n' >"$XDG_CONFIG_HOME/Wakeline/Wakeline.conf"
fi
log="$demo/WakelineDebug.txt"

echo "Wakeline demo: settings $demo/SeaClear_2.ini, track in $demo/traces"
echo "Press Ctrl-C to close."
sleep 1
# Ctrl-C goes to every program of the pipeline; the script itself carries on to the summary.
trap ':' INT
status=0
"$root/build/wakeline-tool" simulate |
    "$root/build/wakeline" --headless --replay - --log "$log" "$demo/SeaClear_2.ini,,,F" ||
    status=$?
trap - INT

echo
echo "--- the run closed with status $status"
echo "track files and wind history in $demo/traces:"
ls -l "$demo/traces"
latest="$(ls -t "$demo"/traces/*.TRT 2>/dev/null | head -n 1 || true)"
if [ -n "$latest" ]; then
    echo "--- the end of $latest"
    tail -n 3 "$latest"
fi
echo "--- diagnostic log: $log ($(wc -l <"$log" 2>/dev/null || echo 0) lines); its end:"
tail -n 4 "$log" 2>/dev/null || true
exit "$status"
