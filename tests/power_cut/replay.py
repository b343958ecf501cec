#!/usr/bin/python3
"""Cuts the power at every point of recorded saves and looks at what is left of the card.

For each save in the log of dm-log-writes: the card after every single write (prefixes), and for every stretch between
two flushes the card with chosen subsets of its writes, since a device may bring what it hasn't flushed in any order
(reorderings: all subsets of few writes, seeded ones of many, some with writes torn into sectors). In each state:

  torn        a file is neither its old self nor its new one
  missing     a file that was to stay or to be replaced isn't there
  naming      a parameter file names audio that isn't there, or not yet the new one
  order       something is new while what must come before it isn't
  stale       a folder shows entries that nobody made, or its chain of clusters breaks off
  shared      two files share a cluster (looked for at the flushes)
  late        the save had returned and its outcome could still be lost
What no order of calls prevents, or what harms nobody, is counted as well, but is no fault:

  grown       stale, but only in a reordering or with --eager: FAT enlarges a folder by chain and cluster in one stretch
  empty       a new file has no content yet, and only with --eager: the kernel writes back between a rename and the
              fsync behind it
  short       a new file, or one on its way out, is seen by its short name only
  parent      the ".." of a new folder still leads to where it was made
  left        something temporary is there

usage: replay.py FOLDER [--seeds N] [--saves N...] [--eager]
FOLDER is as guest.sh leaves it; --eager where the kernel wrote back at once. Exit 1 with faults.
"""

import argparse
import collections
import itertools
import pathlib
import random
import re
import struct
import sys

sys.dont_write_bytecode = True  # this is a folder of sources
from fat_volume import BROKEN, Volume

FLUSH, FUA, DISCARD, MARK = 1, 2, 4, 8
MAGIC = 0x6A736677736872
CARD = "ROLAND/SPD-SX/"
RANKS = ("WAVE/DATA/", "WAVE/PRM/", "KIT/", "SYSTEM/TAG_LIST", "SYSTEM/WAVELIST")
NOTES = ("grown", "empty", "short", "parent", "left")
EXAMPLES = 4


def read_log(path):
    """Yields ("write", offset, data), ("flush",) and ("mark", text) in the order in which they happened."""
    with open(path, "rb") as log:
        magic, _, entries, sector = struct.unpack("<QQQI", log.read(28))
        assert magic == MAGIC, "no log of dm-log-writes"
        log.seek(sector)
        for _ in range(entries):
            header = log.read(sector)
            start, count, flags, length = struct.unpack_from("<QQQQ", header)
            if flags & MARK:
                yield "mark", header[32:32 + length].decode().rstrip("\0")
                continue
            assert not flags & DISCARD, "a discard: not a mount as users have it"
            if flags & FLUSH:
                yield ("flush",)
            if count:
                yield "write", start * sector, log.read(count * sector)
            if flags & FUA:
                yield ("flush",)


class Expectation:
    """What may be seen while the card goes from the files `old` to the files `new` (hashes by path)."""

    def __init__(self, old, new, removed, audio_of):
        self.old, self.new, self.removed, self.audio_of = old, new, removed, audio_of
        self.constant = {path for path, content in old.items() if new.get(path) == content and path not in removed}
        self.staying = {path for path in old if path in new and path not in removed}
        self.ranks = [{path for path, content in new.items() if path.startswith(CARD + rank) and old.get(path) != content}
                      for rank in RANKS]
        self.folders = {path[:i + 1] for path in [*old, *new] for i, c in enumerate(path) if c == "/"}

    def faults(self, seen, strict):
        """`seen`: hashes by path as the most generous reader finds them; `strict`: paths that every reader finds."""
        for path in self.staying - strict:
            yield "missing", path
        for path, content in seen.items():
            if content == hash(b"") and path in self.new and path not in self.staying:
                yield "empty", path
            elif content not in (self.old.get(path), self.new.get(path)):
                yield "torn" if path in self.old or path in self.new else "stale", path
        fresh = [{path for path in rank if seen.get(path) == self.new[path]} for rank in self.ranks]
        for i, rank in enumerate(fresh[2:], 2):
            for before, shown in zip(self.ranks[:i], fresh):
                for path in (before - shown) if rank else ():
                    yield "order", f"{path} is not new while {min(rank)} is"
        if any(fresh):
            for path in self.removed & seen.keys():
                if seen[path] != self.new.get(path):
                    yield "order", f"{path} is still there"
        if any(path.startswith(CARD + RANKS[2]) and path not in seen for path in self.removed):
            for path in self.removed:
                if path in seen and path.startswith(CARD + "WAVE/") and seen[path] != self.new.get(path):
                    yield "order", f"{path} is still there and a kit is gone"
        for path, content in seen.items():
            audio = self.audio_of.get((path, content))
            if audio in self.old or audio in self.new:
                wanted = [tree.get(audio) for tree in (self.old, self.new)
                          if tree.get(path) == content]
                if audio not in strict or seen.get(audio) not in wanted:
                    yield "naming", f"{path} names {audio}"


class Replay:
    def __init__(self, folder, seeds, saves, eager=False):
        self.volume = Volume(bytearray((folder / "base.img").read_bytes()))
        self.log, self.folder, self.seeds, self.saves = read_log(folder / "log.img"), folder, seeds, saves
        self.eager, self.random = eager, random.Random(1)
        self.counts, self.examples = collections.Counter(), collections.defaultdict(list)
        self.pending, self.undo = [], []  # writes since the last flush, what they replaced
        self.place, self.expected = "", None
        self.verdict = ()
        self.audio_of = {}

    # ------------------------------------------------------------ looking

    def look(self):
        """All files below the volume's root: hashes by path, the paths strict readers find, further faults."""
        seen, strict, faults, used = {}, set(), [], []
        todo = [("", self.volume.root_start, 0, True)]
        while todo:
            folder, start, parent, is_strict = todo.pop()
            entries, clusters = self.volume.folder(start)
            used += clusters
            if BROKEN in entries:
                faults.append(("stale", folder))
            for name, is_folder, first, size, stops, short_only in (entry for entry in entries if entry != BROKEN):
                path = folder + name
                if name == "..":
                    if first != parent:
                        faults.append(("parent", folder))
                elif name.startswith(".TAMBORO-"):
                    faults.append(("left", name))
                elif is_folder and self.expected and path + "/" not in self.expected.folders:
                    faults.append(("stale", path))
                elif is_folder:
                    here = 0 if start == self.volume.root_start else start
                    todo.append((path + "/", first, here, is_strict and not stops))
                else:
                    seen_hash, clusters = self.volume.file(first, size)
                    used += clusters
                    if self.expected and short_only and path not in self.expected.old and path not in self.expected.new \
                            and "~" in name and seen_hash != BROKEN:
                        faults.append(("short", path))
                        continue
                    seen[path] = seen_hash
                    if is_strict and not stops:
                        strict.add(path)
        return seen, strict, faults, used

    def check(self, what):
        """Judges the state that the volume is in; one in which nothing visible has changed was judged before."""
        self.counts[what] += 1
        if self.volume.altered:
            self.volume.altered = False
            self.counts["read"] += 1
            seen, strict, faults, _ = self.look()
            self.verdict = (*faults, *self.expected.faults(seen, strict))
        self.note(what, self.verdict)

    def note(self, what, faults):
        names = {"stale": "grown"} if self.eager or what == "reorderings" else {}
        names |= {} if self.eager else {"empty": "torn"}
        faults = [(names.get(kind, kind), path) for kind, path in faults]
        for kind in {kind for kind, _ in faults}:
            self.counts[kind] += 1
        for kind, path in faults:
            if kind not in NOTES and len(self.examples[kind]) < EXAMPLES:
                self.examples[kind].append(f"{self.place}, flush {self.counts['flushes']}, {what}: {path}")

    # ------------------------------------------------------------ replaying

    def write(self, offset, data):
        self.pending.append((offset, data))
        self.undo.append((offset, self.volume.write(offset, data)))

    def take_back(self):
        while self.undo:
            self.volume.write(*self.undo.pop())

    def put(self, writes):
        self.undo = [(offset, self.volume.write(offset, data)) for offset, data in writes]

    def flush(self):
        self.counts["flushes"] += 1
        if self.looks() and self.pending:
            self.reorder()
            self.sharing()
        self.pending, self.undo = [], []

    def reorder(self):
        self.take_back()
        for writes in self.subsets():
            self.put(writes)
            self.check("reorderings")
            self.take_back()
        self.put(self.pending)

    def subsets(self):
        count = len(self.pending)
        if 2 ** count <= max(self.seeds, 2):
            for chosen in itertools.product((False, True), repeat=count):
                yield list(itertools.compress(self.pending, chosen))
            return
        for number in range(self.seeds):
            one = self.random.randrange(count)
            if number % 4 == 0:
                yield self.pending[:one] + self.pending[one + 1:]
            elif number % 4 == 1:
                yield [self.pending[one]]
            else:
                pieces = self.pending if number % 4 == 2 else torn(self.pending)
                share = self.random.choice((0.2, 0.5, 0.8))
                yield [piece for piece in pieces if self.random.random() < share]

    def sharing(self):
        used = self.look()[3]
        if len(used) != len(set(used)):
            self.note("flush", [("shared", f"{len(used) - len(set(used))} clusters")])

    # ------------------------------------------------------------ saves

    def mark(self, text):
        what, number = text.split("-")
        after, self.place = self.tree(number), text
        if what == "begin":
            old = self.look()[0]
            removed = {CARD + line.upper() for line in (self.folder / f"{number}.removed").read_text("utf-8").splitlines()}
            new = {path: content for path, content in old.items() if not path.startswith(CARD)} | after
            self.expected = Expectation(old, new, removed & old.keys(), self.audio_of)
            self.verdict, self.volume.altered = (), True
            return
        # Nothing that isn't flushed by now may be needed.
        if what == "end":
            self.take_back()
            seen, strict, _, _ = self.look()
            missing = {path for path, content in self.expected.new.items() if seen.get(path) != content or path not in strict}
            self.note("end", [("late", path) for path in missing | (seen.keys() - self.expected.new.keys())])
            self.put(self.pending)
        done = self.expected.new
        self.expected = Expectation(done, done, set(), self.audio_of)
        self.volume.altered = True

    def tree(self, number):
        """The card's files as the driver copied them behind a save."""
        root, tree = self.folder / number, {}
        for file in (path for path in root.rglob("*") if path.is_file()):
            path, content = CARD + str(file.relative_to(root)).upper(), file.read_bytes()
            tree[path] = hash(content)
            self.learn(path, content)
        return tree

    def learn(self, path, content):
        named = re.search(rb"<Path>(.+?)</Path>", content) if path.startswith(CARD + RANKS[1]) else None
        if named:
            self.audio_of[path, hash(content)] = f"{CARD}{RANKS[0]}{named[1].decode().upper()}"

    def learn_base(self):
        for folder, start in ((f"{CARD}WAVE/PRM/{bank:02}/", bank) for bank in range(100)):
            at = self.volume.root_start
            for name in folder.strip("/").split("/"):
                at = next((e.start for e in self.volume.folder(at)[0] if e.name == name), None) if at is not None else None
            for entry in self.volume.folder(at)[0] if at else ():
                if not entry.is_folder:
                    self.learn(folder + entry.name, self.volume.content(entry.start, entry.size))

    def looks(self):
        return self.expected and self.place[-1] in (self.saves or self.place)

    def run(self):
        self.learn_base()
        for kind, *values in self.log:
            if kind == "flush":
                self.flush()
            elif kind == "mark":
                if values != ["dm-log-writes-end"]:
                    self.mark(*values)
            else:
                self.write(*values)
                if self.looks():
                    self.check("prefixes")
        self.flush()
        return self.counts, self.examples


def torn(writes):
    """The writes as sectors, the least that a device brings whole."""
    return [(offset + i, data[i:i + 512]) for offset, data in writes for i in range(0, len(data), 512)]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--seeds", type=int, default=24, help="subsets of one stretch between two flushes")
    parser.add_argument("--saves", default="", help="digits of the saves to look at (all)")
    parser.add_argument("--eager", action="store_true", help="the kernel wrote back by itself between the calls")
    options = parser.parse_args()
    counts, examples = Replay(options.folder, options.seeds, options.saves, options.eager).run()
    order = ("flushes", "prefixes", "reorderings", "read", "torn", "missing", "naming", "order", "stale", "shared", "late")
    print("  ".join(f"{name} {counts[name]}" for name in (*order, *NOTES)))
    for kind, found in examples.items():
        for example in found:
            print(f"  {kind}: {example}")
    return 1 if examples else 0


if __name__ == "__main__":
    sys.exit(main())
