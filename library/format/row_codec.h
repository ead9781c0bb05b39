// Rows of a selection file against rows of an image. Rows do not overlap.
#pragma once

#include <cstddef>
#include <cstdint>

// Copies `pixels` 3-byte pixels with their first and third bytes exchanged: blue, green, red to red, green,
// blue and back.
void swapRedAndBlue(uint8_t* to, const uint8_t* from, size_t pixels);

// One bit a pixel, the leftmost in the top bit: 1 where the mask's red is not 0 (outside), 0 where it is
// (inside). Bits behind the last pixel are 0.
void packMaskRow(uint8_t* bits, const uint8_t* maskPixels, size_t pixels);

// White for a set bit, black for a clear one.
void unpackMaskRow(uint8_t* maskPixels, const uint8_t* bits, size_t pixels);
