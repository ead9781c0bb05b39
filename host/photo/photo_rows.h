// Pixel rows between photo files and the packed bitmap that the editor takes: bottom row first, rows
// padded to 4 bytes, pixels blue, green, red. File rows are top-down. No windows, no files.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

// Bytes of a packed 24-bit bitmap, 40-byte header included. 0 when a side is below 1 or the block would
// not fit into 31 bits.
uint32_t packedPhotoSize(int64_t width, int64_t height);

// Bytes of one packed row. The width must have passed packedPhotoSize.
uint32_t packedRowSize(int width);

// How a photo must be turned to be upright, numbered 1 to 8 as cameras note it: 1 as it is, 2 mirrored,
// 3 upside down, 4 flipped, 5 to 8 the same with rows and columns exchanged. Others count as 1.
bool orientationSwapsSides(int orientation);

// Where the pixels of a file go in the packed bitmap.
struct UprightTarget {
    uint8_t* bits;  // first byte of the pixel rows
    int fileWidth;  // sides of the picture as the file has it
    int fileHeight;
    int orientation;
    std::atomic<int>* rowsGathered = nullptr;  // what gatherRows counts its rows in, when somebody wants to know
};

// Puts rowCount rows, from row firstRow of the file on, into place. source: blue, green, red, alpha
// bytes, straight alpha, sourceStride bytes a row; the picture is laid over white. Padding is not touched.
void placeRowsOverWhite(const UprightTarget& target, const uint8_t* source, ptrdiff_t sourceStride, int firstRow,
                        int rowCount);

// Copies rows firstRow .. firstRow + rowCount - 1, counted from the top, of a packed bitmap into
// top-down rows of blue, green, red bytes.
void copyRowsTopDown(const uint8_t* bits, int width, int height, int firstRow, int rowCount, uint8_t* destination,
                     ptrdiff_t destinationStride);

// The other way round: rows of the file, blue, green, red bytes, out of the packed bitmap.
void gatherRows(const UprightTarget& from, int firstRow, int rowCount, uint8_t* bgr, ptrdiff_t stride);

// One channel of a pixel as it is seen over white.
uint8_t overWhite(int value, int alpha);

// The value that is seen as `shown` over white, as near as there is one.
uint8_t fromOverWhite(int shown, int alpha);

// One row of the upright picture, row counted from its top, out of a whole picture in a file's own pixels of
// `pixel` bytes, fileWidth by fileHeight of them, that must be turned.
void turnNativeRow(const uint8_t* picture, ptrdiff_t stride, int pixel, int fileWidth, int fileHeight, int orientation,
                   int row, uint8_t* to);
