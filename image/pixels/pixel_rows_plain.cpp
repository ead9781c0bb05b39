#include "image/pixels/pixel_rows_plain.h"

#include <cstring>

ptrdiff_t findMaskPlain(const uint8_t* mask, ptrdiff_t x, ptrdiff_t width, bool inside)
{
    while (x < width && (mask[x * 3 + 2] == 0) != inside)
        ++x;
    return x;
}

void fillPlain(uint8_t* to, uint8_t value, size_t count)
{
    memset(to, value, count);
}

void copyPlain(uint8_t* to, const uint8_t* from, size_t count)
{
    memcpy(to, from, count);
}

void swapRedAndBluePlain(uint8_t* to, const uint8_t* from, size_t pixels)
{
    for (size_t i = 0; i < pixels; ++i, to += 3, from += 3) {
        to[0] = from[2];
        to[1] = from[1];
        to[2] = from[0];
    }
}

const PixelRows PIXEL_ROWS_PLAIN = {findMaskPlain, fillPlain, copyPlain, copyPlain, swapRedAndBluePlain, nullptr};
