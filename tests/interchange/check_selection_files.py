#!/usr/bin/env python3
"""check_selection_files.py WRITE_SAMPLES
Lets the library write selection files and opens them with three other readers: Pillow, libtiff's tools and
ImageMagick. Each of the three images of a file must be there with the right size and the right pixels.

The thumbnail's directory names the selection's height as its rows per strip. When that is less than 30, other
programs take its one strip for the first of several and see only as many rows: that is meant, and so no more
rows are compared, and the complaint about the missing strips is left aside."""
import pathlib
import subprocess
import sys
import tempfile

from PIL import Image

SIZES = [(1, 1), (17, 9), (100, 10), (10, 100), (640, 480), (3000, 2000)]
failures = []


def expect(condition, what):
    if not condition:
        failures.append(what)


def visible(thumbnail, size):
    """The thumbnail's rows that other programs can see."""
    return thumbnail[:min(30, size[1]) * 40 * 3]


def mask_bytes(image):
    """One byte a pixel, 255 for a set bit, whatever the reader makes of a transparency mask."""
    return image.convert("L").tobytes()


def from_directory(file, index):
    """A copy of the file whose first directory is the index-th, since Pillow cannot step over a mask. It knows
    no transparency masks either: a mask's copy says that it is an ordinary picture in which 0 is black."""
    data = bytearray(file.read_bytes())
    offset = 8
    for _ in range(index):
        offset = int.from_bytes(data[offset + 158:offset + 162], "little")
    data[4:8] = offset.to_bytes(4, "little")
    photometric = offset + 2 + 5 * 12
    expect(data[photometric:photometric + 2] == b"\x06\x01", f"{file.name}: image {index} has another sixth entry")
    if data[photometric + 8] == 4:
        data[photometric + 8] = 1
    copy = file.with_name(f"{file.stem}-{index}.tif")
    copy.write_bytes(data)
    return copy


def check_with_pillow(file, size, pixels, mask, thumbnail):
    with Image.open(file) as image:
        expect(image.size == size, f"{file.name}: Pillow sees {image.size}")
        expect(image.mode == "RGB" and image.tobytes() == pixels, f"{file.name}: Pillow reads other pixels")
        expect(tuple(map(float, image.info["dpi"])) == (300, 300), f"{file.name}: dpi {image.info.get('dpi')}")
    with Image.open(from_directory(file, 1)) as image:
        expect(image.size == size and image.tag_v2[254] == 4, f"{file.name}: Pillow sees no mask")
        expect(mask_bytes(image) == mask, f"{file.name}: Pillow reads another mask")
    with Image.open(from_directory(file, 2)) as image:
        expect(image.size == (40, 30) and image.tag_v2[254] == 1, f"{file.name}: Pillow sees no thumbnail")
        seen = visible(thumbnail, size)
        expect(image.tobytes()[:len(seen)] == seen, f"{file.name}: Pillow reads another thumbnail")


def run(*command, tolerated=None):
    result = subprocess.run([str(c) for c in command], capture_output=True, text=True)
    expect(result.returncode == 0, f"{command[0]} fails: {result.stderr}")
    complaints = [line for line in result.stderr.splitlines() if line and not (tolerated and tolerated in line)]
    expect(not complaints, f"{command[0]} on {command[-1]} complains: {complaints}")
    return result.stdout


def check_with_libtiff(file, size):
    width, height = size
    if height >= 30:
        text = run("tiffinfo", "-D", file)  # reads the strips as well
    else:
        text = run("tiffinfo", file, tolerated="Incorrect count for")
    expect(text.count("TIFF Directory at offset") == 3, f"{file.name}: tiffinfo does not see three directories")
    expect(text.count(f"Image Width: {width} Image Length: {height}") >= 2, f"{file.name}: tiffinfo sees other sizes")
    expect("Image Width: 40 Image Length: 30" in text, f"{file.name}: tiffinfo sees no thumbnail")
    expect("transparency mask" in text, f"{file.name}: tiffinfo sees no mask")
    expect("reduced-resolution image" in text, f"{file.name}: tiffinfo sees no reduced image")


def check_mask_with_libtiff(file, size, mask):
    """tiffcp takes the mask's directory out; as an ordinary bilevel image it must show the mask."""
    copy = file.with_name(file.stem + "-mask.tif")
    run("tiffcp", f"{file},1", copy)
    run("tiffset", "-s", "254", "0", copy)
    run("tiffset", "-s", "262", "1", copy)
    with Image.open(copy) as image:
        expect(image.size == size and mask_bytes(image) == mask, f"{file.name}: libtiff reads another mask")


def check_with_imagemagick(file, size, pixels, mask, thumbnail):
    images = ((0, pixels, len(pixels), "rgb"), (1, mask, len(mask), "gray"), (2, visible(thumbnail, size), 3600, "rgb"))
    for index, expected, length, channels in images:
        result = subprocess.run(["/usr/bin/convert", f"{file}[{index}]", "-depth", "8", f"{channels}:-"],
                                capture_output=True)
        got = result.stdout
        expect(result.returncode == 0, f"{file.name}[{index}]: ImageMagick fails: {result.stderr.decode()}")
        expect(len(got) == length and got[:len(expected)] == expected, f"{file.name}[{index}]: ImageMagick reads other pixels ({len(got)} bytes)")


def main():
    with tempfile.TemporaryDirectory() as name:
        directory = pathlib.Path(name)
        subprocess.run([sys.argv[1], name], check=True)
        for size in SIZES:
            file = directory / f"{size[0]}x{size[1]}.tif"
            pixels, mask, thumbnail = (file.with_suffix(s).read_bytes() for s in (".pixels", ".mask", ".thumbnail"))
            check_with_pillow(file, size, pixels, mask, thumbnail)
            check_with_libtiff(file, size)
            check_mask_with_libtiff(file, size, mask)
            check_with_imagemagick(file, size, pixels, mask, thumbnail)
    for failure in failures:
        print(failure)
    print(f"{len(SIZES)} files, {len(failures)} failures")
    return 1 if failures else 0


sys.exit(main())
