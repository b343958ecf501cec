"""Rename, volume and save through the accessibility interface alone: neither mouse nor keyboard, as a screen reader's
user does it. Then a walk through every screen: nothing there is without a name or of an unknown role."""

import pyatspi  # the display is there when a journey is loaded
from card import differences, kit, name_leaves, patched, read_tree, with_lists
from screen import Failure, Window, is_showing, keys, press, wait_for

NAME, VOLUME = "Spoken", 63
SILENT_ROLES = ("filler", "separator")  # what only holds or parts others
PAD_MENU, KIT_MENU, SOUND_MENU = "Pad 1, ", "Kit", "Sound"


def unspoken(thing, path=""):
    """What below a thing can't be told from others by ear."""
    if thing is None:
        yield f"{path} has a child that is nothing"
        return
    role = thing.getRoleName()
    if role == "label" and not is_showing(thing):
        return  # without a text as long as there is none to tell
    path = f"{path}/{role}:{thing.name}"
    if role in ("unknown", "invalid") or (not thing.name and role not in SILENT_ROLES):
        yield f"{path} has no name or role"
    for child in thing:
        yield from unspoken(child, path)


def row_of_menu_bar(thing, name):
    """A row of the menu bar, whose menu needn't be open."""
    for child in thing or ():
        is_row = child is not None and child.getRoleName() == "menu item" and child.name == name
        found = child if is_row else row_of_menu_bar(child, name)
        if found:
            return found
    return None


def in_sheet(window, title, close=None):
    """Walks through a sheet that has been asked for and closes it."""

    def opened():
        return next((sheet for sheet in window.windows() if sheet.name == title and is_showing(sheet)), None)

    sheet = wait_for(f"the sheet {title}", opened)
    yield from unspoken(sheet)
    if close:
        press(window.within(sheet, "push button", close))
    else:
        wait_for(f"{title} in front", lambda: sheet.getState().contains(pyatspi.STATE_ACTIVE))
        keys("alt+F4")
    wait_for(f"{title} to close", lambda: not opened())


def in_menu(window, thing, title, action="ShowMenu", entry=None):
    """Walks through a thing's menu and chooses from it, or leaves it."""

    def opened():
        return next((part for part in window.window() if part.getRoleName() == "popup menu"), None)

    press(thing, action)
    menu = wait_for(f"the menu {title}", opened)
    if not menu.name.startswith(title):
        yield f"the menu {title} is called {menu.name}"
    yield from unspoken(menu)
    if entry:
        press(window.within(menu, "menu item", entry))
    else:
        keys("Escape")
    wait_for("the menu to close", lambda: not opened())


def everywhere(window):
    """A first walk goes through the whole window, with its menu bar and the pickers' lists; then through what opens."""
    for unfolded in ("Sub", "Effects"):
        press(window.named("check box", unfolded))
    sounds = window.named("list", "Sounds")
    press(next(cell for cell in sounds if cell.name == "Loop settings" and cell.getRoleName() == "push button"))
    window.named("spin button", "Tempo")
    yield from unspoken(window.window())

    yield from in_menu(window, window.starting("check box", "Pad 1"), PAD_MENU, entry="Reset Pad")
    yield from in_sheet(window, "Reset 1?", "Cancel")
    yield from in_menu(window, window.starting("push button", "Kit 1, "), KIT_MENU, entry="Delete Kit")
    yield from in_sheet(window, 'Delete kit "LiveSet1"?', "Cancel")
    yield from in_menu(window, sounds[1], SOUND_MENU)
    yield from in_menu(window, sounds[2], "Tag", action="Press")
    press(sounds[1], "SetFocus")
    keys("ctrl+a")
    for button, title, close in (
        ("Rename Selected…", "Rename 44 Sounds", "Cancel"),
        ("Tags", "Edit Tags", "Done"),
        ("New Kit", "New Kit", "Cancel"),
        ("Apply to All Pads…", "Apply Settings from Pad 1 to All Pads", "Cancel"),
        ("Import Wav…", "Import Wav", "Cancel"),
    ):
        press(window.named("push button", button))
        yield from in_sheet(window, title, close)
    for row, title, close in (
        ("About Tamboro", "About Tamboro", "OK"),
        ("Check for Updates…", "Check for Updates", "OK"),
        ("Keyboard Shortcuts", "Keyboard Shortcuts", "Close"),
        ("Preferences…", "Preferences", None),
    ):
        press(row_of_menu_bar(window.window(), row))
        yield from in_sheet(window, title, close)


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
    yield from everywhere(window)
    window.close()
    leaves = {f"KitPrm/{cell}": code for cell, code in name_leaves("Nm", 8, NAME).items()} | {"KitPrm/Level": VOLUME}
    expected = with_lists(before) | {kit(2): patched(before[kit(2)], leaves)}
    yield from differences(expected, read_tree(volume))

    window = Window(options, work / "first-home")
    window.named("push button", "Choose SPD-SX Folder…")
    yield from unspoken(window.window())
    window.close()
