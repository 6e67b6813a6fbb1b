#!/usr/bin/env bash
# Runs a test program inside a throw-away virtual machine: the distribution's kernel under qemu
# with the kernel's HID stack (hid, uhid, hid-generic, hid-apple, evdev, and the USB gadget side:
# dummy_hcd, usb_f_hid, usbhid) and a running systemd-udevd, and exits with the program's status.
#   run_in_vm.sh [--timeout S] [--root DIR] PROGRAM [ARGS...]
# The program and the libraries it links are copied into the machine at the same paths; --root
# copies DIR's tree over the machine's root (an installed layout, say) with the libraries its
# programs link. Exits 77 (skipped) only when qemu, a kernel image with its modules, or busybox
# cannot be had here.
set -euo pipefail
timeout=240 overlay=""
while [ $# -gt 0 ]; do
    case $1 in
        --timeout) timeout=$2; shift 2 ;;
        --root) overlay=$2; shift 2 ;;
        *) break ;;
    esac
done
skip() { echo "SKIPPED: $1; scripts/install-deps.sh --tests installs it"; exit 77; }
qemu=$(command -v qemu-system-x86_64) || skip "no qemu (package qemu-system-x86)"
kernel=$(ls -v /boot/vmlinuz-* 2>/dev/null | tail -1) || true
kver=${kernel#/boot/vmlinuz-}
[ -r "$kernel" ] && [ -f "/lib/modules/$kver/modules.dep" ] || skip "no readable kernel image with its modules (package linux-image-amd64)"
[ -x /bin/busybox ] || skip "no busybox (package busybox-static)"
prog=$(readlink -f "$1"); shift

work=$(mktemp -d); root=$work/root
trap 'rm -rf "$work"' EXIT
mkdir -p "$root"/{bin,dev,proc,sys,run,tmp,mods,vm,etc/udev/rules.d,usr/lib/udev/rules.d}
copy() { [ -e "$root$1" ] || { mkdir -p "$root$(dirname "$1")" && cp -L "$1" "$root$1"; }; }
libs() { local l; for l in $(ldd "$1" 2>/dev/null | grep -o '/[^ ]*' || true); do copy "$l"; done; }
with_libs() { copy "$1" && libs "$1"; }  # a file and every library it links, each at its own path
cp /bin/busybox "$root/bin/"
for a in $(/bin/busybox --list); do [ -e "$root/bin/$a" ] || ln -s busybox "$root/bin/$a"; done
# The modules with what they depend on, each once and after its dependencies.
declare -A loaded=()
load() {
    local path dep
    path=$(grep -m1 -E "/$1\.ko(\.[a-z]+)?:" "/lib/modules/$kver/modules.dep") || return 0
    for dep in ${path#*:}; do load "$(basename "${dep%%.ko*}")"; done
    [ -n "${loaded[$1]:-}" ] && return 0
    loaded[$1]=1
    case ${path%%:*} in
        *.xz) xz -dc "/lib/modules/$kver/${path%%:*}" ;;
        *.zst) zstd -dcq "/lib/modules/$kver/${path%%:*}" ;;
        *) cat "/lib/modules/$kver/${path%%:*}" ;;
    esac >"$root/mods/$1.ko"
    echo "$1" >>"$root/vm/modules"
}
for m in hid uhid hid-generic hid-apple evdev configfs dummy_hcd libcomposite usb_f_hid usbhid; do load "$m"; done
for d in /lib/systemd /usr/lib/systemd; do [ -x $d/systemd-udevd ] && udevd=$d/systemd-udevd; done
with_libs "${udevd:?no systemd-udevd (package udev)}"
ln -s "$udevd" "$root/bin/udevd"
with_libs "$(command -v udevadm)"
for r in 50-udev-default 60-input-id 60-persistent-input; do
    cp "/usr/lib/udev/rules.d/$r.rules" "$root/usr/lib/udev/rules.d/"
done
with_libs "$prog"
if [ -n "$overlay" ]; then
    cp -a "$overlay/." "$root/"
    while read -r f; do libs "$f"; done < <(find "$overlay" -type f -perm -u+x)
fi
cp "$(dirname "$0")/init.sh" "$root/init"
{ printf 'exec'; for a in "$prog" "$@"; do printf " '%s'" "${a//\'/\'\\\'\'}"; done; echo; } >"$root/vm/run"
(cd "$root" && find . | cpio -o -H newc --quiet | gzip -1) >"$work/initrd.gz"

# Software emulation unless asked for KVM: a /dev/kvm that opens can still hang a guest (nested
# virtualisation), and the machine boots in a few seconds without it.
accel=tcg
[ "${QX9_VM_ACCEL:-}" = kvm ] && accel="kvm -accel tcg"
rc=0
timeout "$timeout" "$qemu" -accel $accel -m 1024 -smp 2 -nographic -no-reboot -kernel "$kernel" \
    -initrd "$work/initrd.gz" -append "console=ttyS0 panic=-1 loglevel=3 quiet" \
    </dev/null >"$work/console" 2>&1 || rc=$?
tr -d '\r' <"$work/console" >"$work/out"
status=$(sed -n 's/^VM-EXIT=\([0-9]*\)$/\1/p' "$work/out")
if [ -z "$status" ]; then
    [ $rc = 124 ] && echo "run_in_vm.sh: the machine did not finish within ${timeout}s" \
        || echo "run_in_vm.sh: the machine stopped before the program did (qemu exit $rc)"
    tail -40 "$work/out"
    exit 1
fi
sed -n '/^VM-BEGIN$/,/^VM-EXIT=/{/^VM-BEGIN$/d;/^VM-EXIT=/d;p}' "$work/out"
exit "$status"
