#include "tests/fuzz/readers.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "host/arguments.h"
#include "host/photo/exif_edit.h"
#include "host/photo/exif_orientation.h"
#include "host/photo/gif_canvas.h"
#include "host/photo/photo_rows.h"
#include "library/format/list_file.h"
#include "tests/reference/memory_file.h"
#include "tests/reference/tiff_reference.h"
#include "tools/settings/settings_text.h"

typedef std::vector<uint8_t> Bytes;
typedef std::vector<Bytes> Seeds;

static void expect(bool holds, const char* promise)
{
    if (holds) return;
    fprintf(stderr, "broken promise: %s\n", promise);
    abort();
}

static Bytes bytesOf(const char* text)
{
    return Bytes(text, text + strlen(text));
}

// ---- the selection files

static void readSelection(const uint8_t* bytes, size_t size)
{
    MemoryFile file;
    file.bytes.assign(bytes, bytes + size);
    SelectionDescription d = {};
    if (!readSelectionDescription(file.source(), &d)) return;
    expect(d.width >= 1 && d.height >= 1, "sides of 1 and more");
    expect((uint64_t)d.width * (uint64_t)d.height * 3 <= size, "no more pixels than the file holds");
    MemoryImage image(d.width, d.height), thumbnail(THUMBNAIL_WIDTH, THUMBNAIL_HEIGHT);
    readThumbnailPixels(file.source(), d, thumbnail.view);
    expect(readSelectionPixels(file.source(), d, image.view), "an accepted file holds its pixels");
    const bool mask = hasMaskBytes(file.source(), d);
    expect(readSelectionMaskPixels(file.source(), d, image.view) == mask, "a mask is there or not");
    expect(!file.outside, "no byte behind the end is asked for");
    expect(file.bytesRead <= size * 4 + 4096, "the work is bounded by the file's size");
}

static Seeds selectionSeeds()
{
    Seeds seeds;
    for (const bool bigEndian : {false, true})
        for (const int width : {1, 17, 40})
            seeds.push_back(referenceTiff(randomSelection((unsigned)width, width, width / 2 + 1), bigEndian));
    return seeds;
}

// ---- list and settings

static void readList(const uint8_t* bytes, size_t size)
{
    const std::unique_ptr<char[]> text(new char[size]);  // of just that size: what lies behind is seen
    memcpy(text.get(), bytes, size);
    const size_t length = size < (size_t)COUNTER_DIGITS ? size : (size_t)COUNTER_DIGITS;
    const int number = parseCounter(text.get(), length);
    expect(number >= 0 && number <= 999, "a counter of three digits");
    char line[LIST_TEXT_SIZE];
    formatCounter(line, number + 1);
    formatSelectionName(line, number + 1);
    formatListLine(line, number + 1);
}

static Seeds listSeeds()
{
    return {bytesOf("001\r\nseld_001.tif\r\n"), bytesOf("999\r\n"), bytesOf("1x")};
}

static std::unique_ptr<char[]> textOf(const uint8_t* bytes, size_t size)
{
    const size_t length = size < SETTINGS_VALUE_SIZE ? size : SETTINGS_VALUE_SIZE - 1;
    std::unique_ptr<char[]> text(new char[length + 1]);
    memcpy(text.get(), bytes, length);
    text[length] = 0;
    return text;
}

static void readToolValue(const uint8_t* bytes, size_t size, void (*parse)(const char*, ToolSettings&))
{
    const std::unique_ptr<char[]> text = textOf(bytes, size);
    ToolSettings settings = {};
    parse(text.get(), settings);
    char value[SETTINGS_VALUE_SIZE];
    formatToolValue(value, sizeof value, settings);  // numbers as read, not yet within their digits
    expect(strnlen(value, sizeof value) < sizeof value, "a value ends");
}

static void readCurrentTool(const uint8_t* bytes, size_t size)
{
    readToolValue(bytes, size, parseToolValue);
}

static void readLegacyTool(const uint8_t* bytes, size_t size)
{
    readToolValue(bytes, size, parseLegacyToolValue);
}

static Seeds toolSeeds()
{
    return {bytesOf("001,001,017,017,001,001,001,001,000,081,12632319"), bytesOf("-99,99999999999,,x"), {}};
}

static void readFontValue(const uint8_t* bytes, size_t size)
{
    const std::unique_ptr<char[]> text = textOf(bytes, size);
    FontSettings font = {};
    parseFontValue(text.get(), font);
    expect(strnlen(font.face, sizeof font.face) < sizeof font.face, "a face name ends");
    char value[SETTINGS_VALUE_SIZE];
    formatFontValue(value, sizeof value, font);
    expect(strnlen(value, sizeof value) < sizeof value, "a value ends");
}

static Seeds fontSeeds()
{
    return {bytesOf("031,400,002,034,001,000,000,000,034,Courier New"), bytesOf("031,400,002")};
}

// ---- the host's photos

// Little-endian camera data: one directory with orientation and size, a second with a preview.
static Bytes exifSeed(const char* order, uint16_t orientation)
{
    const bool big = order[0] == 'M';
    Bytes bytes(order, order + 2);
    const auto put = [&](uint32_t value, int size) {
        for (int i = 0; i < size; ++i)
            bytes.push_back((uint8_t)(value >> (8 * (big ? size - 1 - i : i))));
    };
    const auto entry = [&](uint32_t tag, uint32_t type, uint32_t value) {
        put(tag, 2), put(type, 2), put(1, 4);
        put(value, type == 3 ? 2 : 4);
        if (type == 3) put(0, 2);
    };
    put(42, 2), put(8, 4), put(3, 2);
    entry(0x100, 4, 640), entry(0x112, 3, orientation), entry(0x8769, 4, 80);
    put(50, 4), put(2, 2);
    entry(0x201, 4, 110), entry(0x202, 4, 8);
    put(0, 4), put(2, 2);
    entry(0xA002, 4, 640), entry(0xA003, 4, 480);
    put(0, 4);
    bytes.insert(bytes.end(), {0xFF, 0xD8, 0xFF, 0xDB, 0, 0, 0xFF, 0xD9});
    return bytes;
}

static void readExif(const uint8_t* bytes, size_t size)
{
    const int orientation = exifOrientation(bytes, size);
    expect(orientation >= 1 && orientation <= 8, "an orientation from 1 to 8");
    Bytes changed(bytes, bytes + size);
    noteUprightSize(changed.data(), size, 6000, 4000);
    const ExifThumbnail thumbnail = findThumbnail(changed.data(), size);
    expect(thumbnail.size <= size && thumbnail.at <= size - thumbnail.size, "a preview lies inside");
    const Bytes small(thumbnail.size, 0x55);
    replaceThumbnail(changed.data(), size, small.data(), small.size() / 2);
    replaceThumbnail(changed.data(), size, nullptr, 0);
}

static Seeds exifSeeds()
{
    return {exifSeed("II", 6), exifSeed("MM", 3)};
}

static void readJpegHead(const uint8_t* bytes, size_t size)
{
    const int orientation = jpegOrientation(bytes, size);
    expect(orientation >= 1 && orientation <= 8, "an orientation from 1 to 8");
}

static Seeds jpegSeeds()
{
    Seeds seeds;
    for (const char* order : {"II", "MM"}) {
        const Bytes exif = exifSeed(order, 8);
        const size_t length = exif.size() + 8;
        Bytes bytes = {0xFF, 0xD8, 0xFF, 0xE0, 0, 4, 0, 0, 0xFF, 0xE1, (uint8_t)(length >> 8), (uint8_t)length};
        bytes.insert(bytes.end(), {'E', 'x', 'i', 'f', 0, 0});
        bytes.insert(bytes.end(), exif.begin(), exif.end());
        seeds.push_back(bytes);
    }
    return seeds;
}

static void readTiffHead(const uint8_t* bytes, size_t size)
{
    if (size < TIFF_HEAD_SIZE) return;
    const uint32_t place = tiffDirectoryPlace(bytes);
    if (place == 0 || place > size) return;
    const int orientation = tiffOrientation(bytes, bytes + place, size - place);
    expect(orientation >= 1 && orientation <= 8, "an orientation from 1 to 8");
}

static void readXmp(const uint8_t* bytes, size_t size)
{
    Bytes changed(bytes, bytes + size);
    noteUprightInXmp(changed.data(), size);
}

static Seeds xmpSeeds()
{
    return {bytesOf("<x tiff:Orientation=\"6\"/>"), bytesOf("<tiff:Orientation>6</tiff:Orientation>")};
}

static void readResources(const uint8_t* bytes, size_t size)
{
    Bytes segment(bytes, bytes + size);
    dropResourceThumbnails(&segment);
    expect(segment.size() <= size, "a segment does not grow");
}

static Seeds resourceSeeds()
{
    Bytes bytes = bytesOf("Photoshop 3.0");
    bytes.insert(bytes.end(), {0, '8', 'B', 'I', 'M', 4, 0x0C, 0, 0, 0, 0, 0, 4, 1, 2, 3, 4});
    bytes.insert(bytes.end(), {'8', 'B', 'I', 'M', 4, 4, 3, 'a', 'b', 'c', 0, 0, 0, 3, 1, 2, 3, 0});
    return {bytes};
}

static void readGif(const uint8_t* bytes, size_t size)
{
    const int width = size > 0 ? bytes[size - 1] + 1 : 1, height = size > 1 ? bytes[size - 2] + 1 : 1;
    const GifCanvas canvas = gifCanvas(bytes, size, width, height);
    expect(canvas.left >= 0 && canvas.left <= canvas.width - width, "the picture lies inside across");
    expect(canvas.top >= 0 && canvas.top <= canvas.height - height, "the picture lies inside down");
}

static Seeds gifSeeds()
{
    Bytes bytes = bytesOf("GIF89a");
    bytes.insert(bytes.end(), {10, 0, 10, 0, 0x80, 0, 0, 1, 2, 3, 4, 5, 6});
    bytes.insert(bytes.end(), {0x21, 0xF9, 4, 0, 0, 0, 0, 0, 0x2C, 2, 0, 3, 0, 4, 0, 5, 0, 0, 2, 0, 4, 3});
    return {bytes};
}

// Sides, orientation and a band of rows from the bytes; the rows are as long as they say.
static void placeRows(const uint8_t* bytes, size_t size)
{
    if (size < 5) return;
    const int width = bytes[0] % 64 + 1, height = bytes[1] % 64 + 1, first = bytes[2] % height;
    const int rows = bytes[3] % (height - first) + 1, orientation = bytes[4] % 10;
    const bool swapped = orientationSwapsSides(orientation);
    const uint32_t packed = packedPhotoSize(swapped ? height : width, swapped ? width : height);
    expect(packed > 40, "a small picture has a size");
    Bytes source((size_t)width * 4 * (size_t)rows), bits(packed - 40);
    for (size_t i = 0; i < source.size(); ++i)
        source[i] = bytes[i % size];
    placeRowsOverWhite({bits.data(), width, height, orientation}, source.data(), width * 4, first, rows);
    Bytes bgr((size_t)width * 3 * (size_t)rows);
    gatherRows({bits.data(), width, height, orientation}, first, rows, bgr.data(), width * 3);
}

static Seeds rowSeeds()
{
    Seeds seeds;
    for (uint8_t orientation = 0; orientation < 10; ++orientation)
        seeds.push_back({12, 8, 2, 3, orientation, 200, 100, 50});
    return seeds;
}

static void readArguments(const uint8_t* bytes, size_t size)
{
    std::vector<std::wstring> words(1);
    for (size_t i = 0; i < size; ++i) {
        if (bytes[i] == '\n')
            words.push_back(L"");
        else
            words.back().push_back((wchar_t)bytes[i]);
    }
    parseArguments(words);
}

static Seeds argumentSeeds()
{
    return {bytesOf("--overwrite\nphoto.jpg\nout.png"), bytesOf("--\n--help"), bytesOf("-h")};
}

const FuzzReader fuzzReaders[] = {
    {"selection", readSelection, selectionSeeds},
    {"list", readList, listSeeds},
    {"tool", readCurrentTool, toolSeeds},
    {"legacy tool", readLegacyTool, toolSeeds},
    {"font", readFontValue, fontSeeds},
    {"exif", readExif, exifSeeds},
    {"jpeg", readJpegHead, jpegSeeds},
    {"tiff", readTiffHead, exifSeeds},
    {"xmp", readXmp, xmpSeeds},
    {"resources", readResources, resourceSeeds},
    {"gif", readGif, gifSeeds},
    {"rows", placeRows, rowSeeds},
    {"arguments", readArguments, argumentSeeds},
};
const int fuzzReaderCount = (int)(sizeof fuzzReaders / sizeof fuzzReaders[0]);
