#!/usr/bin/env bash
# Installs what is needed, builds, and runs every test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh
cd build
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$(nproc)" --timeout 300
