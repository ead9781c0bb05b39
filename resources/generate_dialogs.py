#!/usr/bin/env python3
"""Writes what the build makes of the languages.

    generate_dialogs.py OUTPUT.rc         dialog templates and string table of every language, a resource script
    generate_dialogs.py --rows OUTPUT.inc  a row {"code", "letters of its dialogs", string offset} for every code

layouts/NAME.txt     one dialog: its size, style and controls, the same in every language
languages/XX.txt     one language: its captions, its confirmation text, its string offset, and the further
                     codes (`also`, may be missing) of languages that are shown in this one

A language without a file simply has no templates; the dialogs then open in English.
"""
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
LAYOUTS = ("palette", "contrast", "library")
STRINGS = {
    "STRING_CONFIRM_DELETE": "confirm.delete",
    "STRING_LIBRARY_EMPTY": "library.empty",
    "STRING_WIDTH": "tip.width",
    "STRING_HEIGHT": "tip.height",
    "STRING_OPACITY": "opacity",
    "STRING_CONTRAST": "contrast",
    "STRING_BRIGHTNESS": "brightness",
    "STRING_SATURATION": "saturation",
    "STRING_HUE": "hue",
    "STRING_FRAME_CLOSE": "frame.close",
    "STRING_FRAME_APPLY": "frame.apply",
    "STRING_FRAME_FLIP_VERTICAL": "frame.flip.vertical",
    "STRING_FRAME_FLIP_HORIZONTAL": "frame.flip.horizontal",
    "STRING_FRAME_BRIGHTER": "frame.brighter",
    "STRING_FRAME_DARKER": "frame.darker",
    "STRING_FRAME_ROTATE": "frame.rotate",
    "STRING_FRAME_HUE_DOWN": "frame.hue.down",
    "STRING_FRAME_HUE_UP": "frame.hue.up",
    "STRING_FRAME_SATURATION_MORE": "frame.saturation.more",
    "STRING_FRAME_SATURATION_LESS": "frame.saturation.less",
    "STRING_FRAME_CONTRAST_MORE": "frame.contrast.more",
    "STRING_FRAME_CONTRAST_LESS": "frame.contrast.less",
    "STRING_FRAME_LIFT_UP": "frame.lift.up",
    "STRING_FRAME_LIFT_DOWN": "frame.lift.down",
    "STRING_FRAME_RESIZE": "frame.resize",
}


def data_lines(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if line.strip() and not line.startswith("#"):
            yield f"{path.name}:{number}", line.strip()


def read_language(path):
    captions = {}
    for where, line in data_lines(path):
        key, separator, caption = line.partition(" = ")
        if not separator or not caption.strip() or key in captions:
            sys.exit(f"{where}: expected a new key and its caption: {line}")
        captions[key.strip()] = caption.strip()
    return captions


def read_layout(path):
    layout = {"controls": []}
    for where, line in data_lines(path):
        if line.startswith("dialog "):
            _, layout["name"], *layout["place"] = line.split()
        elif line.startswith("style "):
            layout["style"] = line[len("style "):]
        else:
            fields = [field.strip() for field in line.split(";")]
            if len(fields) != 5 or len(fields[4].split()) != 4:
                sys.exit(f"{where}: expected id; class; text; style; x y width height")
            layout["controls"].append(fields)
    return layout


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '""') + '"'


def dialog_script(layout, code, captions):
    lines = [
        f"{code}{layout['name']} DIALOG {', '.join(layout['place'])}",
        f"STYLE {layout['style']} | DS_SETFONT",
        'FONT 8, "Helv"',
        "BEGIN",
    ]
    for identity, kind, text, style, place in layout["controls"]:
        caption = re.sub(r"\{(.*?)\}", lambda match: captions[match[1]], text)
        lines.append(f"    CONTROL {quoted(caption)}, {identity}, {quoted(kind)}, {style}, {', '.join(place.split())}")
    return lines + ["END", ""]


def string_script(captions):
    return ["STRINGTABLE", "BEGIN"] + [
        f"    {name} + {captions['offset']}, {quoted(captions[key])}" for name, key in STRINGS.items()
    ] + ["END", ""]


def read_languages():
    """{code: captions} of all languages."""
    languages = {path.stem: read_language(path) for path in sorted((HERE / "languages").glob("??.txt"))}
    for code, captions in languages.items():
        difference = sorted(set(captions) - {"also"} ^ set(languages["EN"]))
        if difference:
            sys.exit(f"{code}.txt: keys differ from English: {', '.join(difference)}")
    return languages


def rows(languages):
    """English has none: it is what every unknown code gets."""
    codes, offsets = [], []
    for letters, captions in languages.items():
        offsets.append(captions["offset"])
        for code in [letters] + captions.get("also", "").split():
            codes.append(code)
            if code != "EN":
                yield f'{{"{code}", "{letters}", {captions["offset"]}}},'
    for number, values in (("code", codes), ("offset", offsets)):
        twice = sorted({value for value in values if values.count(value) > 1})
        if twice:
            sys.exit(f"languages: {number} {', '.join(twice)} is given twice")


def dialogs(languages):
    script = ["#pragma code_page(65001)", "#include <windows.h>", '#include "resources/resource_ids.h"', "",
              "LANGUAGE LANG_NEUTRAL, SUBLANG_NEUTRAL", ""]
    for code, captions in languages.items():
        for name in LAYOUTS:
            script += dialog_script(read_layout(HERE / "layouts" / f"{name}.txt"), code, captions)
        script += string_script(captions)
    return script


def main():
    languages = read_languages()
    script = [*rows(languages), ""] if sys.argv[1] == "--rows" else dialogs(languages)
    pathlib.Path(sys.argv[-1]).write_text("\n".join(script), encoding="utf-8")


if __name__ == "__main__":
    main()
