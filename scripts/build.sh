#!/usr/bin/env bash
# Configures and builds Wakeline into build/ (Release with debug info). Extra arguments go to cmake.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cmake -S "$root" -B "$root/build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
cmake --build "$root/build" --parallel "$(nproc)"
