"""A sound goes from one kit to another by menu, with undo and redo; the card and the kit come up again."""

import json

from card import differences, kit, leaf, pad, patched, read_tree, with_lists
from screen import Failure, Window, keys, wait_for

FIRST_SOUND = pad(0, "Wv")


def copy_sound_and_save(window, options):
    window.named("label", f"{options.kits} kits")
    window.named("label", f"{options.samples} samples")
    keys("ctrl+1")
    window.expect_kit("LiveSet1")
    window.menu("Edit", "Copy Sound")
    keys("ctrl+2")
    window.expect_kit("LiveSet2")
    window.menu("Edit", "Paste Sound")
    wait_for("the paste", window.unsaved)
    keys("ctrl+z")
    if not window.offers("Edit", "Redo"):
        raise Failure("nothing was undone")
    keys("ctrl+shift+z")
    if window.offers("Edit", "Redo"):
        raise Failure("nothing was done again")
    window.save()
    window.screenshot("saved")
    window.close()


def home_faults(home):
    settings = json.loads((home / "config/tamboro/tamboro.json").read_text(encoding="utf-8"))
    if settings.get("ContentView.lastSelectedKitSlot") != 2:
        yield f"the last kit is not remembered: {settings}"
    if not (home / "Documents/Tamboro Backup/KIT/kit002.spd").is_file():
        yield "there is no backup in Documents"


def travel(options, work, volume):
    before = read_tree(volume)
    sound = leaf(before[kit(1)], FIRST_SOUND)
    if sound == leaf(before[kit(2)], FIRST_SOUND):
        raise Failure("the demo card's first two kits have the same sound on pad 1")
    copy_sound_and_save(Window(options, work / "home"), options)
    saved = read_tree(volume)
    expected = with_lists(before) | {kit(2): patched(before[kit(2)], {FIRST_SOUND: sound})}
    yield from differences(expected, saved)
    yield from home_faults(work / "home")

    # The same card and kit come up again, and looking changes nothing.
    window = Window(options, work / "home")
    window.expect_kit("LiveSet2")
    window.screenshot("restored")
    window.close()
    yield from differences(saved, read_tree(volume))

    # A first start, without a remembered card.
    window = Window(options, work / "first-home")
    window.named("push button", "Choose SPD-SX Folder…")
    window.screenshot("welcome")
    window.close()
