#include "host/photo/exif_orientation.h"

#include <cstring>

struct Bytes {
    const uint8_t* start;
    size_t size;
    bool bigEndian;
};

// A number of 2 or 4 bytes; 0 outside.
static uint32_t numberAt(const Bytes& bytes, size_t at, int length)
{
    if (at > bytes.size || bytes.size - at < (size_t)length) return 0;
    uint32_t value = 0;
    for (int i = 0; i < length; ++i) {
        const int shift = 8 * (bytes.bigEndian ? length - 1 - i : i);
        value |= (uint32_t)bytes.start[at + i] << shift;
    }
    return value;
}

// directory: from its number of entries on.
static int orientationInDirectory(const Bytes& directory)
{
    const uint32_t entries = numberAt(directory, 0, 2);
    for (uint32_t i = 0; i < entries; ++i) {
        const size_t entry = 2 + 12 * (size_t)i;
        if (numberAt(directory, entry, 2) != 274) continue;
        const uint32_t value = numberAt(directory, entry + 8, 2);
        return value >= 1 && value <= 8 ? (int)value : 1;
    }
    return 1;
}

// tiff: the whole structure behind the "Exif" mark.
static int orientationInTiff(const uint8_t* tiff, size_t size)
{
    const size_t place = size < TIFF_HEAD_SIZE ? 0 : tiffDirectoryPlace(tiff);
    return place && place < size ? tiffOrientation(tiff, tiff + place, size - place) : 1;
}

int jpegOrientation(const uint8_t* bytes, size_t size)
{
    const Bytes file = {bytes, size, true};
    if (numberAt(file, 0, 2) != 0xFFD8) return 1;
    size_t at = 2;
    while (at + 4 <= size && bytes[at] == 0xFF) {
        const int marker = bytes[at + 1];
        const size_t length = numberAt(file, at + 2, 2);  // counts itself, not the marker
        if (marker == 0xDA || length < 2 || length > size - at - 2) return 1;
        const uint8_t* content = bytes + at + 4;
        if (marker == 0xE1 && length >= 8 && memcmp(content, "Exif\0\0", 6) == 0)
            return orientationInTiff(content + 6, length - 8);
        at += 2 + length;
    }
    return 1;
}

uint32_t tiffDirectoryPlace(const uint8_t* head)
{
    const bool bigEndian = memcmp(head, "MM\0*", 4) == 0;
    if (!bigEndian && memcmp(head, "II*\0", 4) != 0) return 0;
    return numberAt({head, TIFF_HEAD_SIZE, bigEndian}, 4, 4);
}

int tiffOrientation(const uint8_t* head, const uint8_t* bytes, size_t size)
{
    return orientationInDirectory({bytes, size, head[0] == 'M'});
}
