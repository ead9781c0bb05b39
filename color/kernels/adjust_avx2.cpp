#include "color/kernels/adjust_methods.h"

#ifdef VECTOR_CODE

#include <cstring>
#include <immintrin.h>

#include "color/kernels/adjust_arithmetic.h"

namespace {

#include "image/pixels/words_avx2.h"

#include "image/pixels/past_caches_lanes.h"

constexpr size_t LANE_COUNT = 16;
typedef __m256i Truth;  // all ones for yes
typedef __m256 FloatPart;

#include "color/kernels/lane_words.h"

struct Pixels {
    Vector blue, green, red;
};

LANES_INLINE Vector smallerUnsigned(Vector a, Vector b)
{
    return _mm256_min_epu16(a, b);
}

LANES_INLINE Vector distance(Vector a, Vector b)
{
    return _mm256_abs_epi16(subtract(a, b));
}

LANES_INLINE Truth isGreater(Vector a, Vector b)
{
    return _mm256_cmpgt_epi16(a, b);
}

LANES_INLINE Truth oddNumberOf(Truth a, Truth b, Truth c)
{
    return _mm256_xor_si256(_mm256_xor_si256(a, b), c);
}

LANES_INLINE Vector addWhere(Truth truth, Vector a, Vector b)
{
    return add(a, _mm256_and_si256(truth, b));
}

LANES_INLINE Vector negateWhere(Truth truth, Vector a)
{
    return subtract(_mm256_xor_si256(a, truth), truth);  // the ones' complement and 1 more
}

LANES_INLINE __m256i loadHalves(const uint8_t* low, const uint8_t* high)
{
    return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128((const __m128i*)low)),
                                   _mm_loadu_si128((const __m128i*)high), 1);
}

// 48 bytes into lanes; no byte beyond them is read. The lanes hold pixels 0-3, 8-11, 4-7, 12-15: the
// order that a half-wise unpack gives, and that storePixels expects.
LANES_INLINE Pixels loadPixels(const uint8_t* p)
{
    const __m256i first = loadHalves(p, p + 12);        // pixels 0-3 | 4-7
    const __m256i second = loadHalves(p + 24, p + 32);  // pixels 8-11 | 12-15 from byte 4 on
    const __m256i blueGreen1 = _mm256_setr_epi8(0, -1, 3, -1, 6, -1, 9, -1, 1, -1, 4, -1, 7, -1, 10, -1, 0, -1, 3, -1,
                                                6, -1, 9, -1, 1, -1, 4, -1, 7, -1, 10, -1);
    const __m256i blueGreen2 = _mm256_setr_epi8(0, -1, 3, -1, 6, -1, 9, -1, 1, -1, 4, -1, 7, -1, 10, -1, 4, -1, 7, -1,
                                                10, -1, 13, -1, 5, -1, 8, -1, 11, -1, 14, -1);
    const __m256i red1 = _mm256_setr_epi8(2, -1, 5, -1, 8, -1, 11, -1, -1, -1, -1, -1, -1, -1, -1, -1, 2, -1, 5, -1, 8,
                                          -1, 11, -1, -1, -1, -1, -1, -1, -1, -1, -1);
    const __m256i red2 = _mm256_setr_epi8(2, -1, 5, -1, 8, -1, 11, -1, -1, -1, -1, -1, -1, -1, -1, -1, 6, -1, 9, -1, 12,
                                          -1, 15, -1, -1, -1, -1, -1, -1, -1, -1, -1);
    const __m256i bg1 = _mm256_shuffle_epi8(first, blueGreen1);
    const __m256i bg2 = _mm256_shuffle_epi8(second, blueGreen2);
    return Pixels{_mm256_unpacklo_epi64(bg1, bg2), _mm256_unpackhi_epi64(bg1, bg2),
                  _mm256_unpacklo_epi64(_mm256_shuffle_epi8(first, red1), _mm256_shuffle_epi8(second, red2))};
}

// 12 bytes in each half, closed up and stored as 24 bytes.
LANES_INLINE void storePixels8(uint8_t* p, __m256i pixels)
{
    const __m256i closed = _mm256_permutevar8x32_epi32(pixels, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
    _mm_storeu_si128((__m128i*)p, _mm256_castsi256_si128(closed));
    _mm_storel_epi64((__m128i*)(p + 16), _mm256_extracti128_si256(closed, 1));
}

LANES_INLINE void storePixels(uint8_t* p, const Pixels& lanes)
{
    const __m256i blueGreen = _mm256_or_si256(lanes.blue, _mm256_slli_epi16(lanes.green, 8));
    const __m256i close = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, 0, 1, 2, 4, 5, 6, 8,
                                           9, 10, 12, 13, 14, -1, -1, -1, -1);
    storePixels8(p, _mm256_shuffle_epi8(_mm256_unpacklo_epi16(blueGreen, lanes.red), close));
    storePixels8(p + 24, _mm256_shuffle_epi8(_mm256_unpackhi_epi16(blueGreen, lanes.red), close));
}

#include "color/kernels/adjust_lanes.h"

}  // namespace

const ColourMethod COLOUR_AVX2 = {toneBytes, toneLarge, colourPixels, colourPixels};

#endif
