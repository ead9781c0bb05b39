#include "tools/kernels/paint_rows.h"

#include <algorithm>
#include <cstring>

#include "tools/kernels/pixel_mix.h"

static const PaintRows* const variants[VECTOR_LEVEL_COUNT] = {
    &PAINT_ROWS_PLAIN,
#ifdef VECTOR_CODE
    &PAINT_ROWS_SSE2,
    &PAINT_ROWS_AVX2,
    &PAINT_ROWS_AVX512,
#endif
};

const PaintRows& paintRows()
{
    return *variants[vectorLevel()];
}

ColourRow colourRow(Rgb colour)
{
    const PixelBytes pixel = pixelBytes(colour);
    ColourRow row;
    for (int i = 0; i < COLOUR_ROW_PIXELS; ++i)
        memcpy(row.bytes + i * 3, pixel.byte, 3);
    return row;
}

void mixColourOver(uint8_t* pixels, const ColourRow& colour, int count, int opacity)
{
    const PaintRows& rows = paintRows();
    for (int done = 0; done < count; done += COLOUR_ROW_PIXELS) {
        const int some = std::min(count - done, COLOUR_ROW_PIXELS);
        rows.mixBytes(pixels + (ptrdiff_t)done * 3, colour.bytes, (size_t)some * 3, opacity);
    }
}
