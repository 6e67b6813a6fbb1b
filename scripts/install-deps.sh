#!/usr/bin/env bash
# Installs the Debian packages this project builds and tests with. Safe to run again: it only
# asks apt for packages that are missing. (qemu, a kernel image and busybox let the device tests
# run against the kernel's HID stack inside a throw-away virtual machine; dpkg-dev, file and the
# validators build and check the Debian package.)
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config
    libsqlite3-dev nlohmann-json3-dev libudev-dev libevdev-dev libcli11-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    qt6-base-dev qt6-base-dev-tools qt6-svg-dev libqt6svg6 qt6-translations-l10n
    fonts-noto-cjk xvfb xauth
    qemu-system-x86 linux-image-amd64 busybox-static cpio udev
    dpkg-dev file librsvg2-bin desktop-file-utils appstream
    clang libclang-rt-14-dev
)

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
