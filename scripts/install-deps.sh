#!/usr/bin/env bash
# Installs the Debian packages this project needs. Safe to run again: it only asks apt for
# packages that are missing.
#   scripts/install-deps.sh           what building the programs and the Debian packages needs
#   scripts/install-deps.sh --run     and what the window uses at run time (Qt's translations,
#                                     the Chinese interface's font)
#   scripts/install-deps.sh --tests   and what the tests use: GoogleTest and Google Benchmark,
#                                     Xvfb, desktops for the focus and lock tests (openbox and
#                                     xdotool, a headless sway with foot's windows, D-Bus
#                                     daemons), qemu with a kernel image and busybox for the device
#                                     tests in a virtual machine, clang for the fuzz targets,
#                                     and the package checkers
set -euo pipefail

build=(
    build-essential cmake ninja-build pkg-config
    libsqlite3-dev nlohmann-json3-dev libudev-dev libevdev-dev libcli11-dev
    qt6-base-dev qt6-base-dev-tools qt6-svg-dev libqt6svg6
    libxcb1-dev libwayland-dev libwayland-bin libsystemd-dev
    librsvg2-bin dpkg-dev file
)
run=(qt6-translations-l10n fonts-noto-cjk)
tests=(
    libgtest-dev libgmock-dev libbenchmark-dev
    xvfb xauth openbox xdotool sway foot dbus-daemon
    qemu-system-x86 linux-image-amd64 busybox-static cpio udev
    desktop-file-utils appstream lintian devscripts mandoc
    clang libclang-rt-14-dev
)

packages=("${build[@]}")
case "${1:-}" in
    "") ;;
    --run) packages+=("${run[@]}") ;;
    --tests) packages+=("${run[@]}" "${tests[@]}") ;;
    *) echo "usage: scripts/install-deps.sh [--run|--tests]" >&2; exit 2 ;;
esac

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

echo "Installing: ${missing[*]}"
if [ "$(id -u)" -eq 0 ]; then
    apt_get=(apt-get)
elif command -v sudo >/dev/null 2>&1; then
    # Only the package installation needs root; nothing else in the build does.
    apt_get=(sudo apt-get)
else
    echo "These packages are missing and installing them needs root:" >&2
    echo "  apt-get install ${missing[*]}" >&2
    exit 1
fi
export DEBIAN_FRONTEND=noninteractive
"${apt_get[@]}" update -qq || true
"${apt_get[@]}" install -y -qq --no-install-recommends "${missing[@]}"
