#include "tools/kernels/smooth_rows.h"

#include "tools/kernels/mix_vectors.h"
#include "tools/kernels/pixel_mix.h"

// Each pointer at the byte to blur; a neighbour's byte is three bytes away.
static uint8_t blurredByte(const uint8_t* above, const uint8_t* line, const uint8_t* below)
{
    const int sum = above[-3] + 2 * above[0] + above[3] + 2 * (line[-3] + 2 * line[0] + line[3]) + below[-3] +
                    2 * below[0] + below[3];
    return (uint8_t)((sum + 8) >> 4);
}

void smoothPixelsPlain(uint8_t* pixels, const SmoothSource& source, int count, int opacity)
{
    for (int at = 0; at < count * 3; ++at) {
        const uint8_t blurred = blurredByte(source.above + at, source.line + at, source.below + at);
        pixels[at] = mixByte(source.line[at], blurred, opacity);
    }
}

// The blur is taken first down and then across, so that no sum is made more than once. The sums of the
// columns (at most 4 * 255) of this many pixels and of one to either side stay in the nearest cache.
constexpr int PIXELS_AT_ONCE = 512;
constexpr size_t MOST_SUMS = (PIXELS_AT_ONCE + 2) * 3;

static __m128i sumWords(__m128i above, __m128i line, __m128i below)
{
    return _mm_add_epi16(_mm_add_epi16(above, below), _mm_slli_epi16(line, 1));
}

// In this file the last vector of a row simply overlaps the one before it: its results are the same again.

// sums[k] = above[k] + 2 * line[k] + below[k], for at least VECTOR_BYTES columns of bytes.
static void sumColumns(uint16_t* sums, const SmoothSource& from, size_t count)
{
    const __m128i zero = _mm_setzero_si128();
    for (size_t i = 0; i < count; i += VECTOR_BYTES) {
        const size_t at = std::min(i, count - VECTOR_BYTES);
        const __m128i above = loadBytes(from.above + at), line = loadBytes(from.line + at);
        const __m128i below = loadBytes(from.below + at);
        storeBytes(sums + at, sumWords(_mm_unpacklo_epi8(above, zero), _mm_unpacklo_epi8(line, zero),
                                       _mm_unpacklo_epi8(below, zero)));
        storeBytes(sums + at + 8, sumWords(_mm_unpackhi_epi8(above, zero), _mm_unpackhi_epi8(line, zero),
                                           _mm_unpackhi_epi8(below, zero)));
    }
}

// Eight blurred bytes as words, from the sums of their columns and of those a pixel to either side.
static __m128i blurredWords(const uint16_t* sums)
{
    const __m128i sum = sumWords(loadBytes(sums - 3), loadBytes(sums), loadBytes(sums + 3));
    return _mm_srli_epi16(_mm_add_epi16(sum, _mm_set1_epi16(8)), 4);
}

static __m128i blurredBytes(const uint16_t* sums)
{
    return _mm_packus_epi16(blurredWords(sums), blurredWords(sums + 8));
}

static void blurBytes(uint8_t* pixels, const uint16_t* sums, size_t count)
{
    for (size_t i = 0; i < count; i += VECTOR_BYTES) {
        const size_t at = std::min(i, count - VECTOR_BYTES);
        storeBytes(pixels + at, blurredBytes(sums + at));
    }
}

static void mixBlurredBytes(uint8_t* pixels, const uint8_t* line, const uint16_t* sums, size_t count, int opacity)
{
    const __m128i weight = _mm_set1_epi16((short)opacity);
    for (size_t i = 0; i < count; i += VECTOR_BYTES) {
        const size_t at = std::min(i, count - VECTOR_BYTES);
        storeBytes(pixels + at, mixVectors(loadBytes(line + at), blurredBytes(sums + at), weight));
    }
}

static SmoothSource movedBy(const SmoothSource& source, ptrdiff_t bytes)
{
    return SmoothSource{source.above + bytes, source.line + bytes, source.below + bytes};
}

// At least VECTOR_BYTES bytes, at most PIXELS_AT_ONCE pixels.
static void smoothPiece(uint8_t* pixels, const SmoothSource& source, size_t bytes, int opacity)
{
    uint16_t sums[MOST_SUMS];
    sumColumns(sums, movedBy(source, -3), bytes + 6);
    if (opacity == 100)
        blurBytes(pixels, sums + 3, bytes);  // the pixel itself drops out of the mix
    else
        mixBlurredBytes(pixels, source.line, sums + 3, bytes, opacity);
}

void smoothPixels(uint8_t* pixels, const SmoothSource& source, int count, int opacity)
{
    for (int done = 0; done < count; done += PIXELS_AT_ONCE) {
        const int some = std::min(count - done, PIXELS_AT_ONCE);
        const ptrdiff_t at = (ptrdiff_t)done * 3;
        if ((size_t)some * 3 < VECTOR_BYTES)
            smoothPixelsPlain(pixels + at, movedBy(source, at), some, opacity);
        else
            smoothPiece(pixels + at, movedBy(source, at), (size_t)some * 3, opacity);
    }
}
