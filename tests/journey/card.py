"""A card's files as bytes, and what they should be after a journey."""

import re
import unicodedata

CARD = "Roland/SPD-SX/"  # below the volume that is remembered
WAVE_LISTS = [f"{CARD}SYSTEM/wavelist_{order}.spd" for order in ("name", "tagname", "tagnum")]


def read_tree(folder):
    """Every file's bytes, and None for every folder, by path below the folder."""
    return {str(path.relative_to(folder)): None if path.is_dir() else path.read_bytes() for path in sorted(folder.rglob("*"))}


def kit(slot):
    return f"{CARD}KIT/kit{slot:03}.spd"


def sample(wave_id):
    return f"{CARD}WAVE/PRM/{wave_id // 100:02}/{wave_id % 100:02}.spd"


def places(content):
    """Line and text of every leaf, by path, in a parameter file that stands one element a line."""
    found, open_elements, counts = {}, [], [{}]
    for number, line in enumerate(content.decode().splitlines()):
        element = line.strip()
        if element.startswith("</"):
            open_elements.pop()
            counts.pop()
            continue
        name = re.match(r"<([^/>]+)", element)[1]
        place = counts[-1].get(name, 0)
        counts[-1][name] = place + 1
        path = "/".join([*open_elements, name if place == 0 else f"{name}[{place}]"])
        leaf = re.fullmatch(r"<[^>]+>(.*)</[^>]+>", element)
        if leaf:
            found[path] = (number, leaf[1])
        elif not element.endswith("/>"):
            open_elements.append(name if place == 0 else f"{name}[{place}]")
            counts.append({})
    return found


def leaf(content, path):
    return places(content)[path][1]


def pad(index, name):
    return f"KitPrm/PadPrm{f'[{index}]' if index else ''}/{name}"


def name_leaves(prefix, width, text):
    """A name's cells, one number a character."""
    return {f"{prefix}{cell}": str(ord(text[cell]) if cell < len(text) else 0) for cell in range(width)}


def name(content, prefix, width):
    codes = (int(leaf(content, f"{prefix}{cell}")) for cell in range(width))
    return "".join(chr(code) for code in codes if code)


def patched(content, leaves):
    """The same bytes with other texts in these leaves."""
    lines = content.splitlines(keepends=True)
    found = places(content)
    for path, text in leaves.items():
        number = found[path][0]
        lines[number] = re.sub(rb">[^<]*<", b">" + str(text).encode() + b"<", lines[number], count=1)
    return b"".join(lines)


def differences(expected, actual):
    """One line for each path where two trees differ."""
    for path in sorted(expected.keys() | actual.keys()):
        if path not in actual:
            yield f"{path} is gone"
        elif path not in expected:
            yield f"{path} is new"
        elif expected[path] != actual[path]:
            yield f"{path} differs{what_differs(expected[path], actual[path])}"


def what_differs(expected, actual):
    try:
        wanted, found = places(expected), places(actual)
    except (AttributeError, TypeError, ValueError, IndexError):
        return ""
    leaves = [
        f"{path} is {found.get(path, (0, 'absent'))[1]} and should be {wanted.get(path, (0, 'absent'))[1]}"
        for path in sorted(wanted.keys() | found.keys())
        if wanted.get(path, ("", ""))[1] != found.get(path, ("", ""))[1]
    ]
    return ": " + ("; ".join(leaves[:6]) if leaves else "in its layout")


def new_sample(text, tag, path):
    """The parameter file of an imported sample."""
    leaves = {**name_leaves("Nm", 12, text), "Tag": tag, "Tempo": 1200, "Beat": 4, "Measure": 0, "Start": 0, "End": 0, "Path": path}
    lines = [f"\t<{element}>{value}</{element}>" for element, value in leaves.items()]
    return "\n".join(["<WvPrm>", *lines, "</WvPrm>", ""]).encode()


def with_lists(tree):
    """A save writes the three lists of samples anew, from what the sample files say."""
    samples = []
    for path, content in tree.items():
        place = re.fullmatch(CARD + r"WAVE/PRM/(\d\d)/(\d\d)\.spd", path)
        if place:
            key = unicodedata.normalize("NFC", name(content, "WvPrm/Nm", 12).lower())
            samples.append((int(leaf(content, "WvPrm/Tag")), key, int(place[1]) * 100 + int(place[2])))
    tags = range(tree[f"{CARD}SYSTEM/tag_list.spd"].count(b"<TagPrm>"))
    by_name = sorted(samples, key=lambda sample: sample[1:])
    by_number = sorted(samples, key=lambda sample: sample[2])
    lists = (
        list_file("WvListSortbyName", [entry(sample, 1) for sample in by_name]),
        list_file("WvListSortbyName_Tag", [line for tag in tags for line in list_of_tag(by_name, tag)]),
        list_file("WvListSortbyNum_Tag", [line for tag in tags for line in list_of_tag(by_number, tag)]),
    )
    return tree | dict(zip(WAVE_LISTS, lists))


def list_file(root, lines):
    return "\n".join([f"<{root}>", *lines, f"</{root}>", ""]).encode()


def list_of_tag(samples, tag):
    return ["\t<WvList>", *(entry(sample, 2) for sample in samples if sample[0] == tag), "\t</WvList>"]


def entry(sample, depth):
    return f"{chr(9) * depth}<Wv>{sample[2]}</Wv>"
