#!/usr/bin/env bash
# Installs what is needed, builds everything and runs every test.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh"
cd "$root/build"
ctest --output-on-failure --timeout 300
