#!/usr/bin/env bash
# Installs what is needed, builds, and starts the application. Arguments are passed on:
#   scripts/run.sh --virtual        start with a virtual QX9 attached
# Run it as your own user: it asks for root (sudo) only to install missing packages and, once,
# the udev rule that lets your user reach the keyboard. It never runs the window as root.
set -euo pipefail
cd "$(dirname "$0")/.."
if [ "$(id -u)" -eq 0 ]; then
    if [ -z "${SUDO_USER:-}" ] || [ "${SUDO_USER}" = root ]; then
        echo "run.sh: the window does not run as root; run scripts/run.sh as your own user (it uses sudo only to install packages and the udev rule)" >&2
        exit 1
    fi
    # Started through sudo: the packages now, everything else as the user who asked.
    scripts/install-deps.sh --run
    exec sudo -u "$SUDO_USER" --preserve-env=DISPLAY,WAYLAND_DISPLAY,XAUTHORITY,XDG_RUNTIME_DIR,DBUS_SESSION_BUS_ADDRESS \
        -- "$0" "$@"
fi
scripts/install-deps.sh --run
scripts/build.sh -DQX9_BUILD_TESTS=OFF -DQX9_BUILD_BENCH=OFF
if [ ! -e /usr/lib/udev/rules.d/70-halvorn-qx9.rules ] && [ ! -e /etc/udev/rules.d/70-halvorn-qx9.rules ]; then
    scripts/install-udev-rule.sh || echo "run.sh: the udev rule was not installed; the keyboard needs it (see README)" >&2
fi
if [ -x build/bin/halvorn-qx9 ]; then
    exec build/bin/halvorn-qx9 "$@"
fi
exec build/bin/qx9ctl "$@"
