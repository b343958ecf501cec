"""A virtual display, and the running program on it, seen through its accessibility tree."""

import contextlib
import os
import pathlib
import subprocess
import tempfile
import time

from gi.repository import GLib

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"
PATIENCE = 60  # seconds for anything that must come; it comes at once on an idle machine


class Failure(Exception):
    pass


def wait_for(what, look):
    """The first true answer of `look`; a failure after PATIENCE seconds."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        with contextlib.suppress(LookupError, GLib.GError):  # what went while it was looked at
            found = look()
            if found:
                return found
        time.sleep(0.1)
    raise Failure(f"waited in vain for {what}")


def start(stack, command, **options):
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options)

    def end():
        process.terminate()
        process.wait()

    stack.callback(end)
    return process


def start_screen(stack):
    """Xvfb with a window manager; both end with the stack."""
    read_end, write_end = os.pipe()
    # The keyboard is reset when the last client leaves, which the program does between two starts.
    command = ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x880x24", "-nolisten", "tcp", "-noreset"]
    start(stack, command, pass_fds=[write_end])
    os.close(write_end)
    with os.fdopen(read_end) as display:
        number = display.readline().strip()
    if not number:
        raise Failure("the virtual display didn't start")
    os.environ["DISPLAY"] = f":{number}"
    start(stack, ["openbox", "--sm-disable"])
    global pyatspi  # looks for the display when it is imported
    import pyatspi


def xdotool(*arguments):
    subprocess.run(["xdotool", *(str(argument) for argument in arguments)], check=True)


def keys(*strokes):
    for stroke in strokes:
        xdotool("key", "--clearmodifiers", stroke)
        time.sleep(0.05)


def type_text(text):
    keys("ctrl+a")
    xdotool("type", "--clearmodifiers", "--delay", "20", text)


def take_screenshot(folder, name):
    folder.mkdir(parents=True, exist_ok=True)
    file = folder / f"{name}.png"
    time.sleep(0.5)  # the last repaint
    subprocess.run(["import", "-window", "root", str(file)], check=False)
    print(f"  screenshot {file}")


def is_showing(thing):
    states = thing.getState()
    return states.contains(pyatspi.STATE_SHOWING) and states.contains(pyatspi.STATE_VISIBLE)


class Window:
    """The running program. What is looked for by role and name is waited for."""

    def __init__(self, options, home):
        self.screenshots = options.screenshots
        environment = {**os.environ, "QT_QPA_PLATFORM": "xcb", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "SDL_AUDIODRIVER": "dummy"}
        command = [str(SCRIPTS / "in-home"), str(home), "", options.tamboro]
        self.stderr = tempfile.TemporaryFile()
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stderr=self.stderr, env=environment)
        options.windows.append(self)
        options.stack.callback(self.process.kill)
        wait_for('the window "Tamboro"', lambda: self.alive() and self.window())

    def alive(self):
        if self.process.poll() is not None:
            raise Failure(f"the program ended by itself with {self.process.returncode}")
        return True

    def warnings(self):
        """What the program and its toolkit said that nobody asked for."""
        self.stderr.seek(0)
        return self.stderr.read().decode(errors="replace").splitlines()

    def windows(self):
        for application in pyatspi.Registry.getDesktop(0):
            if application and application.get_process_id() == self.process.pid:
                application.clear_cache()
                return [window for window in application if window]
        return []

    def window(self):
        return next((window for window in self.windows() if window.name == "Tamboro"), None)

    # ---- finding

    def first(self, node, matches):
        for child in node or ():
            if child is None:
                continue
            found = child if matches(child) and is_showing(child) else self.first(child, matches)
            if found:
                return found
        return None

    def showing(self, matches):
        """The first visible thing that matches, in tree order; what opened last comes first."""
        for window in reversed(self.windows()):
            found = window if matches(window) and is_showing(window) else self.first(window, matches)
            if found:
                return found
        return None

    def find(self, role, name):
        return self.showing(lambda thing: thing.getRoleName() == role and thing.name == name)

    def named(self, role, name):
        return wait_for(f'the {role} "{name}"', lambda: self.alive() and self.find(role, name))

    def starting(self, role, beginning):
        def matches(thing):
            return thing.getRoleName() == role and thing.name.startswith(beginning)

        return wait_for(f'the {role} "{beginning}…"', lambda: self.alive() and self.showing(matches))

    def within(self, group, role, name):
        """A thing in a named group: "Volume" is there once for the kit and once for the pad."""

        def matches(thing):
            return thing.getRoleName() == role and thing.name == name

        return wait_for(f'the {role} "{name}" in {group.name}', lambda: self.first(group, matches))

    # ---- the mouse

    def place(self, thing):
        box = thing.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return box.x + box.width // 2, box.y + box.height // 2

    def click(self, thing, button=1, times=1):
        xdotool("mousemove", *self.place(thing), "click", "--repeat", times, "--delay", 60, button)

    def drag(self, start, end):
        """By real button and motion events, slowly enough for the drag's own protocol."""
        xdotool("mousemove", *start, "mousedown", 1)
        for step in range(1, 21):
            xdotool("mousemove", *(a + (b - a) * step // 20 for a, b in zip(start, end)))
            time.sleep(0.03)
        time.sleep(0.5)
        xdotool("mouseup", 1)

    def menu(self, title, row):
        """By its letters, for a menu that isn't open is no part of the tree."""
        self.click(self.named("menu item", title))
        self.click(self.named("menu item", row))
        wait_for(f'the entry "{row}" to go', lambda: not self.find("menu item", row))

    # ---- the program's own

    def expect_kit(self, name):
        field = self.named("text", "Kit Name")
        wait_for(f"the kit {name}", lambda: text_of(field) == name)

    def unsaved(self):
        return self.find("label", "Unsaved changes")

    def save(self):
        wait_for("something to save", self.unsaved)
        keys("ctrl+s")
        wait_for("the save", lambda: self.alive() and not self.unsaved())

    def screenshot(self, name):
        take_screenshot(self.screenshots, name)

    def close(self):
        keys("alt+F4")
        try:
            status = self.process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            self.process.kill()
            raise Failure("closing the window didn't end the program") from None
        if status != 0:
            raise Failure(f"the program ended with {status}")


def reveal(area, thing):
    """Scrolls until the thing is in sight."""

    def box(part):
        return part.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)

    for _ in range(60):
        outer, inner = box(area), box(thing)
        is_below = inner.y + inner.height > outer.y + outer.height
        if not is_below and inner.y >= outer.y:
            return thing
        # Beside all controls, for those in use take the wheel.
        xdotool("mousemove", outer.x + outer.width - 20, outer.y + outer.height // 2, "click", 5 if is_below else 4)
        time.sleep(0.05)
    raise Failure(f'"{thing.name}" could not be scrolled into sight')


def text_of(thing):
    text = thing.queryText()
    return text.getText(0, text.characterCount)


def press(thing):
    """The thing's own press, without mouse or keyboard."""
    actions = thing.queryAction()
    names = [actions.getName(number).lower() for number in range(actions.nActions)]
    wanted = next((name for name in ("press", "toggle") if name in names), None)
    if not wanted:
        raise Failure(f'"{thing.name}" can\'t be pressed, only {names}')
    return actions.doAction(names.index(wanted))
