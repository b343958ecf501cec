"""Reads FAT16 and FAT32 images the way a card's user would see them after a power cut, and quickly again after each
change: what a change of a cluster or of its entry in the allocation table can't have altered is remembered."""

import collections
import struct

BROKEN = "broken chain"

Entry = collections.namedtuple("Entry", "name is_folder start size stops short_only")
# `stops`: behind a free slot that ends the folder for strict readers (the instrument), while Linux reads on.


class Volume:
    def __init__(self, image):
        self.image = image  # bytearray
        sector, self.sectors_per_cluster, reserved, fats, root_entries, total, _, fat16 = struct.unpack_from(
            "<HBHBHHBH", image, 11)
        total = total or struct.unpack_from("<I", image, 32)[0]
        self.wide = fat16 == 0
        fat_sectors = fat16 or struct.unpack_from("<I", image, 36)[0]
        self.root_start = struct.unpack_from("<I", image, 44)[0] if self.wide else 0
        self.fat = reserved * sector
        self.fat_end = self.fat + fat_sectors * sector
        self.root = self.fat + fats * fat_sectors * sector  # of FAT16; the data area of FAT32
        self.data = self.root + root_entries * 32
        self.cluster_size = self.sectors_per_cluster * sector
        self.last = (total * sector - self.data) // self.cluster_size + 1
        self.width, self.code, self.mask, self.end = (4, "<I", 0x0FFFFFFF, 0x0FFFFFF8) if self.wide else (2, "<H", 0xFFFF, 0xFFF8)
        self.memory = {}
        self.readers = collections.defaultdict(set)  # cluster (0: the root of FAT16) -> keys of `memory`
        self.altered = True  # what can be seen, since this was last set to False

    def write(self, offset, data):
        """Returns what was there."""
        before = bytes(self.image[offset:offset + len(data)])
        self.image[offset:offset + len(data)] = data
        if self.fat <= offset < self.fat_end:
            old, new = (memoryview(x).cast(self.code[1]) for x in (before, bytes(data)))
            first = (offset - self.fat) // self.width
            self.forget(first + i for i, (a, b) in enumerate(zip(old, new)) if a != b)
        elif offset >= self.data:
            first = (offset - self.data) // self.cluster_size
            self.forget(range(first + 2, (offset + len(data) - 1 - self.data) // self.cluster_size + 3))
        elif offset >= self.root:
            self.forget([0])
        return before

    def forget(self, clusters):
        for cluster in clusters:
            for key in self.readers.pop(cluster, ()):
                if self.memory.pop(key, None) is not None:
                    self.altered = True

    def chain(self, start, limit=1 << 30):
        """The clusters from `start` to the end of the chain or `limit` of them, and whether it is in order."""
        clusters, seen = [], set()
        while 2 <= start <= self.last and start not in seen and len(clusters) < limit:
            clusters.append(start)
            seen.add(start)
            start = self.next(start)
        # A cluster in use whose entry says free would be given to the next file.
        return clusters, (start >= self.end or len(clusters) == limit) and start != 0

    def next(self, cluster):
        return struct.unpack_from(self.code, self.image, self.fat + cluster * self.width)[0] & self.mask

    def remember(self, key, clusters, start, value):
        for cluster in [*clusters, start]:
            self.readers[cluster].add(key)
        self.memory[key] = (value, clusters)
        return self.memory[key]

    def bytes_of(self, clusters):
        at = (self.data + (cluster - 2) * self.cluster_size for cluster in clusters)
        return b"".join(bytes(self.image[offset:offset + self.cluster_size]) for offset in at)

    def file(self, start, size):
        """The hash of the content, or BROKEN; and the clusters."""
        key = (start, size)
        if key in self.memory:
            return self.memory[key]
        needed = -(-size // self.cluster_size)
        clusters, whole = self.chain(start, needed) if needed else ([], True)
        whole = whole and len(clusters) == needed
        return self.remember(key, clusters, start, hash(self.bytes_of(clusters)[:size]) if whole else BROKEN)

    def content(self, start, size):
        return self.bytes_of(self.file(start, size)[1])[:size]

    def folder(self, start):
        """The entries, BROKEN among them where the chain or "." is wrong, "." itself left out; and the clusters."""
        key = (start, None)
        if key in self.memory:
            return self.memory[key]
        if start == 0:
            return self.remember(key, [], 0, parse_folder(bytes(self.image[self.root:self.data]), self.wide, None))
        clusters, whole = self.chain(start)
        entries = parse_folder(self.bytes_of(clusters), self.wide, None if start == self.root_start else start)
        return self.remember(key, clusters, start, entries if whole else [*entries, BROKEN])


def parse_folder(table, wide, own):
    """`own`: the folder's first cluster where it has the entries "." and ".."."""
    entries, long_name, stops = [], [], False
    for offset in range(0, len(table), 32):
        slot = table[offset:offset + 32]
        attributes = slot[11]
        if slot[0] in (0, 0xE5):
            stops = stops or slot[0] == 0
            long_name = []
        elif attributes & 0x3F == 0x0F:
            if slot[0] & 0x40:
                long_name = []
            long_name.append(slot)
        elif attributes & 0x08:
            long_name = []
        else:
            name = joined_name(long_name, slot)
            start, size = struct.unpack_from("<HI", slot, 26)
            start |= struct.unpack_from("<H", slot, 20)[0] << 16 if wide else 0
            is_folder = bool(attributes & 0x10)
            if not (own and slot[:11] == b".          " and start == own):
                entries.append(Entry((name or short_name(slot)).upper(), is_folder, start, size, stops, name is None))
            long_name = []
    return entries if own is None or table[:11] == b".          " else [*entries, BROKEN]


def short_name(slot):
    stem, extension = slot[:8].decode("latin-1").rstrip(), slot[8:11].decode("latin-1").rstrip()
    return f"{stem}.{extension}" if extension else stem


def joined_name(slots, short):
    """The long name, or None where its slots don't belong to the short one."""
    checksum = 0
    for byte in short[:11]:
        checksum = ((checksum >> 1) | (checksum << 7) & 0xFF) + byte & 0xFF
    numbers = [slot[0] & 0x3F for slot in slots]
    if not slots or not slots[0][0] & 0x40 or numbers != list(range(len(slots), 0, -1)) or any(slot[13] != checksum for slot in slots):
        return None
    text = b"".join(slot[1:11] + slot[14:26] + slot[28:32] for slot in reversed(slots)).decode("utf-16-le", "replace")
    return text.split("\0")[0]
