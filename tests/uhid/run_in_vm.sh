#!/usr/bin/env bash
# Runs a test program inside a throw-away virtual machine with the kernel's HID stack.
# Exits 77 (skipped) with a message when no such machine can be started here.
#   run_in_vm.sh VMTEST PROGRAM [ARGS...]
vmtest=$1
shift
# The runner beside the checkout, else the workplace's shared copy, else one on the PATH.
for candidate in "$vmtest" /work/shared/tools/vmtest "$(command -v vmtest 2>/dev/null || true)"; do
    if [ -n "$candidate" ] && [ -x "$candidate" ]; then
        vmtest=$candidate
        break
    fi
done
if [ ! -x "$vmtest" ]; then
    echo "SKIPPED: the virtual-machine runner ($vmtest) is not available on this machine"
    exit 77
fi
"$vmtest" --timeout 240 "$@"
rc=$?
case $rc in
    2 | 125)
        echo "SKIPPED: the virtual machine could not run the test (vmtest exit $rc)"
        exit 77
        ;;
esac
exit $rc
