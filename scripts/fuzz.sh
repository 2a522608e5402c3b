#!/usr/bin/env bash
# Builds the libFuzzer targets with clang into build-fuzz/ and runs each for a bounded time.
# Usage: scripts/fuzz.sh [SECONDS_PER_TARGET] (default 60). Exits non-zero on any finding;
# the crashing input is left in build-fuzz/findings/.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
seconds="${1:-60}"
build="$root/build-fuzz"

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DWAKELINE_BUILD_FUZZ=ON -DWAKELINE_BUILD_TESTS=OFF -DWAKELINE_BUILD_BENCH=OFF \
    -DWAKELINE_BUILD_APP=OFF >/dev/null
cmake --build "$build" --parallel 2

mkdir -p "$build/findings"
status=0
for target in "$build"/fuzz/*_fuzz; do
    name="$(basename "$target" _fuzz)"
    corpus="$build/corpus/$name"
    mkdir -p "$corpus"
    # Seeds: the fixtures of the matching tests/data folder, when there is one.
    if [ -d "$root/tests/data/$name" ]; then
        cp -n "$root/tests/data/$name"/* "$corpus"/ 2>/dev/null || true
    fi
    echo "== $name: ${seconds}s"
    if ! "$target" "$corpus" -max_total_time="$seconds" -print_final_stats=1 \
        -artifact_prefix="$build/findings/${name}-"; then
        status=1
    fi
done
exit $status
