// Views of pixel memory that pure code works on. Nothing here locks, allocates or frees.
//
// Every image in this library is stored bottom-up, but all code that is given a view counts rows
// from the TOP of the picture: row0 points at the top row and the stride (bytes from one row to the
// row below it) is negative.
#pragma once

#include <cstddef>
#include <cstdint>

// A 24-bit image, borrowed for one call. A pixel is the three bytes blue, green, red.
struct BitsView {
    uint8_t* row0;     // top row of the picture
    ptrdiff_t stride;  // bytes from a row to the one below it; negative for stored bottom-up images
    int width;         // pixels
    int height;        // rows
};

// An 8-bit map (brush mask, stroke coverage), one byte a cell, borrowed for one call.
struct MapView {
    uint8_t* row0;     // top row
    ptrdiff_t stride;  // bytes from a row to the one below it
    int width;         // cells
    int height;        // rows
};

// Rectangle in image pixels, y downward; right and bottom are one past the last pixel.
struct PixelRect {
    int left, top, right, bottom;
};

struct PixelPoint {
    int x, y;
};

// A colour as the three channels that pixels store. (A COLORREF keeps red in its low byte.)
struct Rgb {
    uint8_t red, green, blue;
};

constexpr Rgb rgbFromColorref(uint32_t colour)
{
    return Rgb{(uint8_t)(colour & 0xFF), (uint8_t)((colour >> 8) & 0xFF), (uint8_t)((colour >> 16) & 0xFF)};
}

// Bytes from one stored row to the next: rows are padded to 4 bytes. 64-bit, because a header may
// promise any width.
constexpr int64_t rowStride(int64_t width, int bitCount)
{
    return (width * (bitCount / 8) + 3) & ~(int64_t)3;
}

inline uint8_t* rowOf(const BitsView& view, int y)
{
    return view.row0 + view.stride * y;
}

inline uint8_t* rowOf(const MapView& view, int y)
{
    return view.row0 + view.stride * y;
}
