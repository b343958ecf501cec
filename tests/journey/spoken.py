"""Rename, volume and save through the accessibility interface alone: neither mouse nor keyboard, as a screen reader's
user does it."""

from card import differences, kit, name_leaves, patched, read_tree, with_lists
from screen import Failure, Window, press, wait_for

NAME, VOLUME = "Spoken", 63


def travel(options, work, volume):
    before = read_tree(volume)
    window = Window(options, work / "home")
    wait_for("the first kit", lambda: window.find("text", "Kit Name"))
    press(window.starting("push button", "Kit 2, "))
    window.expect_kit("LiveSet2")
    if not window.named("text", "Kit Name").queryEditableText().setTextContents(NAME):
        raise Failure("the name's field takes no text")
    window.starting("push button", f"Kit 2, {NAME}")
    slider = window.within(window.named("filler", NAME), "slider", "Volume").queryValue()
    if (slider.minimumValue, slider.maximumValue) != (0, 100):
        raise Failure(f"the volume goes from {slider.minimumValue} to {slider.maximumValue}")
    slider.currentValue = VOLUME
    wait_for("the unsaved changes", window.unsaved)
    press(window.starting("push button", "Save"))
    wait_for("the save", lambda: window.alive() and not window.unsaved())
    window.close()
    leaves = {f"KitPrm/{cell}": code for cell, code in name_leaves("Nm", 8, NAME).items()} | {"KitPrm/Level": VOLUME}
    expected = with_lists(before) | {kit(2): patched(before[kit(2)], leaves)}
    yield from differences(expected, read_tree(volume))
