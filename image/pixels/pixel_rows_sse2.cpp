#include "image/pixels/pixel_rows_plain.h"

#ifdef VECTOR_CODE

#include <cstring>
#include <emmintrin.h>

namespace {

#include "image/pixels/words_sse2.h"

#include "image/pixels/past_caches_lanes.h"
#include "image/pixels/pixel_rows_lanes.h"
#include "image/pixels/run_ends.h"

// 0xFF at the bytes of a vector that hold the given byte of their pixel, where the vector's first byte is byte
// `phase` of a pixel.
Vector bytesOfPixel(int byteOfPixel, int phase)
{
    uint8_t mask[16];
    for (int i = 0; i < 16; ++i)
        mask[i] = (i + phase) % 3 == byteOfPixel ? 0xFF : 0;
    return load(mask);
}

// A pixel's first byte comes from 2 behind it, its third from 2 before it, so a vector is put together from
// three loads that lie 2 bytes apart. Pixels are taken 16 at a time (three vectors), the first and last of
// the row apart, so that no load leaves the row.
size_t swapBy16(uint8_t* to, const uint8_t* from, size_t pixels)
{
    const Vector first[3] = {bytesOfPixel(0, 0), bytesOfPixel(0, 1), bytesOfPixel(0, 2)};
    const Vector middle[3] = {bytesOfPixel(1, 0), bytesOfPixel(1, 1), bytesOfPixel(1, 2)};
    const Vector last[3] = {bytesOfPixel(2, 0), bytesOfPixel(2, 1), bytesOfPixel(2, 2)};
    size_t done = 0;
    for (; pixels - done > 16; done += 16) {
        for (int part = 0; part < 3; ++part) {
            const uint8_t* source = from + done * 3 + part * 16;
            const Vector outer = either(both(load(source + 2), first[part]), both(load(source - 2), last[part]));
            store(to + done * 3 + part * 16, either(outer, both(load(source), middle[part])));
        }
    }
    return done;
}

void swapRedAndBlue(uint8_t* to, const uint8_t* from, size_t pixels)
{
    size_t done = 0;
    if (pixels > 17) {
        swapRedAndBluePlain(to, from, 1);
        done = 1 + swapBy16(to + 3, from + 3, pixels - 1);
    }
    swapRedAndBluePlain(to + done * 3, from + done * 3, pixels - done);
}

}  // namespace

const PixelRows PIXEL_ROWS_SSE2 = {findMask, fill, copy, copyLarge, swapRedAndBlue, nullptr};

#endif
