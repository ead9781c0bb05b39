#include "library/format/row_codec.h"

#include <cstring>

#include "image/pixels/pixel_rows.h"

void swapRedAndBlue(uint8_t* to, const uint8_t* from, size_t pixels)
{
    pixelRows().swapRedAndBlue(to, from, pixels);
}

// Sets the bits [first, end) of a row, the first pixel's bit being the highest of byte 0.
static void setBits(uint8_t* bits, size_t first, size_t end)
{
    const uint8_t head = (uint8_t)(0xFF >> (first & 7)), tail = (uint8_t) ~(0xFF >> (end & 7));
    if (first / 8 == end / 8) {
        bits[first / 8] |= head & tail;
        return;
    }
    bits[first / 8] |= head;
    memset(bits + first / 8 + 1, 0xFF, end / 8 - first / 8 - 1);
    if (tail) bits[end / 8] |= tail;
}

// Masks are made of long runs.
void packMaskRow(uint8_t* bits, const uint8_t* maskPixels, size_t pixels)
{
    const PixelRows& rows = pixelRows();
    const ptrdiff_t width = (ptrdiff_t)pixels;
    memset(bits, 0, (pixels + 7) / 8);
    for (ptrdiff_t x = rows.findMask(maskPixels, 0, width, false); x < width;) {
        const ptrdiff_t end = rows.findMask(maskPixels, x, width, true);
        setBits(bits, (size_t)x, (size_t)end);
        x = rows.findMask(maskPixels, end, width, false);
    }
}

static void unpackPixels(uint8_t* maskPixels, unsigned bits, size_t pixels)
{
    for (size_t i = 0; i < pixels; ++i)
        memset(maskPixels + i * 3, bits >> (7 - i) & 1 ? 0xFF : 0, 3);
}

// How many bytes from `at` on equal the first one; looked at eight at a time.
static size_t equalBytes(const uint8_t* at, size_t count)
{
    size_t same = 1;
    uint64_t first, next;
    if (count >= 8) {
        memset(&first, at[0], sizeof first);
        for (same = 0; same + 8 <= count; same += 8) {
            memcpy(&next, at + same, sizeof next);
            if (next != first) break;
        }
    }
    while (same < count && at[same] == at[0])
        ++same;
    return same;
}

void unpackMaskRow(uint8_t* maskPixels, const uint8_t* bits, size_t pixels)
{
    const PixelRows& rows = pixelRows();
    const size_t whole = pixels / 8;
    for (size_t done = 0; done < whole;) {
        const uint8_t eight = bits[done];
        const bool alike = eight == 0 || eight == 0xFF;
        const size_t some = alike ? equalBytes(bits + done, whole - done) : 1;
        if (alike) {
            rows.fill(maskPixels + done * 24, eight, some * 24);
        } else {
            unpackPixels(maskPixels + done * 24, eight, 8);
        }
        done += some;
    }
    if (pixels % 8) unpackPixels(maskPixels + whole * 24, bits[whole], pixels % 8);
}
