#include "host/photo/photo_rows.h"

#include <cstring>

constexpr int HEADER_SIZE = 40;

// Byte steps in the packed bitmap for one pixel to the right and one row down in the file, and the
// place of the file's first pixel.
struct UprightSteps {
    uint8_t* origin;
    ptrdiff_t right, down;
};

static UprightSteps stepsFor(const UprightTarget& target)
{
    const bool swapped = orientationSwapsSides(target.orientation);
    const int width = swapped ? target.fileHeight : target.fileWidth;
    const int height = swapped ? target.fileWidth : target.fileHeight;
    const ptrdiff_t stride = packedRowSize(width);
    const bool fromRight =
        target.orientation == 2 || target.orientation == 3 || target.orientation == 6 || target.orientation == 7;
    const bool fromBottom =
        target.orientation == 3 || target.orientation == 4 || target.orientation == 7 || target.orientation == 8;
    const ptrdiff_t alongRow = fromRight ? -3 : 3;
    const ptrdiff_t alongColumn = fromBottom ? stride : -stride;  // rows are stored bottom-up
    UprightSteps steps;
    steps.origin = target.bits + (fromBottom ? 0 : (height - 1) * stride) + (fromRight ? (width - 1) * 3 : 0);
    steps.right = swapped ? alongColumn : alongRow;
    steps.down = swapped ? alongRow : alongColumn;
    return steps;
}

uint32_t packedPhotoSize(int64_t width, int64_t height)
{
    const int64_t limit = INT32_MAX;
    if (width < 1 || height < 1 || width > limit / 4 || height > limit) return 0;
    const int64_t stride = (width * 3 + 3) & ~(int64_t)3;
    if (stride > (limit - HEADER_SIZE) / height) return 0;
    return (uint32_t)(stride * height + HEADER_SIZE);
}

uint32_t packedRowSize(int width)
{
    return ((uint32_t)width * 3 + 3) & ~3u;
}

bool orientationSwapsSides(int orientation)
{
    return orientation >= 5 && orientation <= 8;
}

void placeRowsOverWhite(const UprightTarget& target, const uint8_t* source, ptrdiff_t sourceStride, int firstRow,
                        int rowCount)
{
    const UprightSteps steps = stepsFor(target);
    for (int row = 0; row < rowCount; ++row) {
        const uint8_t* from = source + row * sourceStride;
        uint8_t* to = steps.origin + (firstRow + row) * steps.down;
        for (int column = 0; column < target.fileWidth; ++column, from += 4, to += steps.right)
            if (from[3] == 255)
                memcpy(to, from, 3);
            else
                for (int channel = 0; channel < 3; ++channel)
                    to[channel] = overWhite(from[channel], from[3]);
    }
}

void gatherRows(const UprightTarget& from, int firstRow, int rowCount, uint8_t* bgr, ptrdiff_t stride)
{
    if (from.rowsGathered) *from.rowsGathered += rowCount;
    const UprightSteps steps = stepsFor(from);
    for (int row = 0; row < rowCount; ++row) {
        const uint8_t* pixel = steps.origin + (firstRow + row) * steps.down;
        uint8_t* to = bgr + row * stride;
        if (steps.right == 3) {
            memcpy(to, pixel, (size_t)from.fileWidth * 3);
            continue;
        }
        for (int column = 0; column < from.fileWidth; ++column, pixel += steps.right, to += 3)
            memcpy(to, pixel, 3);
    }
}

uint8_t overWhite(int value, int alpha)
{
    return (uint8_t)((value * alpha + 255 * (255 - alpha) + 127) / 255);
}

uint8_t fromOverWhite(int shown, int alpha)
{
    if (alpha == 0) return (uint8_t)shown;
    const int value = 255 - ((255 - shown) * 255 + alpha / 2) / alpha;
    return (uint8_t)(value < 0 ? 0 : value);
}

void copyRowsTopDown(const uint8_t* bits, int width, int height, int firstRow, int rowCount, uint8_t* destination,
                     ptrdiff_t destinationStride)
{
    const ptrdiff_t stride = packedRowSize(width);
    for (int row = 0; row < rowCount; ++row)
        memcpy(destination + row * destinationStride, bits + (height - 1 - firstRow - row) * stride, (size_t)width * 3);
}

void turnNativeRow(const uint8_t* picture, ptrdiff_t stride, int pixel, int fileWidth, int fileHeight, int orientation,
                   int row, uint8_t* to)
{
    const bool swapped = orientationSwapsSides(orientation);
    const int width = swapped ? fileHeight : fileWidth, height = swapped ? fileWidth : fileHeight;
    const bool fromRight = orientation == 2 || orientation == 3 || orientation == 6 || orientation == 7;
    const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 7 || orientation == 8;
    const int y = fromBottom ? height - 1 - row : row;
    for (int column = 0; column < width; ++column, to += pixel) {
        const int x = fromRight ? width - 1 - column : column;
        const uint8_t* from =
            swapped ? picture + x * stride + (ptrdiff_t)y * pixel : picture + y * stride + (ptrdiff_t)x * pixel;
        memcpy(to, from, (size_t)pixel);
    }
}
