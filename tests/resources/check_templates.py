#!/usr/bin/env python3
"""Holds the resources of a built KOVRTCH32.dll against what the code expects of them.

    check_templates.py KOVRTCH32.dll     check the library; exit code 1 and one line per fault
    check_templates.py --self-test DLL   plant faults in copies of its resources; each must be found

Checked: every language has the dialogs of English with the same controls, classes, styles, order and
places; ids and access keys are unique in a dialog; controls lie inside their dialog and beside one
another; captions fit what shows them; button tables, pictures, cursors and strings are there.
"""
import copy
import struct
import sys

RT_CURSOR, RT_BITMAP, RT_DIALOG, RT_STRING, RT_RCDATA, RT_GROUP_CURSOR = 1, 2, 5, 6, 10, 12
OFFSETS = {"FR": 0, "EN": 1000, "ES": 2000, "PT": 3000, "IT": 4000, "RU": 5000, "PL": 6000, "NL": 7000, "CH": 8000,
           "DE": 9000, "SK": 10000, "HU": 11000, "JP": 12000, "CS": 13000, "TR": 14000, "LT": 15000, "KO": 16000}
SEPARATOR = 65535
CONFIRM_DELETE = 100
STRINGS = (*range(100, 109), *range(110, 126))  # of each language, before its offset

# Dialog suffix: position, size, style. The palette is shown by the code, so it starts invisible.
DIALOGS = {
    "DLGRTCH_CMD": ((0, 0, 48, 277), 0x80400040),
    "DLGRTCH_CONTRAST": ((106, 73, 193, 115), 0x90400040),
    "DLGRTCH_SELLISTFILES": ((176, 22, 72, 243), 0x80C40040),
}
CLOSE = "BB:{} BMP:[£]#1443|1444|#1445|#1446"
SAVE = "BB:{} BMP:[£]#1215|#1216|#1217|#1218"
# Control: class (in small letters), English text. The separators follow the others.
CONTROLS = {
    "DLGRTCH_CMD": {
        2: ("bouton", CLOSE.format("Close")), 8: ("bouton", SAVE.format("Save")),
        114: ("bouton", "BB:Contrast"), 154: ("bouton", "BB:Selections Library"), 116: ("bouton", "BB:Selection"),
        117: ("bouton", "BB:Brush"), 118: ("bouton", "BB:Rubber"), 121: ("bouton", "BB:Smooth"),
        119: ("bouton", "BB:Aerographe"), 120: ("bouton", "BB:Stamp"), 122: ("bouton", "BB:Spoonbill"),
        123: ("bouton", "BB:Text"), 124: ("bouton", "BB:Colors"), 190: ("bouton", "BB:Undo"),
        191: ("bouton", "BB:Redo"), 200: ("static", ""), 202: ("scrollbar", "BB:L"), 204: ("scrollbar", "BB:H"),
        206: ("bouton", "BB:L = H"), 208: ("bouton", "BB:Cercle"), 209: ("bouton", "BB:Rectangle"),
        212: ("scrollbar", "BB:Opacity"), 213: ("bouton", "BB:Full"), 214: ("bouton", "BB:Smooth"),
    },
    "DLGRTCH_CONTRAST": {
        2: ("bouton", "BB:Cancel BMP:[£]#1040||#1042"), 1: ("bouton", "BB:OK BMP:[£]#1570||#1572"),
        150: ("bouton", "BB:Contrast"), 101: ("scrollbar", ""), 152: ("bouton", "BB:Brightness"),
        102: ("scrollbar", ""), 154: ("bouton", "BB:Saturation"), 103: ("scrollbar", ""), 156: ("bouton", "BB:Hue"),
        104: ("scrollbar", ""),
    },
    "DLGRTCH_SELLISTFILES": {
        10: ("listbox", ""), 2: ("bouton", CLOSE.format("Close")), 8: ("bouton", SAVE.format("Save")),
        9: ("bouton", "BB:Delete BMP:[£]#1187|#1188|#1189|#1190"),
    },
}
SEPARATORS = {"DLGRTCH_CMD": 0, "DLGRTCH_CONTRAST": 4, "DLGRTCH_SELLISTFILES": 1}
WITHOUT_PICTURE = {("DLGRTCH_CMD", 206)}  # the one button that shows its caption
TOOLS = tuple(range(116, 125))            # 24 x 24 units each
PICTURE_TABLES = {
    100: [(114, 118), (115, 166), (116, 120), (117, 102), (124, 104), (121, 106), (119, 112), (120, 108), (118, 110),
          (208, 124), (209, 126), (123, 130), (122, 132), (190, 114), (191, 116), (213, 158), (214, 160), (154, 164)],
    1000: [(2, 171), (8, 172)],
    102: [(150, 150), (152, 152), (154, 154), (156, 156)],
    2000: [(2, 171), (1, 170)],
    3000: [(2, 171), (8, 172), (9, 173)],
}
PICTURES = sorted({*range(102, 133, 2)} - {122} | {*range(150, 161, 2)} | {164, 166, 170, 171, 172, 173})
TEXT_CURSOR, CURSOR_SIDES = 124, (32, 48, 64)
CURSORS = sorted({*range(100, 145, 2)} | {129, 15001, 15002})
WS_VISIBLE, WS_CLIPCHILDREN, WS_THICKFRAME, WS_CAPTION, WS_SYSMENU = (
    0x10000000, 0x02000000, 0x00040000, 0x00C00000, 0x00080000)


# ---- reading the library ------------------------------------------------------------------------

def read_resources(path):
    """{(type, name): bytes} of a PE file; type and name are numbers, or text for named resources."""
    with open(path, "rb") as file:
        image = file.read()
    header = struct.unpack_from("<I", image, 0x3C)[0]
    sections, optional_size = struct.unpack_from("<H12xH", image, header + 6)
    wide = struct.unpack_from("<H", image, header + 24)[0] == 0x20B
    directory_rva = struct.unpack_from("<I", image, header + 24 + (112 if wide else 96) + 2 * 8)[0]

    def at(rva):
        for index in range(sections):
            size, start, raw_size, raw = struct.unpack_from("<IIII", image, header + 24 + optional_size + 40 * index + 8)
            if start <= rva < start + max(size, raw_size):
                return raw + rva - start
        raise ValueError("address outside of every section")

    base = at(directory_rva)

    def entries(offset):
        named, numbered = struct.unpack_from("<HH", image, base + offset + 12)
        for index in range(named + numbered):
            name, target = struct.unpack_from("<II", image, base + offset + 16 + 8 * index)
            if name & 0x80000000:
                place = base + (name & 0x7FFFFFFF)
                length = struct.unpack_from("<H", image, place)[0]
                name = image[place + 2:place + 2 + 2 * length].decode("utf-16-le")
            yield name, target & 0x7FFFFFFF

    found = {}
    for kind, names in entries(0):
        for name, languages in entries(names):
            for _, leaf in entries(languages):
                rva, size = struct.unpack_from("<II", image, base + leaf)
                found[kind, name] = image[at(rva):at(rva) + size]
    return found


class Reader:
    def __init__(self, data):
        self.data, self.place = data, 0

    def take(self, layout):
        values = struct.unpack_from("<" + layout, self.data, self.place)
        self.place += struct.calcsize("<" + layout)
        return values

    def text(self):
        """A string, or the number that stands in its place."""
        if self.data[self.place:self.place + 2] == b"\xff\xff":
            return self.take("HH")[1]
        end = self.place
        while self.data[end:end + 2] != b"\0\0":
            end += 2
        value = self.data[self.place:end].decode("utf-16-le")
        self.place = end + 2
        return value


CLASSES = {0x80: "BUTTON", 0x81: "EDIT", 0x82: "STATIC", 0x83: "LISTBOX", 0x84: "SCROLLBAR", 0x85: "COMBOBOX"}


def parse_dialog(data):
    reader = Reader(data)
    style, _, count, *place = reader.take("IIHhhhh")
    reader.text(), reader.text()
    dialog = {"style": style, "place": tuple(place), "title": reader.text(), "controls": []}
    dialog["font"] = (reader.take("H")[0], reader.text()) if style & 0x40 else None
    for _ in range(count):
        reader.place = (reader.place + 3) & ~3
        style, extended, *place, identity = reader.take("IIhhhhH")
        kind, text = reader.text(), reader.text()
        extra = reader.take("H")[0]
        reader.place += extra
        # The resource compiler writes class names in capitals; Windows ignores their case.
        kind = CLASSES.get(kind, str(kind)).casefold()
        dialog["controls"].append({"id": identity, "class": kind, "text": text, "style": style,
                                   "extended": extended, "place": tuple(place)})
    return dialog


def parse_strings(resources):
    strings = {}
    for (kind, block), data in resources.items():
        if kind == RT_STRING:
            reader = Reader(data)
            for index in range(16):
                length = reader.take("H")[0]
                if length:
                    strings[(block - 1) * 16 + index] = data[reader.place:reader.place + 2 * length].decode("utf-16-le")
                reader.place += 2 * length
    return strings


def read_library(path):
    resources = read_resources(path)
    return {
        "dialogs": {name: parse_dialog(data) for (kind, name), data in resources.items() if kind == RT_DIALOG},
        "strings": parse_strings(resources),
        "tables": {name: data for (kind, name), data in resources.items() if kind == RT_RCDATA},
        "pictures": {name: data for (kind, name), data in resources.items() if kind == RT_BITMAP},
        "groups": {name: data for (kind, name), data in resources.items() if kind == RT_GROUP_CURSOR},
        "cursors": {name: data for (kind, name), data in resources.items() if kind == RT_CURSOR},
    }


# ---- checks: each yields one line per fault -----------------------------------------------------

def caption(text):
    return text[3:].split(" BMP:")[0] if text.startswith("BB:") else text


def check_unique(name, dialog):
    ids, keys = set(), set()
    for control in dialog["controls"]:
        if control["id"] != SEPARATOR and control["id"] in ids:
            yield f"{name}: id {control['id']} twice"
        ids.add(control["id"])
        text = str(control["text"]).replace("&&", "")
        if "&" in text:
            key = text.split("&", 1)[1][:1].casefold()
            if key in keys:
                yield f"{name}: access key '{key}' twice"
            keys.add(key)


def check_places(name, dialog):
    _, _, width, height = dialog["place"]
    boxes = [(control["id"], *control["place"]) for control in dialog["controls"]]
    for index, (identity, x, y, w, h) in enumerate(boxes):
        if x < 0 or y < 0 or w <= 0 or h <= 0 or x + w > width or y + h > height:
            yield f"{name}: control {identity} is not inside the dialog"
        for other, x2, y2, w2, h2 in boxes[:index]:
            if x < x2 + w2 and x2 < x + w and y < y2 + h2 and y2 < y + h:
                yield f"{name}: controls {other} and {identity} overlap"


def text_units(text):
    """A cautious width in dialog units: 4 for an average letter, 8 for the wide scripts."""
    return sum(8 if ord(letter) >= 0x1100 else 4 for letter in text)


def check_captions(name, suffix, dialog):
    for control in dialog["controls"]:
        text = caption(str(control["text"]))
        if control["class"] != "bouton":
            continue
        if not text.strip():
            yield f"{name}: button {control['id']} has no caption"
        if (suffix, control["id"]) in WITHOUT_PICTURE:
            if text_units(text) > control["place"][2] - 12:  # beside a check mark of 12 units
                yield f"{name}: the caption '{text}' does not fit control {control['id']}"
        elif len(text) > 40:  # shown as a one-line tip
            yield f"{name}: the caption of control {control['id']} is too long for a tip"


def check_against_english(name, dialog, english):
    def shape(d):
        return [(c["id"], c["class"], c["style"], c["extended"], c["place"],
                 str(c["text"]).partition(" BMP:")[2], str(c["text"])[:3]) for c in d["controls"]]
    if shape(dialog) != shape(english):
        yield f"{name}: controls, order, styles or places differ from English"
    if any(dialog[key] != english[key] for key in ("style", "place", "font", "title")):
        yield f"{name}: the dialog itself differs from English"


def check_english(suffix, dialog):
    place, style = DIALOGS[suffix]
    if dialog["place"] != place or dialog["style"] != style or dialog["font"] != (8, "Helv"):
        yield f"EN{suffix}: place {dialog['place']}, style {dialog['style']:#x} or font {dialog['font']} is wrong"
    found = {c["id"]: (c["class"], c["text"]) for c in dialog["controls"] if c["id"] != SEPARATOR}
    for identity in sorted({*found, *CONTROLS[suffix]}):
        if found.get(identity) != CONTROLS[suffix].get(identity):
            yield f"EN{suffix}: control {identity} is {found.get(identity)}"
    separators = [c["class"] for c in dialog["controls"] if c["id"] == SEPARATOR]
    if separators != ["statique"] * SEPARATORS[suffix]:
        yield f"EN{suffix}: separators are {separators}"


def check_palette_details(name, dialog):
    controls = {c["id"]: c for c in dialog["controls"]}
    for tool in TOOLS + (114,):
        if controls[tool]["place"][2:] != (24, 24):
            yield f"{name}: tool {tool} is not 24 x 24"
        if controls[tool]["style"] & 0x1F != 9:
            yield f"{name}: tool {tool} is no automatic radio button"
    order = [c["id"] for c in dialog["controls"]]
    group = order[order.index(114):order.index(114) + 10]
    if sorted(group) != [114, *TOOLS]:
        yield f"{name}: the tools 114 to 124 are not one run"
    if controls[200]["style"] & WS_VISIBLE:
        yield f"{name}: the preview's marker is visible"
    _, _, w, h = controls[200]["place"]
    if w * 6 // 4 < 50 or h * 12 // 8 < 50:  # the font's base units are at least 6 x 12 pixels
        yield f"{name}: the preview is smaller than 50 x 50 pixels"


def check_neutral(dialogs):
    host = dialogs.get(800)
    if not host or 3 not in dialogs:
        yield "dialog 3 or 800 is missing"
        return
    if [(c["id"], c["class"], c["text"]) for c in host["controls"]] != [(12345, "kovretouch", "")]:
        yield "dialog 800: its only control must be the canvas"
    wanted = WS_CAPTION | WS_SYSMENU | WS_THICKFRAME
    if host["style"] & wanted != wanted or host["style"] & (WS_CLIPCHILDREN | WS_VISIBLE):
        yield f"dialog 800: style {host['style']:#x}"


def check_tables(library):
    for table, pairs in PICTURE_TABLES.items():
        words = [len(pairs)] * 4 + [word for control, bitmap in pairs for word in (control, bitmap, 0, 0)]
        if library["tables"].get(table) != struct.pack(f"<{len(words)}H", *words):
            yield f"button-picture table {table} is missing or wrong"


def check_pictures(library):
    pictures = library["pictures"]
    wanted = [identity + larger for larger in (0, 1000, 2000) for identity in PICTURES]
    if sorted(pictures) != wanted:
        yield f"pictures are {sorted(pictures)}"
    for identity, data in pictures.items():
        size, width, height, _, bits, compression = struct.unpack_from("<IiiHHI", data)
        own = struct.unpack_from("<i", pictures.get(identity % 1000, data), 4)[0]
        if size != 40 or bits != 32 or compression or not 12 <= own <= 32:
            yield f"picture {identity}: {width} x {height}, {bits} bits"
        elif width != height or 2 * width != own * (2, 3, 4)[identity // 1000]:
            yield f"picture {identity}: {width} x {height} beside one of {own} x {own}"
        else:
            yield from check_transparency(identity, data[40:])


def check_transparency(identity, pixels):
    alpha = pixels[3::4]
    if alpha[0] or max(alpha) < 128:
        yield f"picture {identity}: empty, or without a transparent background"
    if any(max(pixels[at:at + 3]) > pixels[at + 3] for at in range(0, len(pixels), 4)):
        yield f"picture {identity}: its colours are not multiplied by its alpha"


def check_cursors(library):
    if sorted(library["groups"]) != CURSORS:
        yield f"cursors are {sorted(library['groups'])}"
    for identity, group in library["groups"].items():
        count = struct.unpack_from("<H", group, 4)[0]
        members = [struct.unpack_from("<H", group, 6 + 14 * index + 12)[0] for index in range(count)]
        images = [library["cursors"].get(member) for member in members]
        if len(images) != len(CURSOR_SIDES) or not all(images):
            yield f"cursor {identity}: its image is missing"
            continue
        spots = [struct.unpack_from("<HH", data) for data in images]
        for side, data, spot in zip(CURSOR_SIDES, images, spots):
            if spot != tuple(axis * side // 32 for axis in spots[0]):
                yield f"cursor {identity}: hot spots {spots}"
            yield from check_cursor_image(identity, side, data)
        if identity == TEXT_CURSOR and spots[0][1] != foot_of(images[0]):
            yield f"cursor {identity}: its hot spot is not at its foot"


def check_cursor_image(identity, side, data):
    x, y, _, width, height, _, bits = struct.unpack_from("<HHIiiHH", data)
    if (width, height, bits) != (side, 2 * side, 32) or x >= side or y >= side:
        yield f"cursor {identity}: {width} x {height}, {bits} bits, hot spot {x}, {y}"
        return
    pixels = data[44:44 + side * side * 4]
    solid = [pixels[i:i + 3] for i in range(0, len(pixels), 4) if pixels[i + 3] == 255]
    if b"\0\0\0" not in solid or b"\xff\xff\xff" not in solid:
        yield f"cursor {identity}: needs both black and white to show on any image"


def foot_of(data):
    """The lowest row of a 32 x 32 cursor that is black in its middle columns' neighbourhood."""
    pixels = data[44:44 + 32 * 32 * 4]
    for row in range(32):  # stored bottom row first
        line = pixels[row * 128:row * 128 + 128]
        if any(line[i + 3] == 255 and max(line[i:i + 3]) < 64 for i in range(0, 128, 4)):
            return 31 - row
    return None


def check_strings(library, languages):
    expected = {string + OFFSETS[code] for code in languages for string in STRINGS}
    if set(library["strings"]) != expected:
        yield f"strings are {sorted(library['strings'])}"
    if library["strings"].get(1100) != "Are you sure to delete the file ?":
        yield "string 1100 is wrong"
    for identity, text in library["strings"].items():
        if len(text.encode("utf-16-le")) // 2 > 127:
            yield f"string {identity} is longer than the 127 characters that are read"


def faults(library):
    dialogs = library["dialogs"]
    languages = sorted({name[:2] for name in dialogs if isinstance(name, str)})
    for code in OFFSETS:
        if code not in languages:
            yield f"language {code} is missing"
    for code in languages:
        if code not in OFFSETS:
            yield f"{code} is no language"
        for suffix in DIALOGS:
            name, english = code + suffix, dialogs.get("EN" + suffix)
            if name not in dialogs or not english:
                yield f"{name} is missing"
                continue
            dialog = dialogs[name]
            yield from check_unique(name, dialog)
            yield from check_places(name, dialog)
            yield from check_captions(name, suffix, dialog)
            yield from check_against_english(name, dialog, english)
    for suffix in DIALOGS:
        if "EN" + suffix in dialogs:
            yield from check_english(suffix, dialogs["EN" + suffix])
    if "ENDLGRTCH_CMD" in dialogs:
        yield from check_palette_details("ENDLGRTCH_CMD", dialogs["ENDLGRTCH_CMD"])
    yield from check_neutral(dialogs)
    yield from check_tables(library)
    yield from check_pictures(library)
    yield from check_cursors(library)
    yield from check_strings(library, [code for code in languages if code in OFFSETS])


# ---- the checker's own test ---------------------------------------------------------------------

def planted_faults():
    """(what is broken, words the report must contain, how to break it)"""
    def control(library, dialog, identity):
        return next(c for c in library["dialogs"][dialog]["controls"] if c["id"] == identity)

    def change(dialog, identity, **values):
        return lambda library: control(library, dialog, identity).update(values)

    def reorder(library):
        controls = library["dialogs"]["FRDLGRTCH_CMD"]["controls"]
        controls[0], controls[1] = controls[1], controls[0]

    def zero_colour(library):
        library["pictures"][102] = library["pictures"][102][:40] + bytes(len(library["pictures"][102]) - 40)

    def thicken(library):
        data = library["pictures"][1104]
        library["pictures"][1104] = data[:40] + bytes([255, 255, 255, 0]) + data[44:]

    def lower_text_cursor(library):
        member = struct.unpack_from("<H", library["groups"][124], 6 + 12)[0]
        library["cursors"][member] = struct.pack("<HH", 16, 16) + library["cursors"][member][4:]

    yield "duplicate id", "id 117 twice", change("DEDLGRTCH_CMD", 118, id=117)
    yield "access key", "access key 'r' twice", lambda library: [
        control(library, "FRDLGRTCH_CMD", 190).update(text="BB:A&R"), control(library, "FRDLGRTCH_CMD", 191).update(
            text="BB:&rétablir")]
    yield "moved control", "differ from English", change("FRDLGRTCH_CONTRAST", 101, place=(35, 25, 18, 80))
    yield "overlap", "overlap", change("ENDLGRTCH_CMD", 116, place=(20, 42, 24, 24))
    yield "outside", "not inside", change("ENDLGRTCH_CMD", 212, place=(1, 270, 46, 10))
    yield "order", "differ from English", reorder
    yield "class", "differ from English", change("DEDLGRTCH_SELLISTFILES", 10, **{"class": "edit"})
    yield "long text", "does not fit", change("DEDLGRTCH_CMD", 206, text="BB:Breite = Höhe")
    yield "long tip", "too long for a tip", change("DEDLGRTCH_CMD", 117, text="BB:" + "Pinsel" * 8)
    yield "no text", "no caption", change("DEDLGRTCH_CMD", 117, text="BB:")
    yield "picture references", "differ from English", change("FRDLGRTCH_CMD", 2, text="BB:Fermer")
    yield "English text", "control 208", change("ENDLGRTCH_CMD", 208, text="BB:Circle")
    yield "visible marker", "marker is visible", change("ENDLGRTCH_CMD", 200, style=0x50000000)
    yield "small preview", "smaller than 50", change("ENDLGRTCH_CMD", 200, place=(1, 183, 30, 31))
    yield "lost language", "language LT is missing", lambda library: [
        library["dialogs"].pop("LT" + suffix) for suffix in DIALOGS]
    yield "lost dialog", "DEDLGRTCH_CONTRAST is missing", lambda library: library["dialogs"].pop("DEDLGRTCH_CONTRAST")
    yield "clipped children", "dialog 800", lambda library: library["dialogs"][800].update(
        style=library["dialogs"][800]["style"] | WS_CLIPCHILDREN)
    yield "dialog style", "is wrong", lambda library: library["dialogs"]["ENDLGRTCH_CMD"].update(style=0x90400040)
    yield "table", "table 100", lambda library: library["tables"].update({100: library["tables"][100][:-2] + b"\1\0"})
    yield "lost picture", "pictures are", lambda library: library["pictures"].pop(166)
    yield "lost variant", "pictures are", lambda library: library["pictures"].pop(2166)
    yield "empty picture", "picture 102", zero_colour
    yield "colours over alpha", "not multiplied", thicken
    yield "hot spot", "not at its foot", lower_text_cursor
    yield "lost cursor size", "its image is missing", lambda library: library["groups"].update(
        {106: library["groups"][106][:4] + b"\2\0" + library["groups"][106][6:]})
    yield "lost cursor", "cursors are", lambda library: library["groups"].pop(129)
    yield "lost cursor image", "its image is missing", lambda library: library["cursors"].clear()
    yield "lost string", "strings are", lambda library: library["strings"].pop(9100)
    yield "long string", "127 characters", lambda library: library["strings"].update({100: "é" * 128})


def self_test(library):
    missed = 0
    for what, words, plant in planted_faults():
        broken = copy.deepcopy(library)
        plant(broken)
        if not any(words in line for line in faults(broken)):
            print(f"the planted fault was not found: {what}")
            missed += 1
    return missed


def main():
    if sys.argv[1] == "--self-test":
        return 1 if self_test(read_library(sys.argv[2])) else 0
    found = list(faults(read_library(sys.argv[1])))
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
