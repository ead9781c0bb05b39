#include "color/kernels/adjust_methods.h"

#ifdef VECTOR_CODE

#include <cstring>

#include "color/kernels/adjust_arithmetic.h"
#include "image/pixels/avx512_intrinsics.h"

namespace {

#include "image/pixels/words_avx512.h"

constexpr size_t LANE_COUNT = 32;
typedef __mmask32 Truth;
typedef __m512 FloatPart;

#include "color/kernels/lane_words.h"

struct Pixels {
    Vector blue, green, red;
};

LANES_INLINE Vector smallerUnsigned(Vector a, Vector b)
{
    return _mm512_min_epu16(a, b);
}

LANES_INLINE Vector distance(Vector a, Vector b)
{
    return _mm512_abs_epi16(subtract(a, b));
}

LANES_INLINE Truth isGreater(Vector a, Vector b)
{
    return _mm512_cmpgt_epi16_mask(a, b);
}

LANES_INLINE Truth oddNumberOf(Truth a, Truth b, Truth c)
{
    return a ^ b ^ c;
}

LANES_INLINE Vector addWhere(Truth truth, Vector a, Vector b)
{
    return _mm512_mask_add_epi16(a, truth, a, b);
}

LANES_INLINE Vector negateWhere(Truth truth, Vector a)
{
    return _mm512_mask_sub_epi16(a, truth, _mm512_setzero_si512(), a);
}

// Byte permutations between 96 bytes of pixels and lanes. They pick from two registers side by side,
// numbered 0..127. Loading, the second register begins 32 bytes after the first; storing, the first one
// holds blue and green bytes in turn, the second one red in its even bytes.
struct Shuffles {
    uint8_t blue[64], green[64], red[64];  // every other byte counts
    uint8_t first[64], last[64];           // stored bytes 0..63 and 64..95
};

constexpr uint8_t loadedByte(int offset)
{
    return (uint8_t)(offset < 64 ? offset : offset + 32);
}

constexpr uint8_t storedByte(int offset)
{
    const int pixel = offset / 3, channelByte = offset % 3;
    return (uint8_t)(pixel * 2 + (channelByte == 2 ? 64 : channelByte));
}

constexpr Shuffles makeShuffles()
{
    Shuffles s = {};
    for (int i = 0; i < 32; ++i) {
        s.blue[i * 2] = loadedByte(i * 3);
        s.green[i * 2] = loadedByte(i * 3 + 1);
        s.red[i * 2] = loadedByte(i * 3 + 2);
        s.last[i] = storedByte(64 + i);
    }
    for (int i = 0; i < 64; ++i) {
        s.first[i] = storedByte(i);
    }
    return s;
}

constexpr Shuffles SHUFFLES = makeShuffles();

LANES_INLINE Pixels loadPixels(const uint8_t* p)
{
    const __m512i first = _mm512_loadu_si512(p), second = _mm512_loadu_si512(p + 32);
    const __mmask64 even = 0x5555555555555555u;
    return Pixels{_mm512_maskz_permutex2var_epi8(even, first, _mm512_loadu_si512(SHUFFLES.blue), second),
                  _mm512_maskz_permutex2var_epi8(even, first, _mm512_loadu_si512(SHUFFLES.green), second),
                  _mm512_maskz_permutex2var_epi8(even, first, _mm512_loadu_si512(SHUFFLES.red), second)};
}

LANES_INLINE void storePixels(uint8_t* p, const Pixels& lanes)
{
    const __m512i blueGreen = _mm512_or_si512(lanes.blue, _mm512_slli_epi16(lanes.green, 8));
    _mm512_storeu_si512(p, _mm512_permutex2var_epi8(blueGreen, _mm512_loadu_si512(SHUFFLES.first), lanes.red));
    const __m512i last = _mm512_permutex2var_epi8(blueGreen, _mm512_loadu_si512(SHUFFLES.last), lanes.red);
    _mm256_storeu_si256((__m256i*)(p + 64), _mm512_castsi512_si256(last));
}

#include "color/kernels/adjust_lanes.h"

}  // namespace

VECTOR_FUNCTION void toneBytesAvx512(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target,
                                     size_t byteCount)
{
    toneBytes(adjustment, source, target, byteCount);
}

VECTOR_FUNCTION void hlsPixelsAvx512(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount)
{
    hlsPixels(adjustment, pixels, pixelCount);
}

#endif
