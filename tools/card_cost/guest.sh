#!/bin/sh
# Process 1 of the virtual machine of scripts/card-cost: puts each card on a disk of its own, takes a fresh mount for each
# row and has the driver do it. The kernel command line hands in: OUT, DRIVER, FULL and ROOMY (the cards' folders).
trap 'echo "guest: exit $?"; echo o >/proc/sysrq-trigger; sleep 60' EXIT
set -e
mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t tmpfs -o size=90% tmpfs /run
mkdir /run/out /run/card
mount -t hostfs -o "$OUT" hostfs /run/out
modules=/usr/lib/uml/modules/$(uname -r)/kernel
for module in fs/nls/nls_cp437 fs/nls/nls_iso8859-1 fs/fat/fat fs/fat/vfat; do
  insmod "$modules/$module.ko"
done

# disk CARD ROW...
rows() {
  disk=$1
  mount -t vfat "/dev/$disk" /run/card
  cp -r "$2"/. /run/card
  umount /run/card
  shift 2
  for row; do
    mount -t vfat "/dev/$disk" /run/card
    echo 3 >/proc/sys/vm/drop_caches
    QT_QPA_PLATFORM=offscreen "$DRIVER" "$row" /run/card /run/out/work "/sys/block/$disk/stat" >>/run/out/rows
    umount /run/card
    rm -rf /run/out/work
  done
}

rows ubda "$FULL" read open kit kits copy
rows ubdb "$ROOMY" export sounds-200 sounds-2000
