#!/usr/bin/env python3
"""Makes the page that F1 opens out of guide.md: make_page.py FOLDER. Its pictures are copied beside it.

Knows what guide.md uses: headings, paragraphs, pictures, **strong** words and `code`. Anything else stops it."""
import html
import pathlib
import re
import shutil
import sys

HERE = pathlib.Path(__file__).resolve().parent
HEAD = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>{title}</title>
<style>
body {{ font: 16px/1.5 "Segoe UI", sans-serif; max-width: 44em; margin: 2em auto; padding: 0 1em; }}
img {{ max-width: 100%; }}
code {{ background: #8883; padding: 0 .25em; }}
</style>
</head>
<body>
"""


def inline(text):
    text = html.escape(text, quote=False)
    text = re.sub(r"\*\*(.+?)\*\*", r"<strong>\1</strong>", text)
    return re.sub(r"`(.+?)`", r"<code>\1</code>", text)


def block(text):
    heading = re.fullmatch(r"(#{1,3}) (.+)", text)
    picture = re.fullmatch(r"!\[(.+)\]\((\S+)\)", text)
    if heading:
        level = len(heading[1])
        return f"<h{level}>{inline(heading[2])}</h{level}>"
    if picture:
        return f'<p><img src="{picture[2]}" alt="{html.escape(picture[1])}"></p>'
    if re.match(r"[-*|>#!]|\d+\. ", text) and not text.startswith("**"):
        sys.exit(f"guide.md: a kind of text that this script does not know: {text}")
    return f"<p>{inline(text)}</p>"


def main():
    folder = pathlib.Path(sys.argv[1])
    blocks = re.split(r"\n\s*\n", (HERE / "guide.md").read_text(encoding="utf-8").strip())
    title = blocks[0].lstrip("# ")
    folder.mkdir(parents=True, exist_ok=True)
    pages = [HEAD.format(title=html.escape(title)), *(block(" ".join(each.split("\n"))) + "\n" for each in blocks)]
    (folder / "guide.html").write_text("".join(pages) + "</body>\n</html>\n", encoding="utf-8", newline="\n")
    for picture in sorted(HERE.glob("*.png")):
        shutil.copyfile(picture, folder / picture.name)


if __name__ == "__main__":
    main()
