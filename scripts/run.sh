#!/usr/bin/env bash
# Installs what is needed, builds, and starts the application. Arguments are passed on:
#   scripts/run.sh --virtual        start with a virtual QX9 attached
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh
if [ -x build/bin/halvorn-qx9 ]; then
    exec build/bin/halvorn-qx9 "$@"
fi
if [ -x build/bin/qx9ctl ]; then
    exec build/bin/qx9ctl "$@"
fi
echo "Built. The window application is not part of this build yet; the libraries and tools are in build/."
