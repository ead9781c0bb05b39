#!/usr/bin/env python3
"""Writes what the build makes of the languages of retouch.exe.

    generate_texts.py FOLDER     texts.rc, text_ids.h and text_languages.inc in FOLDER

languages/XX.txt     one language: its texts. Their numbers follow the order in English. Codes and offsets of the
                     languages are those of the library, in resources/languages.
"""
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent / "resources"))
sys.dont_write_bytecode = True
import generate_dialogs  # noqa: E402  the reader of the library's languages reads ours

FIRST_TEXT = 100


def name_of(key):
    return "TEXT_" + key.upper().replace(".", "_")


def marks(text):
    return sorted(re.findall(r"%\d", text))


def read_texts(codes):
    """{code: texts} of all languages, each checked against English."""
    files = {path.stem: path for path in sorted((HERE / "languages").glob("*.txt"))}
    if set(files) != set(codes):
        sys.exit(f"host/resources/languages: the library has other languages: {sorted(set(files) ^ set(codes))}")
    texts = {code: generate_dialogs.read_language(path) for code, path in files.items()}
    for code, language in texts.items():
        difference = sorted(set(language) ^ set(texts["EN"]))
        if difference:
            sys.exit(f"{code}.txt: keys differ from English: {', '.join(difference)}")
        for key, text in language.items():
            if marks(text) != marks(texts["EN"][key]):
                sys.exit(f"{code}.txt: {key}: other marks than in English: {text}")
    return texts


def resource_script(texts, offsets):
    script = ["#pragma code_page(65001)", "#include <windows.h>", "LANGUAGE LANG_NEUTRAL, SUBLANG_NEUTRAL", ""]
    for code, language in texts.items():
        script += ["STRINGTABLE", "BEGIN"]
        for number, key in enumerate(texts["EN"], FIRST_TEXT):
            text = generate_dialogs.quoted(language[key]).replace("|", "\\r\\n")
            script.append(f"    {number + int(offsets[code])}, {text}")
        script += ["END", ""]
    return script


def main():
    folder = pathlib.Path(sys.argv[1])
    library = generate_dialogs.read_languages()
    texts = read_texts(library)
    ids = ["// Written by the build, from languages/EN.txt.", "#pragma once", "", "enum TextId {"]
    ids += [f"    {name_of(key)} = {number}," for number, key in enumerate(texts["EN"], FIRST_TEXT)] + ["};", ""]
    rows = [f'{{L"{code}", {captions["offset"]}}},' for letters, captions in library.items()
            for code in [letters, *captions.get("also", "").split()]]
    for name, lines in (("texts.rc", resource_script(texts, {code: library[code]["offset"] for code in library})),
                        ("text_ids.h", ids), ("text_languages.inc", [*rows, ""])):
        (folder / name).write_text("\n".join(lines), encoding="utf-8")


if __name__ == "__main__":
    main()
