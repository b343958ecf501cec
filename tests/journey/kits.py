"""Work on kits by mouse and keyboard: list, grid, details, effects, export; then the card byte by byte."""

import time


from card import CARD, differences, kit, leaf, name_leaves, pad, patched, places, read_tree, sample, with_lists
from screen import Window, is_checked, keys, reveal, text_of, type_text, wait_for

PADS = 15
DUPLICATE_ENTRY, COPY_ENTRY, PASTE_ENTRY = 1, 2, 3
EXPORT_ENTRY, DELETE_ENTRY = 5, 6  # with "Paste Pads" above them


def row(window, beginning):
    """The first row in the list of kits that reads so."""
    return window.first(window.named("list", "Kits"), lambda thing: thing.name.startswith(beginning))


def row_of(window, slot):
    """The kit's row in the list of all kits, which stands below the recent ones."""
    column = window.named("list", "Kits")

    def find():
        rows = [row for row in column if row is not None and row.name.startswith(f"Kit {slot}, ")]
        return rows[-1] if rows else None

    return reveal(column, wait_for(f"the row of kit {slot}", find))


def open_menu(window, thing, entry):
    """Opens a context menu and goes down to its entry, counted from 1, by the keyboard."""
    window.click(thing, button=3)
    time.sleep(0.3)
    keys(*["Down"] * entry)


def list_work(window):
    window.click(window.named("text", "Search kits"))
    type_text("808")
    wait_for("the search to leave one kit", lambda: not row(window, "Kit 1,") and row(window, "Kit 3, 808 Trap"))
    window.screenshot("kits-search")
    keys("ctrl+a", "Delete")
    wait_for("all kits again", lambda: row(window, "Kit 1,"))

    window.click(row_of(window, 5), times=2, across=0.5)
    field = window.named("text", "Kit name")
    wait_for("the name's field", lambda: text_of(field) == "DnB Roll")
    type_text("Opener")
    window.screenshot("kits-rename")
    keys("Return")
    wait_for("the new name", lambda: row(window, "Kit 5, Opener, Unsaved changes"))
    open_menu(window, row_of(window, 5), DUPLICATE_ENTRY)
    window.screenshot("kits-menu")
    keys("Return")
    wait_for("the copy", lambda: row(window, "Kit 0, Opener"))
    open_menu(window, row_of(window, 3), COPY_ENTRY)
    keys("Return")
    open_menu(window, row_of(window, 0), PASTE_ENTRY)
    keys("Return")
    open_menu(window, row_of(window, 12), DELETE_ENTRY)
    keys("Return")
    window.named("label", 'Delete kit "Encore"?')
    window.screenshot("kits-delete")
    window.click(window.named("push button", "Delete"))
    wait_for("the kit to go", lambda: not row(window, "Kit 12,"))


def grid_work(window):
    window.click(row_of(window, 3))
    window.expect_kit("808 Trap")
    window.click(window.starting("check box", "Pad 2,"), times=2)
    window.named("label", "Pad 2")
    keys("Down")
    window.named("label", "Pad 5")
    keys("Right", "Right", "Right")
    window.named("label", "Pad 6")
    keys("Left")
    window.named("label", "Pad 5")
    window.screenshot("grid")


def exchange(window, with_pad):
    """Pad 2 and another one, by the submenu of pad 2; the menu's last two entries are always there."""
    window.click(window.starting("check box", "Pad 2"), button=3)
    time.sleep(0.3)
    keys("Up", "Up", "Right")
    time.sleep(0.2)
    window.screenshot("grid-exchange")
    # The submenu lists every other pad; its first is chosen when it opens.
    keys(*["Down"] * (with_pad - 2), "Return")


def detail_work(window, column):
    window.click(window.starting("check box", "Pad 5"))
    window.named("label", "Pad 5")
    group = window.named("filler", "Pad settings")
    slider = reveal(column, window.within(group, "slider", "Pad Volume"))
    window.click(slider)
    keys("Home", "Right", "Right", "Right")
    window.within(group, "label", "3")
    loop = window.within(group, "check box", "Loop")
    looped = is_checked(loop)
    window.click(reveal(column, loop))
    wait_for("the loop switch", lambda: is_checked(loop) != looped)
    window.click(reveal(column, window.within(group, "push button", "Apply to All Pads…")))
    window.click(window.named("check box", "Pad Volume"))
    window.screenshot("apply-to-all")
    window.click(window.named("push button", "Apply to All"))
    wait_for("the sheet to close", lambda: not window.find("push button", "Apply to All"))


def effects_work(window, column):
    """The kit's first unit is off and set to "Step Flanger", whose seventh parameter is the resonance."""
    window.click(reveal(column, window.named("check box", "Effects")))
    switch = window.named("check box", "FX1")
    window.click(reveal(column, switch))
    resonance = reveal(column, window.within(window.named("filler", "Effects"), "slider", "Resonance"))
    window.click(resonance)
    keys("Home", "Right")
    window.screenshot("effects")


def export(window, folder):
    folder.mkdir()
    open_menu(window, row_of(window, 3), EXPORT_ENTRY)
    keys("Return")
    window.named("push button", "Export")
    type_text(str(folder))
    window.screenshot("export-panel")
    keys("Return")
    wait_for("the export", lambda: (folder / "808 Trap/kit003.spd").exists())
    wait_for("the panel to go", lambda: not window.find("push button", "Export"))


def swapped(content, one, other):
    """The leaves that two pads of a kit have after they were exchanged."""
    leaves = {}
    for source, target in ((one, other), (other, one)):
        prefix = pad(source, "")
        for path in places(content):
            if path.startswith(prefix):
                leaves[pad(target, path[len(prefix) :])] = leaf(content, path)
    return leaves


def expected_card(before):
    """The card as it should be, but for the copied kit, from what it was and from what was done."""
    expected = with_lists(before)
    expected[kit(5)] = patched(before[kit(5)], {f"KitPrm/{cell}": code for cell, code in name_leaves("Nm", 8, "Opener").items()})
    del expected[kit(12)]
    leaves = swapped(before[kit(3)], 1, 4)
    looped = leaves[pad(4, "Loop")]
    leaves |= {pad(index, "WvLevel"): "3" for index in range(PADS)}
    leaves |= {pad(4, "Loop"): "0" if looped == "1" else "1", "KitPrm/Fx1Sw": "1", "KitPrm/Fx1Prm6": "1"}
    expected[kit(3)] = patched(before[kit(3)], leaves)
    return expected


def copy_faults(after, before):
    """The copy has the head of its source, renamed before, and the pads of the kit that were pasted."""
    copy = {path: text for path, (_, text) in places(after[kit(0)]).items()}
    wanted = {path: text for path, (_, text) in places(after[kit(5)]).items() if "/PadPrm" not in path}
    wanted |= {f"KitPrm/{cell}": code for cell, code in name_leaves("Nm", 8, "Opener C").items()}
    wanted |= {path: text for path, (_, text) in places(before[kit(3)]).items() if "/PadPrm" in path}
    if copy != wanted:
        yield f"the copied kit has {copy.items() ^ wanted.items()} that differ"


def export_faults(folder, card):
    """The kit as it was saved, and each sample that its pads use."""
    used = {int(text) for path, (_, text) in places(card[kit(3)]).items() if path.endswith(("/Wv", "/SubWv"))}
    expected = {"kit003.spd": card[kit(3)]}
    for wave_id in used:
        if sample(wave_id) not in card:
            continue
        bank = f"{wave_id // 100:02}"
        expected |= {"WAVE": None, "WAVE/PRM": None, "WAVE/DATA": None, f"WAVE/PRM/{bank}": None, f"WAVE/DATA/{bank}": None}
        expected[sample(wave_id)[len(CARD) :]] = card[sample(wave_id)]
        audio = f"WAVE/DATA/{leaf(card[sample(wave_id)], 'WvPrm/Path')}"
        expected[audio] = card[CARD + audio]
    return differences(expected, read_tree(folder))


def travel(options, work, volume):
    before = read_tree(volume)
    window = Window(options, work / "home")
    window.named("label", f"{options.kits} kits")
    list_work(window)
    grid_work(window)
    exchange(window, 5)
    column = window.named("filler", "808 Trap")
    detail_work(window, column)
    effects_work(window, column)
    window.save()
    window.screenshot("kits-saved")
    export(window, work / "exports")
    window.close()
    after = read_tree(volume)
    copy = {kit(0): after.get(kit(0))}
    yield from differences(expected_card(before) | copy, after)
    yield from copy_faults(after, before)
    yield from export_faults(work / "exports/808 Trap", after)
