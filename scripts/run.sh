#!/usr/bin/env bash
# Installs what is needed, builds, and starts the application. Arguments are passed on:
#   scripts/run.sh --virtual        start with a virtual QX9 attached
# Run as root, it also installs the udev rule that lets the seat user reach the keyboard.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh
if [ "$(id -u)" -eq 0 ]; then
    scripts/install-udev-rule.sh || echo "run.sh: the udev rule could not be installed; see README"
fi
if [ -x build/bin/halvorn-qx9 ]; then
    exec build/bin/halvorn-qx9 "$@"
fi
exec build/bin/qx9ctl "$@"
