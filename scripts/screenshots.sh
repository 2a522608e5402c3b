#!/usr/bin/env bash
# Starts the navigation centre's window under Xvfb on a replayed voyage with a polar file, so
# that the corrected wind and the target speed show, and saves PNGs of the main window at its
# default and its minimum width, by day and by night, of the help window and of the tables
# window (a sail of 11 wind speeds by 10 angles), of the wind graph and of the battery alarm
# window by day and at night, into
# docs/screenshots/ (or the directory given). DPI=192 sets the virtual screen's resolution.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
out="${1:-$root/docs/screenshots}"
dpi="${DPI:-96}"
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" >/dev/null

boat="$(mktemp -d)"
trap 'rm -rf "$boat"' EXIT
mkdir -p "$boat/traces" "$boat/config" "$boat/state" "$out"
printf '[Program Setup]\r\nDDE=1\r\nTrack Time=10\r\nTrack Dir=%s/traces\r\n' "$boat" \
    >"$boat/SeaClear_2.ini"
cp "$root/tests/data/polar_file/genoa_11x10.txt" "$boat/traces/WakelinePolar.txt"
# The help window shows the help text beside the program, as an installed one would.
cp "$root/data/Wakeline.txt" "$root/build/tests/Wakeline.txt"

XDG_CONFIG_HOME="$boat/config" XDG_STATE_HOME="$boat/state" QT_FONT_DPI="$dpi" \
    xvfb-run -a -s "-screen 0 1280x1024x24 -dpi $dpi" \
    "$root/build/tests/wakeline_screenshots" "$out" \
    "$root/tests/data/voyage/beat_to_windward.TRT" "$boat/SeaClear_2.ini"
