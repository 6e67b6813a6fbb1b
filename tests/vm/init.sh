#!/bin/sh
# The first process of the machine run_in_vm.sh boots: file systems, the modules, udevd, then the
# program (/vm/run), whose exit status it prints before it powers the machine off.
mount -t proc proc /proc
mount -t sysfs sys /sys
mount -t devtmpfs dev /dev
mount -t tmpfs run /run
while read -r m; do insmod "/mods/$m.ko"; done </vm/modules
mount -t configfs none /sys/kernel/config
udevd --daemon
udevadm trigger --action=add
udevadm settle --timeout=30
cd /tmp
echo VM-BEGIN
sh /vm/run
echo "VM-EXIT=$?"
poweroff -f
