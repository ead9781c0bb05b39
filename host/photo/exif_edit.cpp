#include "host/photo/exif_edit.h"

#include "host/photo/exif_orientation.h"

#include <algorithm>
#include <cstring>

constexpr int TAG_ORIENTATION = 274, TAG_EXIF_DIRECTORY = 0x8769, TAG_WIDTH = 0xA002, TAG_HEIGHT = 0xA003;
constexpr int TAG_THUMBNAIL = 0x201, TAG_THUMBNAIL_SIZE = 0x202;

struct ExifBlock {
    uint8_t* bytes;
    size_t size;
    bool bigEndian;
};

static uint32_t get(const ExifBlock& block, size_t at, int length)
{
    if (at > block.size || block.size - at < (size_t)length) return 0;
    uint32_t value = 0;
    for (int i = 0; i < length; ++i)
        value |= (uint32_t)block.bytes[at + i] << 8 * (block.bigEndian ? length - 1 - i : i);
    return value;
}

static void put(const ExifBlock& block, size_t at, int length, uint32_t value)
{
    if (at > block.size || block.size - at < (size_t)length) return;
    for (int i = 0; i < length; ++i)
        block.bytes[at + i] = (uint8_t)(value >> 8 * (block.bigEndian ? length - 1 - i : i));
}

static ExifBlock blockOf(const uint8_t* exif, size_t size)
{
    return {const_cast<uint8_t*>(exif), size, size > 0 && exif[0] == 'M'};
}

static size_t firstDirectory(const ExifBlock& block)
{
    const size_t at = block.size < TIFF_HEAD_SIZE ? 0 : tiffDirectoryPlace(block.bytes);
    return at < block.size ? at : 0;
}

// The place of a tag's entry in a directory; 0 when it is not there.
static size_t findEntry(const ExifBlock& block, size_t directory, int tag)
{
    if (!directory) return 0;
    const uint32_t count = get(block, directory, 2);
    for (uint32_t i = 0; i < count; ++i) {
        const size_t entry = directory + 2 + 12 * (size_t)i;
        if (entry + 12 > block.size) return 0;
        if (get(block, entry, 2) == (uint32_t)tag) return entry;
    }
    return 0;
}

// Entries that hold one number hold it themselves, in two bytes or in four.
static uint32_t entryNumber(const ExifBlock& block, size_t entry)
{
    return entry ? get(block, entry + 8, get(block, entry + 2, 2) == 3 ? 2 : 4) : 0;
}

static void setEntryNumber(const ExifBlock& block, size_t entry, uint32_t value)
{
    if (!entry || get(block, entry + 4, 4) != 1) return;
    const uint32_t type = get(block, entry + 2, 2);
    if (type == 4 || (type == 3 && value <= 0xFFFF)) put(block, entry + 8, type == 3 ? 2 : 4, value);
}

// Where the link to the directory behind the first one stands.
static size_t secondLink(const ExifBlock& block)
{
    const size_t first = firstDirectory(block);
    return first ? first + 2 + 12 * (size_t)get(block, first, 2) : 0;
}

static size_t secondDirectory(const ExifBlock& block)
{
    const size_t link = secondLink(block);
    return link ? get(block, link, 4) : 0;
}

void noteUprightSize(uint8_t* exif, size_t size, uint32_t width, uint32_t height)
{
    const ExifBlock block = blockOf(exif, size);
    const size_t first = firstDirectory(block);
    setEntryNumber(block, findEntry(block, first, TAG_ORIENTATION), 1);
    // The preview is written upright as well.
    setEntryNumber(block, findEntry(block, secondDirectory(block), TAG_ORIENTATION), 1);
    const size_t camera = entryNumber(block, findEntry(block, first, TAG_EXIF_DIRECTORY));
    setEntryNumber(block, findEntry(block, camera, TAG_WIDTH), width);
    setEntryNumber(block, findEntry(block, camera, TAG_HEIGHT), height);
}

ExifThumbnail findThumbnail(const uint8_t* exif, size_t size)
{
    const ExifBlock block = blockOf(exif, size);
    const size_t second = secondDirectory(block);
    const size_t at = entryNumber(block, findEntry(block, second, TAG_THUMBNAIL));
    const size_t length = entryNumber(block, findEntry(block, second, TAG_THUMBNAIL_SIZE));
    if (!at || at >= size || length > size - at) return {};
    return {at, length};
}

void replaceThumbnail(uint8_t* exif, size_t size, const uint8_t* thumbnail, size_t length)
{
    const ExifBlock block = blockOf(exif, size);
    const ExifThumbnail old = findThumbnail(exif, size);
    if (length > old.size) length = 0;
    if (old.size) memset(exif + old.at, 0, old.size);
    if (length) {
        memcpy(exif + old.at, thumbnail, length);
        setEntryNumber(block, findEntry(block, secondDirectory(block), TAG_THUMBNAIL_SIZE), (uint32_t)length);
    } else if (const size_t link = secondLink(block)) {
        put(block, link, 4, 0);
    }
}

int exifOrientation(const uint8_t* exif, size_t size)
{
    const ExifBlock block = blockOf(exif, size);
    const uint32_t value = entryNumber(block, findEntry(block, firstDirectory(block), TAG_ORIENTATION));
    return value >= 1 && value <= 8 ? (int)value : 1;
}

void noteUprightInXmp(uint8_t* xmp, size_t size)
{
    static const char name[] = "tiff:Orientation";
    for (uint8_t* at = xmp; (at = std::search(at, xmp + size, name, name + sizeof name - 1)) != xmp + size;) {
        at += sizeof name - 1;
        uint8_t* digit = at;
        while (digit < xmp + size &&
               (*digit == '=' || *digit == '"' || *digit == '\'' || *digit == '>' || *digit == ' '))
            digit++;
        if (digit > at && digit < xmp + size && *digit >= '1' && *digit <= '8') *digit = '1';
    }
}

void dropResourceThumbnails(std::vector<uint8_t>* segment)
{
    const ExifBlock block = {segment->data(), segment->size(), true};
    std::vector<uint8_t> kept;
    size_t at = 14;  // behind "Photoshop 3.0" and its zero
    kept.assign(segment->begin(), segment->begin() + (ptrdiff_t)std::min(at, segment->size()));
    while (at + 12 <= block.size && memcmp(block.bytes + at, "8BIM", 4) == 0) {
        const size_t name = ((size_t)block.bytes[at + 6] + 2) & ~(size_t)1;
        const size_t length = get(block, at + 6 + name, 4);
        const size_t end = at + 6 + name + 4 + ((length + 1) & ~(size_t)1);
        if (length > block.size || end > block.size + 1) break;
        const uint32_t kind = get(block, at + 4, 2);
        if (kind != 0x409 && kind != 0x40C)
            kept.insert(kept.end(), segment->begin() + (ptrdiff_t)at,
                        segment->begin() + (ptrdiff_t)std::min(end, block.size));
        at = std::min(end, block.size);
    }
    if (at < block.size) kept.insert(kept.end(), segment->begin() + (ptrdiff_t)at, segment->end());
    *segment = kept;
}
