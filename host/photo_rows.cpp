#include "host/photo_rows.h"

#include <cstring>

namespace {

const int headerSize = 40;

// Byte steps in the packed bitmap for one pixel to the right and one row down in the file, and the
// place of the file's first pixel.
struct UprightSteps {
    uint8_t* origin;
    ptrdiff_t right, down;
};

UprightSteps stepsFor(const UprightTarget& target)
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

uint8_t overWhite(int value, int alpha)
{
    return (uint8_t)((value * alpha + 255 * (255 - alpha) + 127) / 255);
}

}  // namespace

uint32_t packedPhotoSize(int64_t width, int64_t height)
{
    const int64_t limit = INT32_MAX;
    if (width < 1 || height < 1 || width > limit / 4 || height > limit) return 0;
    const int64_t stride = (width * 3 + 3) & ~(int64_t)3;
    if (stride > (limit - headerSize) / height) return 0;
    return (uint32_t)(stride * height + headerSize);
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
    for (int row = 0; row < rowCount; row++) {
        const uint8_t* from = source + row * sourceStride;
        uint8_t* to = steps.origin + (firstRow + row) * steps.down;
        for (int column = 0; column < target.fileWidth; column++, from += 4, to += steps.right)
            for (int channel = 0; channel < 3; channel++)
                to[channel] = overWhite(from[channel], from[3]);
    }
}

void copyRowsTopDown(const uint8_t* bits, int width, int height, int firstRow, int rowCount, uint8_t* destination,
                     ptrdiff_t destinationStride)
{
    const ptrdiff_t stride = packedRowSize(width);
    for (int row = 0; row < rowCount; row++)
        memcpy(destination + row * destinationStride, bits + (height - 1 - firstRow - row) * stride, (size_t)width * 3);
}
