#include "image/pixels/pixel_ops.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "image/pixels/vector_bytes.h"

static const int bytesPerPixel = 3;

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

void copyFromOffset(const BitsView& destination, const BitsView& source, int left, int top)
{
    const int64_t right = std::min<int64_t>((int64_t)left + destination.width, source.width);
    const int64_t bottom = std::min<int64_t>((int64_t)top + destination.height, source.height);
    const int firstColumn = std::max(left, 0);
    const int firstRow = std::max(top, 0);
    if (right <= firstColumn || bottom <= firstRow) return;

    const size_t bytes = (size_t)(right - firstColumn) * bytesPerPixel;
    const ptrdiff_t destinationByte = (ptrdiff_t)((int64_t)firstColumn - left) * bytesPerPixel;
    const ptrdiff_t sourceByte = (ptrdiff_t)firstColumn * bytesPerPixel;
    for (int y = firstRow; y < bottom; y++) {
        memcpy(rowOf(destination, (int)((int64_t)y - top)) + destinationByte, rowOf(source, y) + sourceByte, bytes);
    }
}

bool pasteWithByteSkip(const BitsView& destination, const BitsView& source, int left, int top)
{
    const ClippedSpan columns = clipSpan(left, source.width, destination.width);
    const ClippedSpan rows = clipSpan(top, source.height, destination.height);
    if (columns.misses || rows.misses) return false;

    // count + skipped never exceeds the source's width, so skipping fewer bytes stays inside the row.
    const size_t bytes = (size_t)columns.count * bytesPerPixel;
    const ptrdiff_t destinationByte = (ptrdiff_t)columns.start * bytesPerPixel;
    for (int y = 0; y < rows.count; y++) {
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
    for (int y = 0; y < height; y++) {
        uint8_t* pixel = rowOf(image, y);
        const uint8_t* cell = rowOf(map, y);
        for (int x = 0; x < width; x++, pixel += bytesPerPixel) {
            if (cell[x] != 0) continue;
            pixel[0] = colour.blue;
            pixel[1] = colour.green;
            pixel[2] = colour.red;
        }
    }
}

// Whether "red is 0" equals `inside` for 16 mask pixels. The reds are bytes 2, 5, 8, ... 47 of 48.
static bool sixteenAre(const uint8_t* mask, bool inside)
{
    static const int reds[3] = {0x4924, 0x2492, 0x9249};
    int different = 0;
    for (int part = 0; part < 3; ++part) {
        const __m128i zeros = _mm_cmpeq_epi8(loadBytes(mask + part * 16), _mm_setzero_si128());
        different |= (_mm_movemask_epi8(zeros) ^ (inside ? 0xFFFF : 0)) & reds[part];
    }
    return different == 0;
}

// First position from x on whose "red is 0" equals `inside`, or width.
static ptrdiff_t runEnd(const uint8_t* mask, ptrdiff_t x, ptrdiff_t width, bool inside)
{
    while (x + 16 <= width && sixteenAre(mask + x * bytesPerPixel, inside))
        x += 16;
    while (x < width && (mask[x * bytesPerPixel + 2] == 0) == inside)
        x++;
    return x;
}

// Masks are made of long runs, so whole runs are copied instead of pixels.
void mergeMaskedRow(uint8_t* destination, const uint8_t* source, const uint8_t* mask, int width)
{
    for (ptrdiff_t x = runEnd(mask, 0, width, false); x < width;) {
        const ptrdiff_t end = runEnd(mask, x, width, true);
        const size_t offset = (size_t)x * bytesPerPixel;
        memmove(destination + offset, source + offset, (size_t)(end - x) * bytesPerPixel);
        x = runEnd(mask, end, width, false);
    }
}

void mergeMasked(const BitsView& destination, const BitsView& source, const BitsView& mask, int left, int top)
{
    const int64_t firstX = std::max<int64_t>(0, -(int64_t)left);
    const int64_t endX = std::min<int64_t>(source.width, (int64_t)destination.width - left);
    const int64_t firstY = std::max<int64_t>(0, -(int64_t)top);
    const int64_t endY = std::min<int64_t>(source.height, (int64_t)destination.height - top);
    if (firstX >= endX) return;

    const ptrdiff_t sourceByte = (ptrdiff_t)firstX * bytesPerPixel;
    const ptrdiff_t destinationByte = (ptrdiff_t)(left + firstX) * bytesPerPixel;
    for (int64_t y = firstY; y < endY; y++) {
        mergeMaskedRow(rowOf(destination, (int)(top + y)) + destinationByte, rowOf(source, (int)y) + sourceByte,
                       rowOf(mask, (int)y) + sourceByte, (int)(endX - firstX));
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

void mirrorRows(const BitsView& image)
{
    for (int y = 0; y < image.height; y++) {
        uint8_t* left = rowOf(image, y);
        uint8_t* right = left + (ptrdiff_t)(image.width - 1) * bytesPerPixel;
        for (; left < right; left += bytesPerPixel, right -= bytesPerPixel) {
            std::swap_ranges(left, left + bytesPerPixel, right);
        }
    }
}

// Wide arithmetic: up to 8192 positions 16 bits would give the very same table, and beyond that they
// would overflow.
void nearestTable(uint32_t* table, int from, int to)
{
    const bool enlarging = to >= from;
    const int64_t a = (enlarging ? from : to) - 1;
    const int64_t b = (enlarging ? to : from) - 1;
    int64_t error = 2 * a - b;
    uint32_t position = 0;
    *table++ = 0;
    for (int64_t step = 0; step < b; step++) {
        const bool diagonal = error >= 0;
        if (diagonal || !enlarging) position++;
        if (diagonal || enlarging) *table++ = position;
        error += diagonal ? 2 * (a - b) : 2 * a;
    }
}

static void copyPixel(uint8_t* to, const uint8_t* from)
{
    to[0] = from[0];
    to[1] = from[1];
    to[2] = from[2];
}

// Copies a pixel and the byte behind it, which the next pixel overwrites: one load and one store.
static void copyPixelLoosely(uint8_t* to, const uint8_t* from)
{
    uint32_t four;
    memcpy(&four, from, sizeof four);
    memcpy(to, &four, sizeof four);
}

// `offsets` are the byte offsets of the source columns; the first `loose` of them are neither the last
// column of the source nor of the result, so that a fourth byte may be touched.
static void gatherRow(uint8_t* to, const uint8_t* from, const uint32_t* offsets, int width, int loose)
{
    int x = 0;
    for (; x < loose; x++)
        copyPixelLoosely(to + (ptrdiff_t)x * bytesPerPixel, from + offsets[x]);
    for (; x < width; x++)
        copyPixel(to + (ptrdiff_t)x * bytesPerPixel, from + offsets[x]);
}

// Turns columns into byte offsets and returns how many may be copied loosely. Columns never decrease.
static int columnsToOffsets(uint32_t* columns, int width, int sourceWidth)
{
    int loose = 0;
    for (int x = 0; x < width; x++) {
        if (x < width - 1 && columns[x] < (uint32_t)sourceWidth - 1) loose = x + 1;
        columns[x] *= bytesPerPixel;
    }
    return loose;
}

bool scaleNearest(const BitsView& result, const BitsView& source)
{
    if ((uint32_t)source.width > UINT32_MAX / bytesPerPixel) return false;
    const size_t entries = (size_t)result.width + (size_t)result.height;
    uint32_t* offsets = (uint32_t*)malloc(entries * sizeof(uint32_t));
    if (!offsets) return false;
    uint32_t* rows = offsets + result.width;
    nearestTable(offsets, source.width, result.width);
    nearestTable(rows, source.height, result.height);
    const int loose = columnsToOffsets(offsets, result.width, source.width);

    const size_t rowBytes = (size_t)result.width * bytesPerPixel;
    for (int j = 0; j < result.height; j++) {
        uint8_t* to = rowOf(result, result.height - 1 - j);
        if (j > 0 && rows[j] == rows[j - 1]) {
            memcpy(to, to + result.stride, rowBytes);  // the row below: the one written before
        } else if (result.width == source.width) {
            memcpy(to, rowOf(source, source.height - 1 - (int)rows[j]), rowBytes);
        } else {
            gatherRow(to, rowOf(source, source.height - 1 - (int)rows[j]), offsets, result.width, loose);
        }
    }
    free(offsets);
    return true;
}
