// Mixing runs of pixels with one opacity (percent, 0 to 100), in place; the same bytes as mixPixel.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixels/bits_view.h"

// Lays `count` bytes of `over` over the pixels. The two do not overlap.
void mixBytesOver(uint8_t* pixels, const uint8_t* over, size_t count, int opacity);

// A colour as a row of pixels to lay over others.
constexpr int COLOUR_ROW_PIXELS = 16;
struct ColourRow {
    uint8_t bytes[COLOUR_ROW_PIXELS * 3];
};
ColourRow colourRow(Rgb colour);

// Lays one colour over `count` pixels.
void mixColourOver(uint8_t* pixels, const ColourRow& colour, int count, int opacity);
