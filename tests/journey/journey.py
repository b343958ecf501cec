"""A gig's evening at the real window: a card is opened, edited by mouse, by keys and by the accessibility tree, gets
sounds from another program, is saved, comes up again and plays; then every byte of it is as it should be."""

import math
import pathlib
import struct
import sys
import time
import wave

import pyatspi  # the display is there when the journey is loaded
from card import CARD, differences, kit, leaf, name_leaves, new_sample, pad, patched, read_tree, sample, with_lists
from screen import Failure, Window, is_showing, keys, press, reveal, start, text_of, type_text, wait_for, xdotool

SPOKEN, VOLUME, PAD_VOLUME, TYPED = "Spoken", 63, 3, "Opener"
DROPPED = ("Kick Round.wav", "Snare Wire.WAV")
DROP_PAD = 2  # the third one
PLAY_COLUMN, NAME_COLUMN, COLUMNS = 0, 1, 8
SILENT_ROLES = ("filler", "separator")  # what only holds or parts others


# ---- what can't be told by ear


def unspoken(thing, path=""):
    """What below a thing has no name, or nothing that tells what it is."""
    if thing is None:
        yield f"{path} has a child that is nothing"
        return
    role = thing.getRoleName()
    if role == "label" and not is_showing(thing):
        return  # without a text as long as there is none to tell
    path = f"{path}/{role}:{thing.name}"
    if role in ("unknown", "invalid") or (not thing.name and role not in SILENT_ROLES):
        yield f"{path} has no name or role"
    if role == "tree" and thing.name == "Files":
        return  # the toolkit's panel, in whose table a folder has no size
    for child in thing:
        yield from unspoken(child, path)


def in_sheet(window, title, close):
    """Walks through a sheet that has been asked for and closes it."""

    def opened():
        return next((sheet for sheet in window.windows() if sheet.name == title and is_showing(sheet)), None)

    sheet = wait_for(f"the sheet {title}", opened)
    yield from unspoken(sheet)
    press(window.within(sheet, "push button", close))
    wait_for(f"{title} to close", lambda: not opened())


def everywhere(window):
    """First what folds and the whole window with its menu bar and the pickers' lists, then what opens from it."""
    for unfolded in ("Sub", "Effects"):
        press(window.named("check box", unfolded))
    sounds = window.named("list", "Sounds")
    press(next(cell for cell in sounds if cell.name == "Loop settings" and cell.getRoleName() == "push button"))
    window.named("spin button", "Tempo")
    yield from unspoken(window.window())
    for button, title, close in (
        ("Tags", "Edit Tags", "Done"),
        ("New Kit", "New Kit", "Cancel"),
        ("Apply to All Pads…", "Apply Settings from Pad 1 to All Pads", "Cancel"),
        ("Import Wav…", "Import Wav", "Cancel"),
    ):
        press(window.named("push button", button))
        yield from in_sheet(window, title, close)
    window.menu("Help", "Keyboard Shortcuts")
    yield from in_sheet(window, "Keyboard Shortcuts", "Close")


# ---- ways to edit


def by_keys(window):
    """A sound goes from one kit to another, is taken back and done again."""
    window.named("label", "12 kits")
    keys("ctrl+1")
    window.expect_kit("LiveSet1")
    sound = window.starting("check box", "Pad 1, ").name
    window.menu("Edit", "Copy Sound")
    keys("ctrl+2")
    window.expect_kit("LiveSet2")
    own = window.starting("check box", "Pad 1, ").name
    for stroke, heard in (("ctrl+v", sound), ("ctrl+z", own), ("ctrl+shift+z", sound)):
        keys(stroke)
        window.named("check box", heard)


def by_tree(window):
    """Neither mouse nor keyboard, as a screen reader's user does it."""
    press(window.starting("push button", "Kit 4, "))
    name = window.named("text", "Kit Name")
    wait_for("the kit", lambda: text_of(name) != "LiveSet2")
    if not name.queryEditableText().setTextContents(SPOKEN):
        raise Failure("the name's field takes no text")
    window.starting("push button", f"Kit 4, {SPOKEN}")
    window.within(window.named("filler", SPOKEN), "slider", "Volume").queryValue().currentValue = VOLUME


def kit_row(window, slot):
    """The kit's row in the list of all kits, which stands below the recent ones."""
    column = window.named("list", "Kits")

    def find():
        rows = [row for row in column if row is not None and row.name.startswith(f"Kit {slot}, ")]
        return rows[-1] if rows else None

    return reveal(column, wait_for(f"the row of kit {slot}", find))


def by_mouse(window):
    window.click(kit_row(window, 5), times=2)
    wait_for("the name's field", lambda: window.find("text", "Kit name"))
    type_text(TYPED)
    keys("Return")
    window.expect_kit(TYPED)
    column = window.named("filler", TYPED)
    window.click(window.starting("check box", "Pad 5,"))
    window.named("label", "Pad 5")
    settings = window.named("filler", "Pad settings")
    window.click(reveal(column, window.within(settings, "slider", "Pad Volume")))
    keys("Home", *["Right"] * PAD_VOLUME)
    window.screenshot("edited")


# ---- sounds


def sound_row(window, beginning):
    """The row's name, in sight."""
    sounds = window.named("list", "Sounds")

    def find():
        cells = (sounds.getChildAtIndex(place) for place in range(NAME_COLUMN, sounds.childCount, COLUMNS))
        return next((cell for cell in cells if cell is not None and cell.name.startswith(beginning)), None)

    return reveal(sounds, wait_for(f"the row {beginning}", find))


def make_sound(file, frequency):
    with wave.open(str(file), "wb") as sound:
        sound.setparams((1, 2, 44100, 0, "NONE", ""))
        sound.writeframes(b"".join(struct.pack("<h", int(9000 * math.sin(frequency * i / 7018))) for i in range(132300)))
    return file


def drop_sounds(window, options, folder):
    """Out of another program's window, with a file that is no sound among them; then one of them onto a pad."""
    sounds = [make_sound(folder / name, 300 + 90 * place) for place, name in enumerate(DROPPED)]
    note = folder / "notes.txt"
    note.write_text("not a sound")
    source = start(options.stack, [sys.executable, pathlib.Path(__file__).with_name("drag_source.py"), *sounds, note])
    time.sleep(1.5)
    window.drag((60, 20), window.place(window.named("list", "Sounds")))
    for sound in sounds:
        sound_row(window, sound.stem)
    source.terminate()
    window.screenshot("imported")
    target = window.starting("check box", f"Pad {DROP_PAD + 1},")
    window.drag(window.place(sound_row(window, sounds[0].stem)), window.place(reveal(window.named("filler", TYPED), target)))
    window.starting("check box", f"Pad {DROP_PAD + 1}, {sounds[0].stem}")
    return sounds


def hear(window, beginning):
    row = sound_row(window, beginning)
    window.click(row)
    play = window.named("list", "Sounds").getChildAtIndex(row.getIndexInParent() - NAME_COLUMN + PLAY_COLUMN)
    keys("space")
    wait_for("the sound to play", lambda: play.name == "Stop")
    window.screenshot("playing")
    wait_for("its end", lambda: play.name == "Play")


def expected_card(before, sounds):
    after = dict(before)
    ids = [wave_id for wave_id in range(200, 10000) if sample(wave_id) not in before][: len(sounds)]
    for wave_id, sound in zip(ids, sounds):
        path = f"{wave_id // 100:02}/{sound.name}"
        after |= {sample(wave_id): new_sample(sound.stem, path), f"{CARD}WAVE/DATA/{path}": sound.read_bytes()}
    name = {slot: {f"KitPrm/{cell}": code for cell, code in name_leaves("Nm", 8, text).items()} for slot, text in ((4, SPOKEN), (5, TYPED))}
    leaves = {
        2: {pad(0, "Wv"): leaf(before[kit(1)], pad(0, "Wv"))},
        4: name[4] | {"KitPrm/Level": VOLUME},
        5: name[5] | {pad(4, "WvLevel"): PAD_VOLUME, pad(DROP_PAD, "Wv"): ids[0]},
    }
    after |= {kit(slot): patched(before[kit(slot)], changed) for slot, changed in leaves.items()}
    return with_lists(after)


def travel(options, work, volume):
    before = read_tree(volume)
    window = Window(options, work / "home")
    by_keys(window)
    by_tree(window)
    by_mouse(window)
    sounds = drop_sounds(window, options, work)
    window.save()
    window.close()
    saved = read_tree(volume)
    yield from differences(expected_card(before, sounds), saved)
    if not (work / "home/Documents/Tamboro Backup/KIT/kit002.spd").is_file():
        yield "there is no backup in Documents"

    # The card and its kit come up again; looking everywhere and listening change nothing.
    window = Window(options, work / "home")
    window.expect_kit(TYPED)
    hear(window, sounds[0].stem)
    yield from everywhere(window)
    window.close()
    yield from differences(saved, read_tree(volume))

    # A first start, without a remembered card.
    window = Window(options, work / "first-home")
    window.named("push button", "Choose SPD-SX Folder…")
    yield from unspoken(window.window())
    window.screenshot("welcome")
    window.close()
