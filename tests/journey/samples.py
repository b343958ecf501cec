"""Sounds from a folder become samples: by drop from another program, by panel, named in batch, tagged, dragged onto a
pad, saved, heard from the card, deleted with their use known; then the card byte by byte."""

import math
import pathlib
import struct
import subprocess
import sys
import time
import wave

import pyatspi  # the display is there when a journey is loaded
from card import CARD, differences, kit, leaf, name, name_leaves, new_sample, pad, patched, places, read_tree, sample, with_lists
from screen import Window, keys, reveal, start, type_text, wait_for, xdotool

PATTERN, START = "Set", 5
PLAY_COLUMN, NAME_COLUMN, TAG_COLUMN, COLUMNS = 0, 1, 2, 8
PAD = 2  # the third one
FIRST_TAG = "Thump"


def make_sound(file, frequency):
    with wave.open(str(file), "wb") as sound:
        sound.setparams((1, 2, 44100, 0, "NONE", ""))
        sound.writeframes(b"".join(struct.pack("<h", int(9000 * math.sin(frequency * i / 7018))) for i in range(132300)))
    return file


def free_ids(tree):
    return (wave_id for wave_id in range(200, 10000) if sample(wave_id) not in tree)


# ---- what the window shows


def row(window, beginning):
    """The first row's name that reads so, in sight or not."""
    sounds = window.named("list", "Sounds")
    for place in range(NAME_COLUMN, sounds.childCount, COLUMNS):
        thing = sounds.getChildAtIndex(place)
        if thing is not None and thing.name.startswith(beginning):
            return thing
    return None


def row_of(window, beginning):
    return reveal(window.named("list", "Sounds"), wait_for(f"the row {beginning}", lambda: row(window, beginning)))


def drop_files(window, options, files):
    source = start(options.stack, [sys.executable, str(pathlib.Path(__file__).with_name("drag_source.py")), *map(str, files)])
    time.sleep(1.5)
    target = window.place(window.named("list", "Sounds"))
    xdotool("mousemove", 60, 20, "mousedown", 1)
    for step in range(1, 21):
        xdotool("mousemove", 60 + (target[0] - 60) * step // 20, 20 + (target[1] - 20) * step // 20)
        time.sleep(0.03)
    time.sleep(0.5)
    window.screenshot("samples-drop")
    xdotool("mouseup", 1)
    return source


def import_all(window, options, folder):
    sounds = [make_sound(folder / file, 300 + 90 * i) for i, file in enumerate(("Kick Round.wav", "Snare Wire.WAV", "Hat Tight.wav"))]
    note = folder / "notes.txt"
    note.write_text("not a sound")
    source = drop_files(window, options, [*sounds, note])
    for sound in sounds:
        wait_for(f"the sample {sound.stem}", lambda: row(window, sound.stem))
    source.terminate()
    panel_sound = make_sound(folder / "Loop Nine.wav", 500)
    window.click(window.named("push button", "Import Wav…"))
    window.named("push button", "Open")
    type_text(str(panel_sound))
    keys("Return")
    wait_for("the sample Loop Nine", lambda: row(window, "Loop Nine"))
    return [*sounds, panel_sound]


def cell(window, beginning, column):
    """A row's own control: its cells follow each other, from the play button on."""
    sounds = window.named("list", "Sounds")
    place = row_of(window, beginning).getIndexInParent()
    return sounds.getChildAtIndex(place - NAME_COLUMN + column)


def tag_by_menu(window, beginning, tag):
    """From the first tag, which the sample has: there the keyboard begins."""
    window.click(cell(window, beginning, TAG_COLUMN))
    time.sleep(0.4)
    window.screenshot("samples-tag")
    keys(*["Down"] * tag, "Return")


def batch_rename(window, names):
    window.click(row_of(window, names[0]))
    for other in names[1:]:
        thing = row_of(window, other)
        xdotool("keydown", "ctrl")
        window.click(thing)
        xdotool("keyup", "ctrl")
    window.named("label", f"{len(names)} selected")
    window.click(window.named("push button", "Rename Selected…"))
    window.named("label", f"Rename {len(names)} Sounds")
    window.click(window.named("text", "Name Pattern"))
    type_text(PATTERN)
    stepper = window.named("spin button", "Start")
    window.click(stepper)
    keys(*["Up"] * (START - 1))
    window.screenshot("samples-batch")
    window.click(window.named("push button", "Rename"))
    for number in range(START, START + len(names)):
        wait_for(f"{PATTERN} {number}", lambda: row(window, f"{PATTERN} {number},"))


def rename_tag(window):
    keys("ctrl+t")
    window.named("list", "Tags")
    field = window.named("text", "Tag Name 0")
    window.click(field)
    type_text(FIRST_TAG)
    window.screenshot("samples-tags")
    window.click(window.named("push button", "Done"))
    wait_for("the sheet to close", lambda: not window.find("push button", "Done"))


def used_sound(tree):
    """The sample of the user's banks that most pads use."""
    uses = {}
    for path, content in tree.items():
        if path.startswith(f"{CARD}KIT/"):
            for place, (_, text) in places(content).items():
                if place.endswith(("/Wv", "/SubWv")) and int(text) >= 200 and sample(int(text)) in tree:
                    uses[int(text)] = uses.get(int(text), 0) + 1
    return max(uses, key=uses.get)


def delete_sound(window, text):
    thing = row_of(window, text)
    window.click(thing)
    keys("Delete")
    window.starting("label", f'"{text}" is used in: ')
    window.screenshot("samples-delete")
    window.click(window.named("push button", "Delete Sound"))
    wait_for("the sample to go", lambda: not row(window, f"{text},"))


def hear(window, beginning):
    window.click(row_of(window, beginning))
    play = cell(window, beginning, PLAY_COLUMN)
    keys("space")
    wait_for("the sound to play", lambda: play.name == "Stop")
    window.screenshot("samples-playing")
    wait_for("its end", lambda: play.name == "Play")


def travel(options, work, volume):
    before = read_tree(volume)
    folder = work / "sounds"
    folder.mkdir()
    window = Window(options, work / "home")
    window.named("label", f"{options.samples} samples")
    keys("ctrl+2")
    window.expect_kit("LiveSet2")
    files = import_all(window, options, folder)
    tag_by_menu(window, "Loop Nine", 2)
    batch_rename(window, [file.stem for file in files[:3]])
    window.drag(row_of(window, f"{PATTERN} {START},"), window.starting("check box", f"Pad {PAD + 1},"))
    window.starting("check box", f"Pad {PAD + 1}, {PATTERN} {START}")
    rename_tag(window)
    window.save()
    window.screenshot("samples-saved")
    window.close()

    ids = dict(zip((file.name for file in files), free_ids(before)))
    by_old_name = sorted(files[:3], key=lambda file: file.stem)
    expected = dict(before)
    for number, file in enumerate(by_old_name, START):
        expected |= new_files(file, ids[file.name], f"{PATTERN} {number}", 0)
    expected |= new_files(files[3], ids[files[3].name], "Loop Nine", 2)
    expected[kit(2)] = patched(before[kit(2)], {pad(PAD, "Wv"): ids[by_old_name[0].name]})
    tags = f"{CARD}SYSTEM/tag_list.spd"
    expected[tags] = patched(before[tags], name_leaves("TagList/TagPrm/Nm", 12, FIRST_TAG))
    saved = read_tree(volume)
    yield from differences(with_lists(expected), saved)

    window = Window(options, work / "home")
    window.expect_kit("LiveSet2")
    hear(window, f"{PATTERN} {START},")
    gone = used_sound(saved)
    content = saved[sample(gone)]
    delete_sound(window, name(content, "WvPrm/Nm", 12))
    window.save()
    window.close()
    left = {path: content for path, content in saved.items() if path not in (sample(gone), audio_of(saved[sample(gone)]))}
    yield from differences(with_lists(left), read_tree(volume))


def audio_of(content):
    return f"{CARD}WAVE/DATA/{leaf(content, 'WvPrm/Path')}"


def new_files(file, wave_id, text, tag):
    path = f"{wave_id // 100:02}/{file.name}"
    return {sample(wave_id): new_sample(text, tag, path), f"{CARD}WAVE/DATA/{path}": file.read_bytes()}
