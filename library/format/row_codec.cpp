#include "library/format/row_codec.h"

#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define ROW_CODEC_SSE2 1
#endif

static void swapPixelsPlain(uint8_t* to, const uint8_t* from, size_t pixels)
{
    for (size_t i = 0; i < pixels; ++i, to += 3, from += 3) {
        to[0] = from[2];
        to[1] = from[1];
        to[2] = from[0];
    }
}

#ifdef ROW_CODEC_SSE2

// 0xFF at the bytes of a 16-byte vector that hold the given byte of their pixel, where the vector's first
// byte is byte `phase` of a pixel.
static __m128i bytesOfPixel(int byteOfPixel, int phase)
{
    alignas(16) uint8_t mask[16];
    for (int i = 0; i < 16; ++i)
        mask[i] = (i + phase) % 3 == byteOfPixel ? 0xFF : 0;
    return _mm_load_si128((const __m128i*)mask);
}

// A pixel's first byte comes from 2 behind it, its third from 2 before it, so a vector is put together from
// three loads that lie 2 bytes apart. Pixels are taken 16 at a time (three vectors), the first and last of
// the row apart, so that no load leaves the row.
static size_t swapPixelsBy16(uint8_t* to, const uint8_t* from, size_t pixels)
{
    const __m128i first[3] = {bytesOfPixel(0, 0), bytesOfPixel(0, 1), bytesOfPixel(0, 2)};
    const __m128i middle[3] = {bytesOfPixel(1, 0), bytesOfPixel(1, 1), bytesOfPixel(1, 2)};
    const __m128i last[3] = {bytesOfPixel(2, 0), bytesOfPixel(2, 1), bytesOfPixel(2, 2)};
    size_t done = 0;
    for (; pixels - done > 16; done += 16) {
        for (int part = 0; part < 3; ++part) {
            const uint8_t* source = from + done * 3 + part * 16;
            const __m128i behind = _mm_loadu_si128((const __m128i*)(source + 2));
            const __m128i here = _mm_loadu_si128((const __m128i*)source);
            const __m128i before = _mm_loadu_si128((const __m128i*)(source - 2));
            const __m128i outer = _mm_or_si128(_mm_and_si128(behind, first[part]), _mm_and_si128(before, last[part]));
            const __m128i mixed = _mm_or_si128(outer, _mm_and_si128(here, middle[part]));
            _mm_storeu_si128((__m128i*)(to + done * 3 + part * 16), mixed);
        }
    }
    return done;
}

#endif

void swapRedAndBlue(uint8_t* to, const uint8_t* from, size_t pixels)
{
#ifdef ROW_CODEC_SSE2
    if (pixels > 17) {
        swapPixelsPlain(to, from, 1);
        const size_t done = 1 + swapPixelsBy16(to + 3, from + 3, pixels - 1);
        swapPixelsPlain(to + done * 3, from + done * 3, pixels - done);
        return;
    }
#endif
    swapPixelsPlain(to, from, pixels);
}

static uint8_t packPixels(const uint8_t* maskPixels, size_t pixels)
{
    unsigned bits = 0;
    for (size_t i = 0; i < pixels; ++i)
        bits |= (unsigned)(maskPixels[i * 3 + 2] != 0) << (7 - i);
    return (uint8_t)bits;
}

#ifdef ROW_CODEC_SSE2

// Masks are mostly long runs, so 16 pixels that are inside or outside together are settled at once.
static size_t packRowBy16(uint8_t* bits, const uint8_t* maskPixels, size_t pixels)
{
    const __m128i zero = _mm_setzero_si128();
    // Bits of the reds: bytes 2, 5, 8, ... 47 of 48.
    const unsigned reds[3] = {0x4924, 0x2492, 0x9249};
    size_t done = 0;
    for (; pixels - done >= 16; done += 16) {
        unsigned inside[3];
        for (int part = 0; part < 3; ++part) {
            const __m128i bytes = _mm_loadu_si128((const __m128i*)(maskPixels + done * 3 + part * 16));
            inside[part] = (unsigned)_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, zero)) & reds[part];
        }
        uint8_t* const out = bits + done / 8;
        if ((inside[0] | inside[1] | inside[2]) == 0) {
            out[0] = out[1] = 0xFF;
        } else if (inside[0] == reds[0] && inside[1] == reds[1] && inside[2] == reds[2]) {
            out[0] = out[1] = 0;
        } else {
            out[0] = packPixels(maskPixels + done * 3, 8);
            out[1] = packPixels(maskPixels + done * 3 + 24, 8);
        }
    }
    return done;
}

#endif

void packMaskRow(uint8_t* bits, const uint8_t* maskPixels, size_t pixels)
{
    size_t done = 0;
#ifdef ROW_CODEC_SSE2
    done = packRowBy16(bits, maskPixels, pixels);
#endif
    for (; pixels - done >= 8; done += 8)
        bits[done / 8] = packPixels(maskPixels + done * 3, 8);
    if (done < pixels) bits[done / 8] = packPixels(maskPixels + done * 3, pixels - done);
}

static void unpackPixels(uint8_t* maskPixels, unsigned bits, size_t pixels)
{
    for (size_t i = 0; i < pixels; ++i)
        memset(maskPixels + i * 3, bits >> (7 - i) & 1 ? 0xFF : 0, 3);
}

void unpackMaskRow(uint8_t* maskPixels, const uint8_t* bits, size_t pixels)
{
    size_t done = 0;
    for (; pixels - done >= 8; done += 8) {
        const uint8_t eight = bits[done / 8];
        if (eight == 0 || eight == 0xFF) {
            memset(maskPixels + done * 3, eight, 24);
        } else {
            unpackPixels(maskPixels + done * 3, eight, 8);
        }
    }
    if (done < pixels) unpackPixels(maskPixels + done * 3, bits[done / 8], pixels - done);
}
