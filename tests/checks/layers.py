#!/usr/bin/python3
"""Who may include whom: calls run one way, the layers below stay free of toolkit and disk, jobs don't know the store.

usage: layers.py SRC          lists every include that breaks a rule, exit 1 if there is one
       layers.py --self-test  plants each kind of violation and expects to find it
"""

import fnmatch
import pathlib
import re
import sys
import tempfile

# A folder includes itself and these.
MAY_INCLUDE = {
    "card": (),
    "text": (),
    "model": ("card", "text"),
    "platform": (),
    "library": ("platform", "model", "text", "card"),
    "audio": (),
    "views": ("library", "audio", "model", "text"),
    "app": ("views", "audio", "library", "platform", "model", "text", "card"),
}
# Without toolkit and disk, so that they can be read, tested and trusted alone.
PURE = ("card", "text", "model")
TOOLKIT = re.compile(r"Q[A-Z].*|Qt[A-Z].*/.*")
DISK = re.compile(r"filesystem|fstream|unistd\.h|fcntl\.h|dirent\.h|sys/.*|linux/.*")
# <cstdio> is needed to format numbers, so there it is the words that tell.
DISK_WORDS = re.compile(r"\b(?:FILE|fopen|freopen|tmpfile|popen)\b")
# Libraries that only one folder knows, and only behind its headers.
BEHIND = {"text": re.compile(r"unicode/.*"), "library": re.compile(r"xxhash.*"), "audio": re.compile(r"SDL.*|sndfile.*|soxr.*")}
# Sources that run off the main thread take and return plain values.
JOBS = ("*Job*", "CardWriter*", "SavePlan*", "Backup*")
STORE = "library/store/RolandLibrary.h"

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+)', re.MULTILINE)
LINE_COMMENT = re.compile(r"//.*")
BLOCK_COMMENT = re.compile(r"/\*.*?\*/", re.DOTALL)


def code(file):
    return BLOCK_COMMENT.sub("", file.read_text(encoding="utf-8"))


def includes(file):
    """Pairs of quote or bracket and name."""
    return INCLUDE.findall(code(file))


def own_include_faults(src, folder, name):
    if re.search(r"\.moc$|^moc_", name):
        return
    if not (src / name).is_file():
        yield f'"{name}" is not written relative to src/'
    elif name.split("/")[0] not in (folder, *MAY_INCLUDE[folder]):
        yield f'{folder}/ may not include "{name}"'


def foreign_include_faults(folder, is_header, name):
    if folder in PURE and TOOLKIT.fullmatch(name):
        yield f"{folder}/ knows no toolkit, but includes <{name}>"
    if folder in PURE and DISK.fullmatch(name):
        yield f"{folder}/ touches no file, but includes <{name}>"
    for owner, pattern in BEHIND.items():
        if pattern.fullmatch(name) and (folder != owner or is_header):
            yield f"<{name}> belongs in the sources of {owner}/"


def road_to_store(src, file, seen):
    """The chain of includes from a file to the store's header, or None."""
    for mark, name in includes(file):
        if name == STORE:
            return [name]
        if mark == '"' and name not in seen and (src / name).is_file():
            seen.add(name)
            rest = road_to_store(src, src / name, seen)
            if rest:
                return [name, *rest]
    return None


def faults(src):
    files = sorted(f for f in src.rglob("*") if f.suffix in (".h", ".cpp"))
    for file in files:
        place = file.relative_to(src)
        folder = place.parts[0]
        if folder not in MAY_INCLUDE:
            yield f"{place}: no rule knows the folder {folder}/"
            continue
        for mark, name in includes(file):
            found = (
                own_include_faults(src, folder, name)
                if mark == '"'
                else foreign_include_faults(folder, file.suffix == ".h", name)
            )
            yield from (f"{place}: {fault}" for fault in found)
        if folder in PURE:
            words = DISK_WORDS.findall(LINE_COMMENT.sub("", code(file)))
            yield from (f"{place}: {folder}/ touches no file, but says {word}" for word in words)
        if folder == "library" and any(fnmatch.fnmatch(file.name, job) for job in JOBS):
            road = road_to_store(src, file, set())
            if road:
                yield f"{place}: a job reaches the store: {' -> '.join(road)}"
    if not files:
        yield f"{src}: no sources"


CLEAN = {
    "card/SpdNode.h": "#include <string>\n",
    "text/Unicode.cpp": "#include <unicode/unistr.h>\n",
    "model/Kit.h": '#include "card/SpdNode.h"\n/*\n#include <QString>\n*/\n// #include <fstream>\n',
    "platform/FileSystem.h": "#include <QString>\n#include <filesystem>\n",
    "library/store/RolandLibrary.h": '#include "model/Kit.h"\n#include "library/SaveJob.h"\n',
    "library/SaveJob.h": '#include "platform/FileSystem.h"\n',
    "audio/SamplePlayer.cpp": "#include <SDL.h>\n#include <sndfile.h>\n",
    "views/KitListView.cpp": '#include "library/store/RolandLibrary.h"\n#include "KitListView.moc"\n',
    "app/main.cpp": '#include "platform/FileSystem.h"\n',
}
# What is planted and the file that must be named, with a word of the reason.
PLANTED = [
    ({"card/Bad.h": "#include <QString>\n"}, "card/Bad.h", "toolkit"),
    ({"text/Bad.cpp": "#include <QtCore/QString>\n"}, "text/Bad.cpp", "toolkit"),
    ({"model/Bad.cpp": "  #  include <fstream>\n"}, "model/Bad.cpp", "no file"),
    ({"card/Bad.cpp": 'auto f = fopen("a", "r");\n'}, "card/Bad.cpp", "no file"),
    ({"model/Bad.cpp": '#include "library/store/RolandLibrary.h"\n'}, "model/Bad.cpp", "may not include"),
    ({"views/Bad.cpp": '#include "card/SpdNode.h"\n'}, "views/Bad.cpp", "may not include"),
    ({"audio/Bad.cpp": '#include "platform/FileSystem.h"\n'}, "audio/Bad.cpp", "may not include"),
    ({"library/Bad.cpp": '#include "SaveJob.h"\n'}, "library/Bad.cpp", "relative to src/"),
    ({"text/Bad.h": "#include <unicode/unistr.h>\n"}, "text/Bad.h", "belongs in the sources"),
    ({"views/Bad.cpp": "#include <SDL.h>\n"}, "views/Bad.cpp", "belongs in the sources"),
    ({"library/SavePlan.cpp": f'#include "{STORE}"\n'}, "library/SavePlan.cpp", "reaches the store"),
    (
        {"library/Middle.h": f'#include "{STORE}"\n', "library/CardWriter.h": '#include "library/Middle.h"\n'},
        "library/CardWriter.h",
        "reaches the store",
    ),
    ({"extra/New.h": "\n"}, "extra/New.h", "no rule"),
]


def faults_of(files):
    with tempfile.TemporaryDirectory() as folder:
        src = pathlib.Path(folder)
        for name, text in files.items():
            (src / name).parent.mkdir(parents=True, exist_ok=True)
            (src / name).write_text(text, encoding="utf-8")
        return list(faults(src))


def self_test():
    wrong = [f"the clean tree: {fault}" for fault in faults_of(CLEAN)]
    for planted, place, reason in PLANTED:
        found = faults_of({**CLEAN, **planted})
        if len(found) != 1 or not found[0].startswith(place + ":") or reason not in found[0]:
            wrong.append(f"planted {planted}, found {found}")
    return wrong


def main(arguments):
    if len(arguments) != 1:
        sys.exit(__doc__)
    found = self_test() if arguments[0] == "--self-test" else list(faults(pathlib.Path(arguments[0])))
    print("\n".join(found))
    return 1 if found else 0


sys.exit(main(sys.argv[1:]))
