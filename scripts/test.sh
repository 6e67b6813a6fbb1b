#!/usr/bin/env bash
# Installs what is needed, builds, and runs every test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh --tests
scripts/build.sh -DQX9_BUILD_TESTS=ON -DQX9_BUILD_BENCH=ON
(cd build && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$(nproc)" --timeout 300)
# The same suites under the sanitizers, and a few seconds of each fuzz target.
scripts/sanitize.sh
scripts/fuzz.sh --ci
