#!/usr/bin/env bash
# Installs what is needed, builds, and runs the navigation centre on its demo settings.
# The demo's track files and log go to build/demo/; press Ctrl-C to close the run.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh"

demo="$root/build/demo"
mkdir -p "$demo/traces"
cp "$root/demo/SeaClear_2.ini" "$demo/SeaClear_2.ini"
export XDG_CONFIG_HOME="$demo/config"

echo "Wakeline demo: settings $demo/SeaClear_2.ini, log $demo/WakelineDebug.txt"
echo "Press Ctrl-C to close."
status=0
"$root/build/wakeline" --headless --log "$demo/WakelineDebug.txt" "$demo/SeaClear_2.ini,,,F" || status=$?
echo "--- diagnostic log"
cat "$demo/WakelineDebug.txt" 2>/dev/null || true
exit "$status"
