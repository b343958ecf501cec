#!/usr/bin/python3
"""What src/ may not say: calls run one way, the layers below know neither toolkit nor disk, each promise has its place.

The folders and who stands below whom are read from the build's own lines: `add_subdirectory` gives the order, a
folder's CMakeLists.txt what it may include, folders and libraries alike.

usage: layers.py SRC              lists what breaks a rule, exit 1 if something does
       layers.py --self-test SRC  plants each kind of fault among the sources and expects to find it
"""

import pathlib
import re
import sys

# Libraries by the headers that show them, and what a folder's CMakeLists.txt calls them. All but the toolkit stay behind
# the headers of the folder that links them.
LIBRARIES = {
    r"Q[A-Z]\w*|Qt[A-Z]\w*/.*": "Qt6::",
    r"unicode/.*": "ICU::",
    r"xxhash.*": "::XXHASH",
    r"SDL.*": "::SDL2",
    r"sndfile.*": "::SNDFILE",
    r"samplerate.*|soxr.*": "::(SAMPLERATE|SOXR)",
}
CALLS = "open|openat|creat|unlink|unlinkat|rename|renameat|mkdir|mkdirat|rmdir|truncate|ftruncate|link|symlink|fsync"
# What is forbidden, why, where, and but where. Places are beginnings of paths; the words of comments and of literals
# don't count.
WORDS = [
    (
        r"<(?:fstream|unistd\.h|fcntl\.h|dirent\.h|sys/[^>]*|linux/[^>]*)>|\b(?:FILE|fopen|freopen|popen|tmpfile)\b"
        r"|\b[io]?fstream\b|\bstd::(?:remove|rename)\b|\bstd::filesystem\b(?!::path\b)|(?<![\w>])::(?:" + CALLS + r")\("
        r"|(?<!<)\bQ(?:File|Dir|DirIterator|FileInfo|SaveFile|Temporary\w+|LockFile|Settings|Storage\w+|FileSystem\w+)\b"
        r"(?!::(?:en|de)codeName)",
        "goes past the file system's interface",
        ("",),
        # The real one and what it asks of the system; the program's own settings, lock, signals and resources; mounted
        # volumes; the decoder.
        ("platform/RealFileSystem.", "platform/VolumeSerial.", "platform/Defaults.", "app/SingleInstance.",
         "app/CardFolderPanel.", "audio/AudioFile.", "views/look/Symbols.",
         "app/Application.", "app/EndSignals."),
    ),
    (r"\bRolandLibrary", "knows the store that it stands behind", ("library/",), ("library/store/",)),
    (r"(?<!QApplication::)(?<!drag->)\bexec\s*\(|\bQEventLoop\b|\bprocessEvents\b", "waits in a loop of its own", ("",), ()),
    (r"\bQ(?:Message|Input|Color|Font|Progress)(?:Box|Dialog)\b|\bQErrorMessage\b", "asks past Prompts", ("",), ()),
    (r"\bQFileDialog\b", "asks past Prompts and FolderPanel", ("",), ("app/DesktopPrompts.",)),
    (r"\b(?:Kit|Pad|Wave|SpdNode)\b[\s*&>]+(?:const\s+)?\w+_\b", "keeps a record over an edit", ("views/",), ()),
    (r'"views/(?!controls/|lists/|look/)', "knows a screen", ("views/controls/", "views/lists/", "views/look/"), ()),
]
CARD_PATH = re.compile(r'"(?:[^"\s]*/)?(?:KIT|WAVE|PRM|DATA|SYSTEM)(?:/[^"]*)?"|"[^"\s]*\.spd"')
CARD_PATHS = "library/CardPaths."

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+)', re.MULTILINE)
TOKEN = re.compile(r"""//[^\n]*|/\*.*?\*/|'(?:\\.|[^'\\\n])'|"(?:\\.|[^"\\\n])*\"""", re.DOTALL)


class Layers:
    """The folders as the build has them: what each may include, from `tamboro_layer` and `target_link_libraries`."""

    def __init__(self, src):
        self.src = src
        top = (src.parent / "CMakeLists.txt").read_text(encoding="utf-8")
        self.order = re.findall(r"^add_subdirectory\(src/(\w+)\)", top, re.MULTILINE)
        self.lines = {}
        for folder in self.order:
            build = (src / folder / "CMakeLists.txt").read_text(encoding="utf-8")
            calls = re.findall(r"^(?:tamboro_layer|target_link_libraries)\(" + folder + r"\b([^)]*)", build, re.MULTILINE)
            self.lines[folder] = " ".join(calls).split()

    def faults(self):
        for at, folder in enumerate(self.order):
            for name in self.lines[folder]:
                if name in self.order[at:]:
                    yield f"{folder}/CMakeLists.txt: {name}/ does not stand below"
        files = sorted(f for f in self.src.rglob("*") if f.suffix in (".h", ".cpp"))
        for file in files:
            yield from self.faults_of(file.relative_to(self.src).as_posix(), file.read_text(encoding="utf-8"))
        if not files or not self.order:
            yield f"{self.src}: no sources"

    def faults_of(self, place, text):
        if place.split("/")[0] not in self.order:
            yield f"{place}: no layer of the build"
            return
        code = TOKEN.sub(lambda token: "" if token[0].startswith("/") else token[0], text)
        words = TOKEN.sub(lambda token: '""', INCLUDE.sub(lambda line: line[0].replace('"', "<"), code))
        for mark, name in INCLUDE.findall(code):
            fault = self.own_fault(place, name) if mark == '"' else self.library_fault(place, name)
            if fault:
                yield f"{place}: {fault}"
        for pattern, fault, where, but in WORDS:
            found = re.search(pattern.replace('"', "<"), words)
            if found and place.startswith(where) and not place.startswith(but or "\0"):
                yield f"{place}: {fault}: {found[0]}"
        found = CARD_PATH.search(INCLUDE.sub("", code))
        if found and not place.startswith(CARD_PATHS):
            yield f"{place}: a path of the card outside of {CARD_PATHS}*: {found[0]}"

    def own_fault(self, place, name):
        folder = place.split("/")[0]
        if re.search(r"\.moc$|^moc_", name):
            return None
        if not (self.src / name).is_file():
            return f'"{name}" is not written relative to src/'
        if name.split("/")[0] not in (folder, *self.lines[folder]):
            return f'{folder}/ does not link what "{name}" belongs to'
        return None

    def library_fault(self, place, name):
        for header, library in LIBRARIES.items():
            if re.fullmatch(header, name):
                if not any(re.search(library, line) for line in self.lines[place.split("/")[0]]):
                    return f"does not link what <{name}> belongs to"
                if place.endswith(".h") and library != "Qt6::":
                    return f"<{name}> belongs behind the header"
        return None


# Where a fault is planted, with what, and a word of what has to be said about it. The first are no faults.
PLANTED = [
    ("model/New.h", '#include "card/SpdNode.h"\n/*\n#include <QString>\n*/\n// fopen, "KIT/kit007.spd"\n', None),
    ("app/New.cpp", '#include <QFile>\nauto a = QFile::encodeName("QMessageBox") + "Find KIT/WAVE";\n', None),
    ("card/New.h", "#include <QString>\n", "does not link"),
    ("text/New.cpp", "#include <QtCore/QString>\n", "does not link"),
    ("views/New.cpp", '#include "card/SpdNode.h"\n', "does not link"),
    ("audio/New.cpp", '#include "platform/FileSystem.h"\n', "does not link"),
    ("views/New.cpp", "#include <SDL.h>\n", "does not link"),
    ("text/New.h", "#include <unicode/unistr.h>\n", "behind"),
    ("library/New.cpp", '#include "CardPaths.h"\n', "relative"),
    ("extra/New.h", "\n", "no layer"),
    ("library/saving/New.cpp", "  #  include <fstream>\n", "file system"),
    ("library/saving/New.cpp", "void f(const Path& p) { std::ofstream(p) << 1; }\n", "file system"),
    ("card/New.cpp", 'auto f = fopen("a", "r");\n', "file system"),
    ("library/reading/New.cpp", "auto n = std::filesystem::file_size(path);\n", "file system"),
    ("library/store/New.cpp", "void f() { ::unlink(name); }\n", "file system"),
    ("views/kits/New.cpp", "void f() { QFile::remove(name); }\n", "file system"),
    ("library/imports/New.cpp", '#include "library/store/RolandLibrary.h"\n', "store"),
    ("library/saving/New.h", "class RolandLibrary;\n", "store"),
    ("views/pads/New.cpp", "void f() { QMessageBox box; box.open(); }\n", "Prompts"),
    ("views/pads/New.cpp", "void f(QDialog& box) { box.exec(); }\n", "loop"),
    ("app/New.cpp", "auto f = QFileDialog::getOpenFileName();\n", "Prompts"),
    ("views/kits/New.h", "class A { std::optional<Kit> kit_; };\n", "record"),
    ("views/pads/New.h", "class A { const Wave* sound_ = nullptr; };\n", "record"),
    ("views/controls/New.h", '#include "views/window/ContentView.h"\n', "screen"),
    ("views/kits/New.cpp", 'const Path path = "KIT/kit007.spd";\n', "path of the card"),
    ("library/saving/New.cpp", 'const Path path = root / "SYSTEM";\n', "path of the card"),
]


def self_test(layers):
    for place, text, reason in PLANTED:
        found = list(layers.faults_of(place, text))
        if len(found) != (reason is not None) or not all(reason in fault for fault in found):
            yield f"planted {place} {text!r}, found {found}"


def main(arguments):
    if len(arguments) not in (1, 2) or (len(arguments) == 2 and arguments[0] != "--self-test"):
        sys.exit(__doc__)
    layers = Layers(pathlib.Path(arguments[-1]).resolve())
    found = list(self_test(layers) if len(arguments) == 2 else layers.faults())
    print("\n".join(found))
    return 1 if found else 0


sys.exit(main(sys.argv[1:]))
