#!/bin/sh
# Process 1 of the virtual machine that scripts/power-cut boots with the host's files as its own, read-only. Puts the
# demo card on the first disk, keeps a copy of that as base.img, then logs every write and flush to the second disk
# while the driver saves. The kernel command line hands in: OUT, CARD, DRIVER, SOUNDS, OPTIONS (of the mount), ROOM
# (bytes that are left on the card; empty: all) and EAGER (set: the kernel writes back at once and not after seconds).
trap 'echo "guest: exit $?"; echo o >/proc/sysrq-trigger; sleep 60' EXIT
set -e
mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t tmpfs tmpfs /run
mkdir /run/out /run/card
mount -t hostfs -o "$OUT" hostfs /run/out
modules=/usr/lib/uml/modules/$(uname -r)/kernel
for module in fs/nls/nls_cp437 fs/nls/nls_iso8859-1 fs/fat/fat fs/fat/vfat drivers/md/dm-mod drivers/md/dm-log-writes; do
  insmod "$modules/$module.ko"
done

mount -t vfat /dev/ubda /run/card
cp -r "$CARD"/. /run/card
if [ -n "$ROOM" ]; then
  free=$(($(stat -f -c '%a * %S' /run/card)))
  head -c $((free - ROOM)) /dev/zero >/run/card/FILLER.BIN
fi
umount /run/card
dd if=/dev/ubda of=/run/out/base.img bs=1M conv=sparse 2>/dev/null

if [ -n "$EAGER" ]; then
  echo 1 >/proc/sys/vm/dirty_writeback_centisecs
  echo 1 >/proc/sys/vm/dirty_expire_centisecs
fi
dmsetup create card --noudevsync --table "0 $(blockdev --getsz /dev/ubda) log-writes /dev/ubda /dev/ubdb"
mount -t vfat -o "$OPTIONS" /dev/dm-0 /run/card
QT_QPA_PLATFORM=offscreen "$DRIVER" /run/card /run/work /run/out "$SOUNDS" dmsetup message card 0 mark >/run/out/saves
umount /run/card
dmsetup remove --noudevsync card
