#!/usr/bin/python3
"""A small window of another toolkit that hands out files by drag, as a file manager does. usage: drag_source FILE..."""

import pathlib
import sys

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("Gdk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402  only behind the versions

box = Gtk.EventBox()
box.add(Gtk.Label(label="Files"))
box.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [], Gdk.DragAction.COPY)
box.drag_source_add_uri_targets()
uris = [pathlib.Path(file).absolute().as_uri() for file in sys.argv[1:]]
box.connect("drag-data-get", lambda _box, _context, data, _info, _time: data.set_uris(uris))
window = Gtk.Window(title="Files", decorated=False)
window.set_default_size(120, 40)
window.set_keep_above(True)
window.move(0, 0)
window.add(box)
window.connect("destroy", Gtk.main_quit)
window.show_all()
Gtk.main()
