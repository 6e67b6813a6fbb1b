#!/usr/bin/env bash
# Installs the udev probe and rule that give the seat user access to the QX9's configuration
# interface (and only to it). The probe is built as the user; only the installation and the
# reload of udev run as root (through sudo when the script is not root already).
set -euo pipefail
cd "$(dirname "$0")/.."
as_user() {
    if [ "$(id -u)" -eq 0 ] && [ -n "${SUDO_USER:-}" ] && [ "${SUDO_USER}" != root ]; then
        sudo -u "$SUDO_USER" -- "$@"
    else
        "$@"
    fi
}
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null 2>&1; then
        sudo -- "$@"
    else
        echo "install-udev-rule.sh: installing the rule needs root: $*" >&2
        return 1
    fi
}
as_user cmake -S . -B build-udev -G Ninja -DCMAKE_BUILD_TYPE=Release -DQX9_BUILD_TESTS=OFF \
    -DQX9_BUILD_BENCH=OFF -DQX9_BUILD_GUI=OFF -DCMAKE_INSTALL_PREFIX=/usr -DQX9_UDEV_DIR=/usr/lib/udev >/dev/null
as_user cmake --build build-udev --target qx9-hidraw-probe >/dev/null
as_root cmake --install build-udev --component udev
if command -v udevadm >/dev/null 2>&1; then
    as_root udevadm control --reload-rules 2>/dev/null || true
    as_root udevadm trigger --subsystem-match=hidraw 2>/dev/null || true
fi
