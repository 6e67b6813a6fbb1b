#!/usr/bin/env bash
# Installs the udev probe and rule that give the seat user access to the QX9's configuration
# interface (and only to it). Needs root; does nothing otherwise. Run after a build.
set -euo pipefail
cd "$(dirname "$0")/.."
if [ "$(id -u)" -ne 0 ]; then
    echo "To let your user reach the keyboard without root, run once as root: $0"
    exit 0
fi
cmake -S . -B build-udev -G Ninja -DCMAKE_BUILD_TYPE=Release -DQX9_BUILD_TESTS=OFF \
    -DQX9_BUILD_BENCH=OFF -DQX9_BUILD_GUI=OFF -DCMAKE_INSTALL_PREFIX=/usr -DQX9_UDEV_DIR=/usr/lib/udev >/dev/null
cmake --build build-udev --target qx9-hidraw-probe >/dev/null
cmake --install build-udev --component udev
if command -v udevadm >/dev/null 2>&1; then
    udevadm control --reload-rules 2>/dev/null || true
    udevadm trigger --subsystem-match=hidraw 2>/dev/null || true
fi
