#!/usr/bin/env bash
# Installs the Debian 12 packages Wakeline needs: with --run only what building and running the
# two programs takes (the demo), otherwise also what the tests, benchmarks and fuzzing take.
# Does nothing when they are all present already, so it is cheap to call before every build.
set -euo pipefail

# Building and running the programs.
run_packages=(
    build-essential cmake ninja-build pkg-config
    qt6-base-dev nlohmann-json3-dev libpulse-dev
)
# The tests, benchmarks and fuzz targets on top.
test_packages=(
    dbus-daemon python3 xvfb xauth pulseaudio pulseaudio-utils
    libgtest-dev libgmock-dev libbenchmark-dev
    clang libclang-rt-14-dev
    desktop-file-utils appstream man-db groff-base
)

packages=("${run_packages[@]}")
if [ "${1:-}" != "--run" ]; then
    packages+=("${test_packages[@]}")
fi

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
