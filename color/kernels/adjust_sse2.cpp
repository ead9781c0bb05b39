#include "color/kernels/adjust_methods.h"

#ifdef VECTOR_CODE

#include <cstring>
#include <emmintrin.h>

#include "color/kernels/adjust_arithmetic.h"

namespace {

#include "image/pixels/words_sse2.h"

#include "image/pixels/past_caches_lanes.h"

constexpr size_t LANE_COUNT = 8;
typedef __m128i Truth;  // all ones for yes
typedef __m128 FloatPart;

#include "color/kernels/lane_words.h"

struct Pixels {
    Vector blue, green, red;
};

LANES_INLINE Vector smallerUnsigned(Vector a, Vector b)
{
    return subtract(a, subtractDownToZero(a, b));
}

LANES_INLINE Vector distance(Vector a, Vector b)
{
    return subtract(larger(a, b), smaller(a, b));
}

LANES_INLINE Truth isGreater(Vector a, Vector b)
{
    return _mm_cmpgt_epi16(a, b);
}

LANES_INLINE Truth oddNumberOf(Truth a, Truth b, Truth c)
{
    return _mm_xor_si128(_mm_xor_si128(a, b), c);
}

LANES_INLINE Vector addWhere(Truth truth, Vector a, Vector b)
{
    return add(a, _mm_and_si128(truth, b));
}

LANES_INLINE Vector negateWhere(Truth truth, Vector a)
{
    return subtract(_mm_xor_si128(a, truth), truth);  // the ones' complement and 1 more
}

LANES_INLINE __m128i load4(const uint8_t* bytes)
{
    int value;
    memcpy(&value, bytes, sizeof value);
    return _mm_cvtsi32_si128(value);
}

LANES_INLINE __m128i join4(__m128i a, __m128i b, __m128i c, __m128i d)
{
    return _mm_unpacklo_epi64(_mm_unpacklo_epi32(a, b), _mm_unpacklo_epi32(c, d));
}

// 24 bytes into lanes; no byte beyond them is read.
LANES_INLINE Pixels loadPixels(const uint8_t* p)
{
    const __m128i low = join4(load4(p), load4(p + 3), load4(p + 6), load4(p + 9));
    const __m128i high = join4(load4(p + 12), load4(p + 15), load4(p + 18), _mm_srli_epi32(load4(p + 20), 8));
    const __m128i byte = _mm_set1_epi32(255);
    return Pixels{
        _mm_packs_epi32(_mm_and_si128(low, byte), _mm_and_si128(high, byte)),
        _mm_packs_epi32(_mm_and_si128(_mm_srli_epi32(low, 8), byte), _mm_and_si128(_mm_srli_epi32(high, 8), byte)),
        _mm_packs_epi32(_mm_and_si128(_mm_srli_epi32(low, 16), byte), _mm_and_si128(_mm_srli_epi32(high, 16), byte))};
}

// Four pixels of 32 bits, the highest byte 0, closed up and stored as 12 bytes.
LANES_INLINE void storePixels4(uint8_t* p, __m128i pixels)
{
    const __m128i even = _mm_set_epi32(0, -1, 0, -1);
    const __m128i pairs = _mm_or_si128(_mm_and_si128(pixels, even), _mm_srli_epi64(_mm_andnot_si128(even, pixels), 8));
    const __m128i firstPair = _mm_set_epi32(0, 0, -1, -1);
    const __m128i closed =
        _mm_or_si128(_mm_and_si128(pairs, firstPair), _mm_srli_si128(_mm_andnot_si128(firstPair, pairs), 2));
    _mm_storel_epi64((__m128i*)p, closed);
    const int last = _mm_cvtsi128_si32(_mm_srli_si128(closed, 8));
    memcpy(p + 8, &last, sizeof last);
}

LANES_INLINE void storePixels(uint8_t* p, const Pixels& lanes)
{
    const __m128i blueGreen = _mm_or_si128(lanes.blue, _mm_slli_epi16(lanes.green, 8));
    storePixels4(p, _mm_unpacklo_epi16(blueGreen, lanes.red));
    storePixels4(p + 12, _mm_unpackhi_epi16(blueGreen, lanes.red));
}

#include "color/kernels/adjust_lanes.h"

}  // namespace

const ColourMethod COLOUR_SSE2 = {toneBytes, toneLarge, colourPixels, colourPixels};

#endif
