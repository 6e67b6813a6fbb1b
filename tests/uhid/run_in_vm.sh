#!/usr/bin/env bash
# Runs a test program inside a throw-away virtual machine with the kernel's HID stack.
# Exits 77 (skipped) with a message when no such machine can be started here.
#   run_in_vm.sh VMTEST PROGRAM [ARGS...]
vmtest=$1
shift
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
