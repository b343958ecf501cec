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
        step = name if place == 0 else f"{name}[{place}]"
        leaf = re.fullmatch(r"<[^>]+>(.*)</[^>]+>", element)
        if leaf:
            found["/".join([*open_elements, step])] = (number, leaf[1])
        elif not element.endswith("/>"):
            open_elements.append(step)
            counts.append({})
    return found


def leaf(content, path):
    return places(content)[path][1]


def pad(index, name):
    return f"KitPrm/PadPrm{f'[{index}]' if index else ''}/{name}"


def name_leaves(prefix, width, text):
    """A name's cells, one number a character."""
    return {f"{prefix}{cell}": str(ord(text[cell]) if cell < len(text) else 0) for cell in range(width)}


def patched(content, leaves):
    """The same bytes with other texts in these leaves."""
    lines = content.splitlines(keepends=True)
    for path, text in leaves.items():
        number = places(content)[path][0]
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
            yield f"{path} is {actual[path][-2000:]!r} and should be {expected[path][-2000:]!r}"


def new_sample(text, path):
    """The parameter file of an imported sample."""
    leaves = {**name_leaves("Nm", 12, text), "Tag": 0, "Tempo": 1200, "Beat": 4, "Measure": 0, "Start": 0, "End": 0, "Path": path}
    lines = [f"\t<{element}>{value}</{element}>" for element, value in leaves.items()]
    return "\n".join(["<WvPrm>", *lines, "</WvPrm>", ""]).encode()


def with_lists(tree):
    """A save writes the three lists of samples anew, from what the sample files say."""
    samples = []
    for path, content in tree.items():
        place = re.fullmatch(CARD + r"WAVE/PRM/(\d\d)/(\d\d)\.spd", path)
        if place:
            name = "".join(chr(int(leaf(content, f"WvPrm/Nm{cell}"))) for cell in range(12)).rstrip("\0")
            key = unicodedata.normalize("NFC", name.lower())
            samples.append((int(leaf(content, "WvPrm/Tag")), key, int(place[1]) * 100 + int(place[2])))
    tags = range(tree[f"{CARD}SYSTEM/tag_list.spd"].count(b"<TagPrm>"))
    by_name = sorted(samples, key=lambda each: each[1:])
    by_number = sorted(samples, key=lambda each: each[2])

    def entries(chosen, depth):
        return [f"{chr(9) * depth}<Wv>{each[2]}</Wv>" for each in chosen]

    def by_tag(ordered):
        groups = (["\t<WvList>", *entries([each for each in ordered if each[0] == tag], 2), "\t</WvList>"] for tag in tags)
        return [line for group in groups for line in group]

    lists = (
        ("WvListSortbyName", entries(by_name, 1)),
        ("WvListSortbyName_Tag", by_tag(by_name)),
        ("WvListSortbyNum_Tag", by_tag(by_number)),
    )
    written = ("\n".join([f"<{root}>", *lines, f"</{root}>", ""]).encode() for root, lines in lists)
    return tree | dict(zip(WAVE_LISTS, written))
