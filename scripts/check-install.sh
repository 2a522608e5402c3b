#!/usr/bin/env bash
# Installs a build tree into a scratch prefix and checks what lands there: the two programs,
# stripped, under bin/, the data directory, and nothing from the tests or benchmarks.
# Usage: scripts/check-install.sh BUILD_DIR
set -euo pipefail
build="$1"
prefix="$(mktemp -d)"
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" --strip >/dev/null
status=0
for program in wakeline wakeline-tool; do
    if [ ! -x "$prefix/bin/$program" ]; then
        echo "missing: bin/$program"
        status=1
    elif readelf -S "$prefix/bin/$program" | grep -q '\.debug_info'; then
        echo "not stripped: bin/$program"
        status=1
    fi
done
unexpected="$(cd "$prefix" && find . -type f | grep -vE '^\./(bin/wakeline|bin/wakeline-tool|share/wakeline/.*)$' || true)"
if [ -n "$unexpected" ]; then
    echo "installed but not part of the program:"
    echo "$unexpected"
    status=1
fi
[ "$status" -eq 0 ] && echo "installed: $(cd "$prefix" && find . -type f | sort | tr '\n' ' ')"
exit "$status"
