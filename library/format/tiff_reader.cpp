#include "library/format/tiff_reader.h"

#include <algorithm>
#include <cstdlib>

#include "image/pixels/scarce_memory.h"
#include "library/format/row_codec.h"

// What turns stored bytes into pixels: `storedBytes` bytes give `pixels` pixels.
struct RowFormat {
    uint32_t storedBytes;
    uint32_t pixels;
    void (*decode)(uint8_t* to, const uint8_t* from, size_t pixels);
};
static const RowFormat rgbRows = {3, 1, swapRedAndBlue};
static const RowFormat bitRows = {1, 8, unpackMaskRow};

// A multiple of 3, so that a row which is longer can be cut between pixels.
constexpr uint32_t BUFFER_BYTES = 3 * 64 * 1024;

static uint64_t storedRowBytes(const RowFormat& format, int width)
{
    return ((uint64_t)(unsigned)width + format.pixels - 1) / format.pixels * format.storedBytes;
}

// One row that is longer than the buffer.
static bool readLongRow(const ByteSource& source, uint64_t offset, const RowFormat& format, uint8_t* to, int width,
                        uint8_t* buffer)
{
    const uint32_t pixelsAtOnce = BUFFER_BYTES / format.storedBytes * format.pixels;
    for (uint32_t left = (uint32_t)width; left > 0;) {
        const uint32_t some = std::min(left, pixelsAtOnce);
        const uint32_t bytes = (uint32_t)storedRowBytes(format, (int)some);
        if (!readAt(source, offset, buffer, bytes)) return false;
        format.decode(to, buffer, some);
        to += (size_t)some * 3;
        offset += bytes;
        left -= some;
    }
    return true;
}

static bool readRowsInto(const ByteSource& source, uint64_t offset, const RowFormat& format, const BitsView& view,
                         uint8_t* buffer)
{
    const uint64_t rowBytes = storedRowBytes(format, view.width);
    const int rowsAtOnce = (int)std::min<uint64_t>(BUFFER_BYTES / rowBytes, (unsigned)view.height);
    if (rowsAtOnce == 0) {
        for (int y = 0; y < view.height; ++y, offset += rowBytes) {
            if (!readLongRow(source, offset, format, rowOf(view, y), view.width, buffer)) return false;
        }
        return true;
    }
    for (int y = 0; y < view.height;) {
        const int rows = std::min(rowsAtOnce, view.height - y);
        if (!readAt(source, offset, buffer, (uint32_t)(rowBytes * (unsigned)rows))) return false;
        for (int i = 0; i < rows; ++i)
            format.decode(rowOf(view, y + i), buffer + rowBytes * i, (size_t)view.width);
        y += rows;
        offset += rowBytes * (unsigned)rows;
    }
    return true;
}

static bool readRows(const ByteSource& source, uint64_t offset, const RowFormat& format, const BitsView& view)
{
    if (!liesInside(source, offset, storedRowBytes(format, view.width) * (unsigned)view.height)) return false;
    uint8_t* const buffer = (uint8_t*)takeMemory(BUFFER_BYTES);
    const bool done = buffer && readRowsInto(source, offset, format, view, buffer);
    free(buffer);
    return done;
}

bool readThumbnailPixels(const ByteSource& source, const SelectionDescription& description, const BitsView& thumbnail)
{
    return readRows(source, description.thumbnailOffset, rgbRows, thumbnail);
}

bool readSelectionPixels(const ByteSource& source, const SelectionDescription& description, const BitsView& image)
{
    return readRows(source, description.pixelOffset, rgbRows, image);
}

bool readSelectionMaskPixels(const ByteSource& source, const SelectionDescription& description, const BitsView& mask)
{
    return readRows(source, description.maskOffset, bitRows, mask);
}

bool hasMaskBytes(const ByteSource& source, const SelectionDescription& description)
{
    const uint64_t bytes = maskRowBytes((unsigned)description.width) * (unsigned)description.height;
    return liesInside(source, description.maskOffset, bytes);
}
