#include "tools/kernels/mix_rows.h"

#include <algorithm>
#include <cstring>

#include "tools/kernels/mix_vectors.h"
#include "tools/kernels/pixel_mix.h"

// Mixing a byte twice would show, so what is left of a row goes byte by byte.
void mixBytesOver(uint8_t* pixels, const uint8_t* over, size_t count, int opacity)
{
    const __m128i weight = _mm_set1_epi16((short)opacity);
    size_t i = 0;
    for (; i + VECTOR_BYTES <= count; i += VECTOR_BYTES)
        storeBytes(pixels + i, mixVectors(loadBytes(pixels + i), loadBytes(over + i), weight));
    for (; i < count; ++i)
        pixels[i] = mixByte(pixels[i], over[i], opacity);
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
    for (int done = 0; done < count; done += COLOUR_ROW_PIXELS) {
        const int some = std::min(count - done, COLOUR_ROW_PIXELS);
        mixBytesOver(pixels + (ptrdiff_t)done * 3, colour.bytes, (size_t)some * 3, opacity);
    }
}
