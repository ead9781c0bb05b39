// Blending one pixel. Opacity is percent, 0 to 100; divisions truncate.
#pragma once

#include <cstdint>

#include "image/pixels/bits_view.h"

// A colour in the order in which pixels store it.
struct PixelBytes {
    uint8_t byte[3];
};

inline PixelBytes pixelBytes(Rgb colour)
{
    return PixelBytes{{colour.blue, colour.green, colour.red}};
}

// Opacity 100 needs no case of its own: the old byte drops out of the sum.
inline uint8_t mixByte(int under, int over, int opacity)
{
    return (uint8_t)((under * (100 - opacity) + over * opacity) / 100);
}

inline void mixPixel(uint8_t* pixel, const uint8_t* under, const uint8_t* over, int opacity)
{
    for (int k = 0; k < 3; ++k)
        pixel[k] = mixByte(under[k], over[k], opacity);
}

// The same with a fractional weight: the sum is taken in floating point and cut to its integer part.
inline void mixPixelFraction(uint8_t* pixel, const uint8_t* over, double weight)
{
    for (int k = 0; k < 3; ++k)
        pixel[k] = (uint8_t)((pixel[k] * (100 - weight) + over[k] * weight) / 100.0);
}
