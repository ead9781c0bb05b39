#include "image/pixels/pixel_ops.h"

#include <algorithm>
#include <cstring>

#include "image/pixels/pixel_rows.h"
#include "image/pixels/fetch_ahead.h"

constexpr int BYTES_PER_PIXEL = 3;

ClippedSpan clipSpan(int64_t position, int length, int limit)
{
    const int64_t end = position + length;
    if (end < 1 || position >= limit) return {true, 0, 0, 0};
    if (position >= 0) {
        return {false, (int)(std::min<int64_t>(end, limit) - position), 0, (int)position};
    }
    if (end > limit) return {false, limit, 0, 0};
    return {false, (int)end, (int)-position, 0};
}

BitsView bottomUpView(uint8_t* bottomRow, int width, int height, ptrdiff_t stride)
{
    return {bottomRow + stride * (height - 1), -stride, width, height};
}

void copyBlock(void* to, const void* from, size_t bytes)
{
    if (bytes >= LARGE_BLOCK && to != from) {
        pixelRows().copyLarge((uint8_t*)to, (const uint8_t*)from, bytes);
    } else {
        memmove(to, from, bytes);
    }
}

void copyFromOffset(const BitsView& destination, const BitsView& source, int left, int top)
{
    const int64_t right = std::min<int64_t>((int64_t)left + destination.width, source.width);
    const int64_t bottom = std::min<int64_t>((int64_t)top + destination.height, source.height);
    const int firstColumn = std::max(left, 0);
    const int firstRow = std::max(top, 0);
    if (right <= firstColumn || bottom <= firstRow) return;

    const size_t bytes = (size_t)(right - firstColumn) * BYTES_PER_PIXEL;
    const ptrdiff_t destinationByte = (ptrdiff_t)((int64_t)firstColumn - left) * BYTES_PER_PIXEL;
    const ptrdiff_t sourceByte = (ptrdiff_t)firstColumn * BYTES_PER_PIXEL;
    for (int y = firstRow; y < bottom; ++y) {
        memcpy(rowOf(destination, (int)((int64_t)y - top)) + destinationByte, rowOf(source, y) + sourceByte, bytes);
    }
}

bool pasteWithByteSkip(const BitsView& destination, const BitsView& source, int left, int top)
{
    const ClippedSpan columns = clipSpan(left, source.width, destination.width);
    const ClippedSpan rows = clipSpan(top, source.height, destination.height);
    if (columns.misses || rows.misses) return false;

    // count + skipped never exceeds the source's width, so skipping fewer bytes stays inside the row.
    const size_t bytes = (size_t)columns.count * BYTES_PER_PIXEL;
    const ptrdiff_t destinationByte = (ptrdiff_t)columns.start * BYTES_PER_PIXEL;
    for (int y = 0; y < rows.count; ++y) {
        memmove(rowOf(destination, rows.start + y) + destinationByte, rowOf(source, rows.skipped + y) + columns.skipped,
                bytes);
    }
    return true;
}

bool exchangePixels(const BitsView& image, const BitsView& patch, int left, int top)
{
    if (left < 0 || top < 0 || left > image.width - patch.width || top > image.height - patch.height) return false;
    const size_t bytes = (size_t)patch.width * 3;
    for (int y = 0; y < patch.height; ++y) {
        uint8_t* const row = rowOf(image, top + y) + (ptrdiff_t)left * 3;
        std::swap_ranges(row, row + bytes, rowOf(patch, y));
    }
    return true;
}

void fillWhereMapIsZero(const BitsView& image, const MapView& map, Rgb colour)
{
    const int width = std::min(image.width, map.width);
    const int height = std::min(image.height, map.height);
    for (int y = 0; y < height; ++y) {
        uint8_t* pixel = rowOf(image, y);
        const uint8_t* cell = rowOf(map, y);
        for (int x = 0; x < width; ++x, pixel += BYTES_PER_PIXEL) {
            if (cell[x] != 0) continue;
            pixel[0] = colour.blue;
            pixel[1] = colour.green;
            pixel[2] = colour.red;
        }
    }
}

static void moveBytes(uint8_t* to, const uint8_t* from, size_t count)
{
    memmove(to, from, count);
}

// From each pointer to the same of the row that comes next, in bytes; all 0 where there is none.
struct RowSteps {
    ptrdiff_t destination, source, mask;
};

// Masks are made of long runs, so whole runs are copied instead of pixels. The next row's runs lie about where this
// one's do.
static void mergeRuns(uint8_t* destination, const uint8_t* source, const uint8_t* mask, int width, const RowSteps& next)
{
    const PixelRows& rows = pixelRows();
    const size_t rowBytes = (size_t)width * BYTES_PER_PIXEL;
    const bool apart = destination + rowBytes <= source || source + rowBytes <= destination;
    if (next.mask) fetchAhead(mask + next.mask, rowBytes);
    for (ptrdiff_t x = rows.findMask(mask, 0, width, true); x < width;) {
        const ptrdiff_t end = rows.findMask(mask, x, width, false);
        const size_t offset = (size_t)x * BYTES_PER_PIXEL, count = (size_t)(end - x) * BYTES_PER_PIXEL;
        (apart ? rows.copy : moveBytes)(destination + offset, source + offset, count);
        if (next.mask) {
            fetchAhead(destination + offset + next.destination, count);
            fetchAhead(source + offset + next.source, count);
        }
        x = rows.findMask(mask, end, width, true);
    }
}

void mergeMaskedRow(uint8_t* destination, const uint8_t* source, const uint8_t* mask, int width)
{
    mergeRuns(destination, source, mask, width, RowSteps{});
}

void mergeMasked(const BitsView& destination, const BitsView& source, const BitsView& mask, int left, int top)
{
    const int64_t firstX = std::max<int64_t>(0, -(int64_t)left);
    const int64_t endX = std::min<int64_t>(source.width, (int64_t)destination.width - left);
    const int64_t firstY = std::max<int64_t>(0, -(int64_t)top);
    const int64_t endY = std::min<int64_t>(source.height, (int64_t)destination.height - top);
    if (firstX >= endX) return;

    const ptrdiff_t sourceByte = (ptrdiff_t)firstX * BYTES_PER_PIXEL;
    const ptrdiff_t destinationByte = (ptrdiff_t)(left + firstX) * BYTES_PER_PIXEL;
    const RowSteps steps = {destination.stride, source.stride, mask.stride};
    for (int64_t y = firstY; y < endY; ++y) {
        mergeRuns(rowOf(destination, (int)(top + y)) + destinationByte, rowOf(source, (int)y) + sourceByte,
                  rowOf(mask, (int)y) + sourceByte, (int)(endX - firstX), y + 1 < endY ? steps : RowSteps{});
    }
}

void reverseAllButLastRow(uint8_t* storedRows, ptrdiff_t rowBytes, int height)
{
    uint8_t* low = storedRows;
    uint8_t* high = storedRows + rowBytes * (height - 2);
    for (; low < high; low += rowBytes, high -= rowBytes) {
        std::swap_ranges(low, low + rowBytes, high);
    }
}

// Four pixels in three words, the first pixel in the lowest bytes.
struct FourPixels {
    uint32_t words[3];
};

static FourPixels loadFour(const uint8_t* pixels)
{
    FourPixels four;
    memcpy(four.words, pixels, sizeof four.words);
    return four;
}

static void storeReversed(uint8_t* pixels, const FourPixels& four)
{
    const uint32_t a = four.words[0], b = four.words[1], c = four.words[2];
    const uint32_t first = a & 0xFFFFFF, second = a >> 24 | (b & 0xFFFF) << 8, third = b >> 16 | (c & 0xFF) << 16;
    const uint32_t reversed[3] = {c >> 8 | third << 24, third >> 8 | second << 16, second >> 16 | first << 8};
    memcpy(pixels, reversed, sizeof reversed);
}

void mirrorRows(const BitsView& image)
{
    constexpr ptrdiff_t FOUR = 4 * BYTES_PER_PIXEL;
    for (int y = 0; y < image.height; ++y) {
        uint8_t *left = rowOf(image, y), *end = left + (ptrdiff_t)image.width * BYTES_PER_PIXEL;
        for (; end - left >= 2 * FOUR; left += FOUR, end -= FOUR) {
            const FourPixels atLeft = loadFour(left), atEnd = loadFour(end - FOUR);
            storeReversed(left, atEnd);
            storeReversed(end - FOUR, atLeft);
        }
        for (end -= BYTES_PER_PIXEL; left < end; left += BYTES_PER_PIXEL, end -= BYTES_PER_PIXEL)
            std::swap_ranges(left, left + BYTES_PER_PIXEL, end);
    }
}
