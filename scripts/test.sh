#!/usr/bin/env bash
# Installs what is needed, builds everything, runs the fuzz targets for a bounded time and
# then every test. WAKELINE_FUZZ_SECONDS sets the time per fuzz target (default 30; 0 skips).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh"
fuzz_seconds="${WAKELINE_FUZZ_SECONDS:-30}"
if [ "$fuzz_seconds" -gt 0 ]; then
    mkdir -p "$root/build"
    fuzz_log="$root/build/fuzz.log"
    fuzz_status=0
    "$root/scripts/fuzz.sh" "$fuzz_seconds" >"$fuzz_log" 2>&1 || fuzz_status=$?
    grep -E '^(== |Done [0-9]+ runs|==[0-9]+==ERROR|SUMMARY)' "$fuzz_log" || true
    if [ "$fuzz_status" -ne 0 ]; then
        tail -n 60 "$fuzz_log"
        echo "fuzzing found a fault or failed to build (log: $fuzz_log)"
        exit 1
    fi
fi
cd "$root/build"
ctest --output-on-failure --timeout 300
