#include "library/format/tiff_description.h"

#include <algorithm>
#include <cstring>

// ---- numbers in the file's byte order ----

struct ByteOrder {
    bool bigEndian;
};

static uint32_t getShort(ByteOrder order, const uint8_t* at)
{
    return order.bigEndian ? (uint32_t)(at[0] << 8 | at[1]) : (uint32_t)(at[1] << 8 | at[0]);
}

static uint32_t getLong(ByteOrder order, const uint8_t* at)
{
    return order.bigEndian ? getShort(order, at) << 16 | getShort(order, at + 2)
                           : getShort(order, at + 2) << 16 | getShort(order, at);
}

// ---- the directory ----

// The tags that mean something here, and the bit under which a directory's entries are remembered.
enum KnownTag {
    KNOWN_SUBFILE_TYPE,
    KNOWN_WIDTH,
    KNOWN_LENGTH,
    KNOWN_BITS,
    KNOWN_COMPRESSION,
    KNOWN_PHOTOMETRIC,
    KNOWN_STRIP_OFFSET,
    KNOWN_SAMPLES,
    KNOWN_STRIP_BYTES,
    KNOWN_X_RESOLUTION,
    KNOWN_Y_RESOLUTION,
    KNOWN_UNIT,
    KNOWN_COUNT
};
static const struct {
    uint16_t tag;
    bool needed;
} knownTags[KNOWN_COUNT] = {
    {TAG_NEW_SUBFILE_TYPE, false}, {TAG_IMAGE_WIDTH, true},   {TAG_IMAGE_LENGTH, true},  {TAG_BITS_PER_SAMPLE, true},
    {TAG_COMPRESSION, true},       {TAG_PHOTOMETRIC, true},   {TAG_STRIP_OFFSETS, true}, {TAG_SAMPLES_PER_PIXEL, true},
    {TAG_STRIP_BYTE_COUNTS, true}, {TAG_X_RESOLUTION, false}, {TAG_Y_RESOLUTION, false}, {TAG_RESOLUTION_UNIT, false},
};

struct Entry {
    bool present;
    uint16_t type;
    uint32_t count;
    uint8_t value[4];  // as in the file
};

struct Directory {
    ByteOrder order;
    Entry entries[KNOWN_COUNT];
    uint32_t next;
};

// A tag given twice: the last one counts.
static void rememberEntry(Directory* directory, const uint8_t* bytes)
{
    const uint32_t tag = getShort(directory->order, bytes);
    for (int i = 0; i < KNOWN_COUNT; ++i) {
        if (knownTags[i].tag != tag) continue;
        Entry* const entry = &directory->entries[i];
        entry->present = true;
        entry->type = (uint16_t)getShort(directory->order, bytes + 2);
        entry->count = getLong(directory->order, bytes + 4);
        memcpy(entry->value, bytes + 8, 4);
    }
}

// Entries are read some at a time: there may be 65535 of them.
static bool readEntries(const ByteSource& source, uint64_t offset, uint32_t count, Directory* directory)
{
    const uint32_t entriesAtOnce = 64;
    uint8_t bytes[entriesAtOnce * ENTRY_BYTES];
    if (!liesInside(source, offset, (uint64_t)count * ENTRY_BYTES)) return false;
    while (count > 0) {
        const uint32_t some = std::min(count, entriesAtOnce);
        if (!readAt(source, offset, bytes, some * ENTRY_BYTES)) return false;
        for (uint32_t i = 0; i < some; ++i)
            rememberEntry(directory, bytes + i * ENTRY_BYTES);
        offset += some * ENTRY_BYTES;
        count -= some;
    }
    return true;
}

static bool readByteOrder(const uint8_t* header, ByteOrder* order)
{
    order->bigEndian = header[0] == 'M';
    return (header[0] == 'I' && header[1] == 'I') || (header[0] == 'M' && header[1] == 'M');
}

static bool readFirstDirectory(const ByteSource& source, Directory* directory)
{
    uint8_t header[TIFF_HEADER_BYTES], count[2], next[4];
    if (!readAt(source, 0, header, sizeof header) || !readByteOrder(header, &directory->order)) return false;
    const uint64_t offset = getLong(directory->order, header + 4);
    if (offset == 0 || !readAt(source, offset, count, sizeof count)) return false;
    const uint32_t entries = getShort(directory->order, count);
    if (!readEntries(source, offset + 2, entries, directory)) return false;
    if (!readAt(source, offset + 2 + (uint64_t)entries * ENTRY_BYTES, next, sizeof next)) return false;
    directory->next = getLong(directory->order, next);
    return true;
}

// ---- values ----

// Reads the first `bytes` bytes of an entry's values, never more, whatever its count says. Values of up to
// four bytes lie in the entry itself, others at the offset that it holds.
static bool readValueBytes(const ByteSource& source, const Directory& directory, const Entry& entry, uint8_t* bytes,
                           uint32_t count)
{
    const uint64_t wholeSize = (uint64_t)entry.count * tiffTypeSize(entry.type);
    if (wholeSize < count) return false;
    if (wholeSize > sizeof entry.value) return readAt(source, getLong(directory.order, entry.value), bytes, count);
    memcpy(bytes, entry.value, count);
    return true;
}

// The first value of an entry. False when the entry is missing, holds none, or its type is no whole number.
static bool firstNumber(const ByteSource& source, const Directory& directory, KnownTag tag, uint32_t* number)
{
    const Entry& entry = directory.entries[tag];
    const uint32_t size = tiffTypeSize(entry.type);
    uint8_t bytes[4];
    if (!entry.present || size == 0 || size > sizeof bytes) return false;
    if (!readValueBytes(source, directory, entry, bytes, size)) return false;
    *number = size == 1 ? bytes[0] : size == 2 ? getShort(directory.order, bytes) : getLong(directory.order, bytes);
    return true;
}

// A single SHORT or LONG.
static bool singleNumber(const ByteSource& source, const Directory& directory, KnownTag tag, uint32_t* number)
{
    const Entry& entry = directory.entries[tag];
    const bool fits = entry.count == 1 && (entry.type == TYPE_SHORT || entry.type == TYPE_LONG);
    return fits && firstNumber(source, directory, tag, number);
}

static bool hasValue(const ByteSource& source, const Directory& directory, KnownTag tag, uint32_t expected)
{
    uint32_t number;
    return firstNumber(source, directory, tag, &number) && number == expected;
}

static bool hasAllNeededTags(const Directory& directory)
{
    for (int i = 0; i < KNOWN_COUNT; ++i) {
        if (knownTags[i].needed && !directory.entries[i].present) return false;
    }
    return true;
}

static bool isMainImage(const ByteSource& source, const Directory& directory)
{
    const Entry& entry = directory.entries[KNOWN_SUBFILE_TYPE];
    if (!entry.present) return true;
    return entry.type == TYPE_LONG && entry.count == 1 && hasValue(source, directory, KNOWN_SUBFILE_TYPE, 0);
}

// Three values; only SHORTs are looked at.
static bool hasThreeBytesPerPixel(const ByteSource& source, const Directory& directory)
{
    const Entry& entry = directory.entries[KNOWN_BITS];
    if (entry.count != 3) return false;
    if (entry.type != TYPE_SHORT) return true;
    uint8_t bytes[SAMPLE_BITS_BYTES];
    if (!readValueBytes(source, directory, entry, bytes, sizeof bytes)) return false;
    for (int i = 0; i < 3; ++i) {
        if (getShort(directory.order, bytes + i * 2) != 8) return false;
    }
    return true;
}

static bool isPlainRgb(const ByteSource& source, const Directory& directory)
{
    return isMainImage(source, directory) && hasThreeBytesPerPixel(source, directory) &&
           hasValue(source, directory, KNOWN_COMPRESSION, 1) && hasValue(source, directory, KNOWN_PHOTOMETRIC, 2) &&
           directory.entries[KNOWN_SAMPLES].count == 1 && hasValue(source, directory, KNOWN_SAMPLES, 3);
}

// A resolution may be missing; one that is there must be readable.
static bool readResolution(const ByteSource& source, const Directory& directory, KnownTag tag, int32_t* result)
{
    const Entry& entry = directory.entries[tag];
    *result = 0;
    if (!entry.present) return true;
    if (entry.type != TYPE_RATIONAL) return false;
    if (tag == KNOWN_Y_RESOLUTION && entry.count != 1) return false;
    uint8_t bytes[RATIONAL_BYTES];
    if (!readValueBytes(source, directory, entry, bytes, sizeof bytes)) return false;
    uint32_t unit = 0;
    firstNumber(source, directory, KNOWN_UNIT, &unit);
    *result = pixelsPerMetre(getLong(directory.order, bytes), getLong(directory.order, bytes + 4), unit);
    return true;
}

// The strip must be exactly as long as width x height pixels and lie inside the file.
static bool readPlaces(const ByteSource& source, const Directory& directory, SelectionDescription* description)
{
    uint32_t width, height, offset, byteCount;
    if (!singleNumber(source, directory, KNOWN_WIDTH, &width) ||
        !singleNumber(source, directory, KNOWN_LENGTH, &height) ||
        !singleNumber(source, directory, KNOWN_STRIP_OFFSET, &offset) ||
        !firstNumber(source, directory, KNOWN_STRIP_BYTES, &byteCount)) {
        return false;
    }
    if (width == 0 || height == 0) return false;
    const uint64_t pixels = (uint64_t)width * height;  // two 32-bit factors fit
    if (pixels > UINT32_MAX / 3 || pixels * 3 != byteCount || !liesInside(source, offset, byteCount)) return false;

    description->width = (int)width;
    description->height = (int)height;
    description->pixelOffset = offset;
    description->maskOffset = description->pixelOffset + byteCount + MASK_HEAD_BYTES;
    description->thumbnailOffset = description->maskOffset + maskRowBytes(width) * height + THUMBNAIL_HEAD_BYTES;
    return true;
}

bool readSelectionDescription(const ByteSource& source, SelectionDescription* description)
{
    Directory directory = {};
    // The mask and the thumbnail are found by the layout, but a file without a second image is none of ours.
    if (!readFirstDirectory(source, &directory) || directory.next == 0) return false;
    return hasAllNeededTags(directory) && isPlainRgb(source, directory) && readPlaces(source, directory, description) &&
           readResolution(source, directory, KNOWN_X_RESOLUTION, &description->xPelsPerMetre) &&
           readResolution(source, directory, KNOWN_Y_RESOLUTION, &description->yPelsPerMetre);
}
