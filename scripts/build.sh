#!/usr/bin/env bash
# Configures and builds Wakeline into build/ (Release with debug info), tests and benchmarks
# included: named explicitly, since the demo configures the same build/ without them. Extra
# arguments go to cmake.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cmake -S "$root" -B "$root/build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DWAKELINE_BUILD_TESTS=ON -DWAKELINE_BUILD_BENCH=ON "$@" >/dev/null
cmake --build "$root/build" --parallel "$(nproc)"
