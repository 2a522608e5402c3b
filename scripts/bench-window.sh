#!/usr/bin/env bash
# Builds, then measures what the navigation centre's window costs, under Xvfb: the CPU time of
# `wakeline` fed one data line a second against an empty Qt window (WAKELINE_BENCH_SECONDS
# each, default 60; 5 is enough for a quick look), and the time from a data line's arrival on
# the link to the repaint of the value it changed. Arguments go to the benchmark program, e.g.
# --benchmark_filter=BM_LineToRepaint.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" >/dev/null
xvfb-run -a -s "-screen 0 1280x1024x24" \
    "$root/build/bench/wakeline_window_bench" --benchmark_filter='BM_WindowCpu|BM_LineToRepaint' "$@"
