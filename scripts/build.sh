#!/usr/bin/env bash
# Configures and builds into build/ (executables in build/bin/).
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-RelWithDebInfo}" >/dev/null
cmake --build build -j"$(nproc)"
