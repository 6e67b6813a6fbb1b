#!/usr/bin/env bash
# Configures and builds into build/ (executables in build/bin/); arguments go to cmake, e.g.
#   scripts/build.sh -DQX9_BUILD_TESTS=OFF -DQX9_BUILD_BENCH=OFF    the programs alone
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-RelWithDebInfo}" "$@" >/dev/null
cmake --build build -j"$(nproc)"
