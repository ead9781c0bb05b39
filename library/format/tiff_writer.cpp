#include "library/format/tiff_writer.h"

#include <cstdlib>
#include <cstring>

#include "image/pixels/scarce_memory.h"
#include "library/format/row_codec.h"
#include "library/format/thumbnail.h"

// Bytes are gathered into pieces of this size; the longest row (65535 pixels) fits.
constexpr uint32_t BUFFER_BYTES = 256 * 1024;

struct Output {
    const ByteSink* sink;
    uint8_t* buffer;
    uint32_t used;
};

static bool flush(Output& out)
{
    const bool taken = out.used == 0 || out.sink->write(out.sink->context, out.buffer, out.used);
    out.used = 0;
    return taken;
}

// Room for the next `count` bytes, at most BUFFER_BYTES. Null when what was gathered could not be written.
static uint8_t* nextBytes(Output& out, uint32_t count)
{
    if (count > BUFFER_BYTES - out.used && !flush(out)) return nullptr;
    uint8_t* const bytes = out.buffer + out.used;
    out.used += count;
    return bytes;
}

static uint8_t* putShort(uint8_t* at, uint32_t value)
{
    at[0] = (uint8_t)value;
    at[1] = (uint8_t)(value >> 8);
    return at + 2;
}

static uint8_t* putLong(uint8_t* at, uint32_t value)
{
    return putShort(putShort(at, value), value >> 16);
}

// One line a directory entry, one column of values an image; 0 where the value depends on the selection.
struct EntryRule {
    uint16_t tag, type;
    uint32_t count[PART_COUNT];
    uint32_t value[PART_COUNT];
};
static const EntryRule entryRules[DIRECTORY_ENTRIES] = {
    {TAG_NEW_SUBFILE_TYPE, TYPE_LONG, {1, 1, 1}, {0, 4, 1}},
    {TAG_IMAGE_WIDTH, TYPE_SHORT, {1, 1, 1}, {0, 0, THUMBNAIL_WIDTH}},
    {TAG_IMAGE_LENGTH, TYPE_SHORT, {1, 1, 1}, {0, 0, THUMBNAIL_HEIGHT}},
    {TAG_BITS_PER_SAMPLE, TYPE_SHORT, {3, 1, 3}, {0, 1, 0}},
    {TAG_COMPRESSION, TYPE_SHORT, {1, 1, 1}, {1, 1, 1}},
    {TAG_PHOTOMETRIC, TYPE_SHORT, {1, 1, 1}, {2, 4, 2}},
    {TAG_STRIP_OFFSETS, TYPE_LONG, {1, 1, 1}, {0, 0, 0}},
    {TAG_SAMPLES_PER_PIXEL, TYPE_SHORT, {1, 1, 1}, {3, 1, 3}},
    {TAG_ROWS_PER_STRIP, TYPE_SHORT, {1, 1, 1}, {0, 0, 0}},
    {TAG_STRIP_BYTE_COUNTS, TYPE_LONG, {1, 1, 1}, {0, 0, 0}},
    {TAG_X_RESOLUTION, TYPE_RATIONAL, {1, 1, 1}, {0, 0, 0}},
    {TAG_Y_RESOLUTION, TYPE_RATIONAL, {1, 1, 1}, {0, 0, 0}},
    {TAG_RESOLUTION_UNIT, TYPE_SHORT, {1, 1, 1}, {UNIT_INCH, UNIT_INCH, UNIT_INCH}},
};

// The value that depends on the selection, 0 for a tag whose value is fixed.
static uint32_t variableValue(uint16_t tag, const PartPlace& place, int width, int height)
{
    switch (tag) {
    case TAG_IMAGE_WIDTH: return (uint32_t)width;
    case TAG_IMAGE_LENGTH:
    case TAG_ROWS_PER_STRIP:  // the thumbnail names the selection's height, too: readers find it so in every file
        return (uint32_t)height;
    case TAG_BITS_PER_SAMPLE: return place.sampleBits;
    case TAG_STRIP_OFFSETS: return place.strip;
    case TAG_STRIP_BYTE_COUNTS: return place.stripBytes;
    case TAG_X_RESOLUTION: return place.xResolution;
    case TAG_Y_RESOLUTION: return place.xResolution + RATIONAL_BYTES;
    default: return 0;
    }
}

static bool writeDirectory(Output& out, SelectionPart part, const PartPlace& place, const BitsView& size)
{
    uint8_t* at = nextBytes(out, DIRECTORY_BYTES);
    if (!at) return false;
    at = putShort(at, DIRECTORY_ENTRIES);
    for (const EntryRule& rule : entryRules) {
        const uint32_t fixed = rule.value[part];
        at = putShort(putShort(at, rule.tag), rule.type);
        at = putLong(at, rule.count[part]);
        at = putLong(at, fixed ? fixed : variableValue(rule.tag, place, size.width, size.height));
    }
    putLong(at, place.nextDirectory);
    return true;
}

static bool writeSampleBits(Output& out)
{
    uint8_t* const at = nextBytes(out, SAMPLE_BITS_BYTES);
    if (!at) return false;
    putShort(putShort(putShort(at, 8), 8), 8);
    return true;
}

static bool writeResolution(Output& out, Resolution resolution)
{
    uint8_t* const at = nextBytes(out, 2 * RATIONAL_BYTES);
    if (!at) return false;
    putLong(putLong(at, dotsPerInch(resolution.x)), 1);
    putLong(putLong(at + RATIONAL_BYTES, dotsPerInch(resolution.y)), 1);
    return true;
}

static bool writeFileHeader(Output& out)
{
    uint8_t* const at = nextBytes(out, TIFF_HEADER_BYTES);
    if (!at) return false;
    memcpy(at, "II", 2);
    putLong(putShort(at + 2, 42), TIFF_HEADER_BYTES);
    return true;
}

static bool writePixelRows(Output& out, const BitsView& image)
{
    for (int y = 0; y < image.height; ++y) {
        uint8_t* const row = nextBytes(out, (uint32_t)image.width * 3);
        if (!row) return false;
        swapRedAndBlue(row, rowOf(image, y), (size_t)image.width);
    }
    return true;
}

static bool writeMaskRows(Output& out, const BitsView& mask)
{
    for (int y = 0; y < mask.height; ++y) {
        uint8_t* const row = nextBytes(out, (uint32_t)maskRowBytes((unsigned)mask.width));
        if (!row) return false;
        packMaskRow(row, rowOf(mask, y), (size_t)mask.width);
    }
    return true;
}

static bool writeThumbnailRows(Output& out, const SelectionImages& selection)
{
    uint8_t rgb[THUMBNAIL_BYTES];
    uint8_t* const rows = nextBytes(out, sizeof rgb);
    if (!rows) return false;
    drawThumbnail(rgb, selection.image, selection.mask);
    memcpy(rows, rgb, sizeof rgb);
    return true;
}

static bool writeParts(Output& out, const SelectionImages& selection, const PartPlace (&parts)[PART_COUNT])
{
    const BitsView& size = selection.image;
    return writeFileHeader(out) && writeDirectory(out, PART_PIXELS, parts[PART_PIXELS], size) && writeSampleBits(out) &&
           writeResolution(out, selection.imageResolution) && writePixelRows(out, selection.image) &&

           writeDirectory(out, PART_MASK, parts[PART_MASK], size) && writeResolution(out, selection.maskResolution) &&
           writeMaskRows(out, selection.mask) &&

           writeDirectory(out, PART_THUMBNAIL, parts[PART_THUMBNAIL], size) && writeSampleBits(out) &&
           writeResolution(out, selection.maskResolution) && writeThumbnailRows(out, selection) && flush(out);
}

bool writeSelectionImages(const ByteSink& sink, const SelectionImages& selection)
{
    PartPlace parts[PART_COUNT];
    if (selection.image.width != selection.mask.width || selection.image.height != selection.mask.height) return false;
    if (!placeSelectionParts(selection.image.width, selection.image.height, parts)) return false;
    Output out = {&sink, (uint8_t*)takeMemory(BUFFER_BYTES), 0};
    if (!out.buffer) return false;
    const bool written = writeParts(out, selection, parts);
    free(out.buffer);
    return written;
}
