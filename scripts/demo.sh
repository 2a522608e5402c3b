#!/usr/bin/env bash
# Installs what running takes, builds the two programs, and sails a simulated voyage with the
# navigation centre: `wakeline-tool sim` serves a yacht's data lines as the chart plotter's link
# on a free loopback port, and `wakeline --link` takes them, in its window when a display is
# there ($DISPLAY or $WAYLAND_DISPLAY), otherwise headless with the live display drawn on the
# terminal. Closing the window or Ctrl-C ends both; the navigation centre closes with OK, so the
# track is flushed and the wind history saved. The demo's files go to build/demo/.
#
# WAKELINE_DEMO_SPEEDUP (default 4) sets how many simulated seconds pass in a second.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="$root/build"
"$root/scripts/install-deps.sh" --run
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DWAKELINE_BUILD_TESTS=OFF -DWAKELINE_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" --parallel "$(nproc)" --target wakeline wakeline-tool

demo="$build/demo"
mkdir -p "$demo/traces"
cp "$root/demo/SeaClear_2.ini" "$demo/SeaClear_2.ini"
# The polar file lies beside the track files; its current sail is the one the boat carries.
cp "$root/demo/WakelinePolar.txt" "$demo/traces/WakelinePolar.txt"
export XDG_CONFIG_HOME="$demo/config"
# Notes (the start-up line and "normal closedown") go into the track as well.
if [ ! -f "$XDG_CONFIG_HOME/Wakeline/Wakeline.conf" ]; then
    mkdir -p "$XDG_CONFIG_HOME/Wakeline"
    printf '[Settings]\nSetLogData=True\n' >"$XDG_CONFIG_HOME/Wakeline/Wakeline.conf"
fi
log="$demo/WakelineDebug.txt"
simlog="$demo/sim.txt"

# The simulator on a port the system picks; its first line names it.
"$build/src/wakeline-tool" sim --port 0 --rate 2 --speedup "${WAKELINE_DEMO_SPEEDUP:-4}" \
    2>"$simlog" &
sim=$!
stop_sim() {
    if kill -0 "$sim" 2>/dev/null; then
        kill -TERM "$sim" 2>/dev/null || true
        wait "$sim" 2>/dev/null || true
    fi
}
trap stop_sim EXIT
port=""
for _ in $(seq 100); do
    port="$(sed -n 's/.* on 127\.0\.0\.1:\([0-9]*\).*/\1/p' "$simlog" | head -n 1)"
    [ -n "$port" ] && break
    kill -0 "$sim" 2>/dev/null || break
    sleep 0.1
done
if [ -z "$port" ]; then
    echo "The simulator did not start:" >&2
    cat "$simlog" >&2
    exit 1
fi

mode=(--headless)
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    mode=()
    echo "Wakeline demo: the navigation centre opens its window; close it to end the voyage."
else
    echo "Wakeline demo: no display, so the navigation centre runs on the terminal."
fi
echo "The voyage is served on 127.0.0.1:$port; settings $demo/SeaClear_2.ini, track in"
echo "$demo/traces. Press Ctrl-C to end it."
sleep 1
# Ctrl-C reaches the navigation centre, which closes with OK; the script carries on to the
# summary and then ends the simulator.
trap ':' INT
status=0
"$build/src/wakeline" "${mode[@]}" --link "127.0.0.1:$port" --log "$log" \
    "$demo/SeaClear_2.ini,,,F" || status=$?
trap - INT
stop_sim

echo
echo "--- the run closed with status $status"
echo "track files, wind history and polar file in $demo/traces:"
ls -l "$demo/traces"
latest="$(ls -t "$demo"/traces/*.TRT 2>/dev/null | head -n 1 || true)"
if [ -n "$latest" ]; then
    echo "--- the end of $latest"
    tail -n 3 "$latest"
fi
echo "--- diagnostic log: $log ($(wc -l <"$log" 2>/dev/null || echo 0) lines); its end:"
tail -n 4 "$log" 2>/dev/null || true
exit "$status"
