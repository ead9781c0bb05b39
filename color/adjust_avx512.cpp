#include "color/adjust_methods.h"

#ifdef COLOUR_VECTORS

#include <cstring>

// GCC 12 takes the deliberately undefined inputs inside this header's own functions for mistakes.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <immintrin.h>
#pragma GCC diagnostic pop

#include "color/adjust_arithmetic.h"

// All lanes are unsigned or small signed 16-bit values; adjust_arithmetic.h has the reasons why the
// short forms are exact. Only these functions are compiled for AVX-512 (with its byte permutations).
// Nothing here relies on a stack aligned to 64 bytes.
#define AVX512_CODE __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi")))
#define AVX512_INLINE static inline __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi"), always_inline))

bool avx512Supported()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
           __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi");
}

AVX512_INLINE __m512i lanes32(int value)
{
    return _mm512_set1_epi16((short)value);
}

struct WidestToneLine {
    __m512i partSlope, wholeSlope, offset;
};

AVX512_INLINE WidestToneLine widestToneLine(const ColourAdjustment& adjustment)
{
    return WidestToneLine{lanes32(adjustment.slope % TONE_DIVISOR), lanes32(adjustment.slope >= TONE_DIVISOR ? -1 : 0),
                          lanes32(adjustment.offset)};
}

AVX512_INLINE __m512i toneLanes(const WidestToneLine& line, __m512i value)
{
    const __m512i part = _mm512_srli_epi16(
        _mm512_mulhi_epu16(_mm512_mullo_epi16(value, line.partSlope), lanes32(TONE_RECIPROCAL)), TONE_SHIFT);
    return _mm512_add_epi16(_mm512_add_epi16(part, line.offset), _mm512_and_si512(value, line.wholeSlope));
}

AVX512_INLINE __m512i tone64(const WidestToneLine& line, __m512i bytes)
{
    const __m512i zero = _mm512_setzero_si512();
    return _mm512_packus_epi16(toneLanes(line, _mm512_unpacklo_epi8(bytes, zero)),
                               toneLanes(line, _mm512_unpackhi_epi8(bytes, zero)));
}

AVX512_CODE void toneBytesAvx512(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target,
                                 size_t byteCount)
{
    const WidestToneLine line = widestToneLine(adjustment);
    size_t i = 0;
    for (; i + 64 <= byteCount; i += 64) {
        _mm512_storeu_si512(target + i, tone64(line, _mm512_loadu_si512(source + i)));
    }
    toneBytesPlain(adjustment, source + i, target + i, byteCount - i);
}

struct WidestLanes {
    __m512i blue, green, red;
};

// 16-bit lanes as floats: the lower four and the upper four of each quarter.
struct WidestFloats {
    __m512 low, high;
};

AVX512_INLINE WidestFloats toFloats(__m512i lanes)
{
    const __m512i zero = _mm512_setzero_si512();
    return WidestFloats{_mm512_cvtepi32_ps(_mm512_unpacklo_epi16(lanes, zero)),
                        _mm512_cvtepi32_ps(_mm512_unpackhi_epi16(lanes, zero))};
}

AVX512_INLINE __m512i roundedQuotient(__m512 numerator, __m512 divisor)
{
    return _mm512_cvttps_epi32(_mm512_add_ps(_mm512_div_ps(numerator, divisor), _mm512_set1_ps(0.5f)));
}

AVX512_INLINE __m512i divideRounding(WidestFloats numerator, WidestFloats divisor)
{
    return _mm512_packs_epi32(roundedQuotient(numerator.low, divisor.low),
                              roundedQuotient(numerator.high, divisor.high));
}

AVX512_INLINE WidestFloats timesFullTurn(WidestFloats value)
{
    const __m512 turn = _mm512_set1_ps(252);
    return WidestFloats{_mm512_mul_ps(value.low, turn), _mm512_mul_ps(value.high, turn)};
}

// -252..503 to 0..251: the smaller one of two values, taken as unsigned, is the one that did not wrap.
AVX512_INLINE __m512i withinOneTurn(__m512i hue)
{
    hue = _mm512_min_epu16(hue, _mm512_add_epi16(hue, lanes32(252)));
    return _mm512_min_epu16(hue, _mm512_sub_epi16(hue, lanes32(252)));
}

struct WidestHls {
    __m512i hue, lightness, saturation;
    __mmask32 bright; // where the lightness is above 126
};

AVX512_INLINE __m512i hueLanes(const WidestLanes& in, __m512i steps, __mmask32 otherHigher, __m512i shift)
{
    const __mmask32 blueAboveGreen = _mm512_cmpgt_epi16_mask(in.blue, in.green);
    const __mmask32 backwards =
        _mm512_cmpgt_epi16_mask(in.green, in.red) ^ _mm512_cmpgt_epi16_mask(in.blue, in.red) ^ blueAboveGreen;
    const __m512i third = _mm512_mask_blend_epi16(blueAboveGreen, lanes32(84), lanes32(168));
    const __m512i start = _mm512_mask_add_epi16(shift, otherHigher, shift, third);
    const __m512i way = _mm512_mask_sub_epi16(steps, backwards, _mm512_setzero_si512(), steps);
    return withinOneTurn(_mm512_add_epi16(start, way));
}

AVX512_INLINE WidestHls toHls(const WidestLanes& in, __m512i factor, __m512i shift)
{
    const __m512i higher = _mm512_max_epi16(in.green, in.blue);
    const __m512i lower = _mm512_min_epi16(in.green, in.blue);
    const __m512i highest = _mm512_max_epi16(higher, in.red);
    const __m512i lowest = _mm512_min_epi16(lower, in.red);
    const __m512i middle = _mm512_max_epi16(lower, _mm512_min_epi16(higher, in.red));
    const __m512i sum = _mm512_add_epi16(highest, lowest);
    const __m512i d = _mm512_sub_epi16(highest, lowest);
    const WidestFloats range = toFloats(d);

    const __mmask32 bright = _mm512_cmpgt_epi16_mask(sum, lanes32(256));
    const __m512i room = _mm512_mask_sub_epi16(sum, bright, lanes32(510), sum);
    __m512i saturation = divideRounding(timesFullTurn(range), toFloats(_mm512_max_epi16(room, lanes32(1))));
    saturation = _mm512_srli_epi16(_mm512_mullo_epi16(saturation, factor), 7);

    const __m512i distance = _mm512_mullo_epi16(_mm512_sub_epi16(highest, middle), lanes32(42));
    const __m512 one = _mm512_set1_ps(1);
    const __m512i steps =
        _mm512_sub_epi16(lanes32(42), divideRounding(toFloats(distance), WidestFloats{_mm512_max_ps(range.low, one),
                                                                                      _mm512_max_ps(range.high, one)}));

    return WidestHls{hueLanes(in, steps, _mm512_cmpgt_epi16_mask(higher, in.red), shift),
                     _mm512_mulhi_epu16(_mm512_add_epi16(sum, lanes32(1)), lanes32(LIGHTNESS_FACTOR)),
                     _mm512_min_epi16(saturation, lanes32(252)), bright};
}

// One channel: m1 + (2 * chroma * weight + 21) / 42, then to 0..255.
AVX512_INLINE __m512i channel(__m512i lowest, __m512i chroma, __m512i weight, __m512i rounding)
{
    const __m512i limited = _mm512_min_epi16(weight, lanes32(42));
    const __m512i raised =
        _mm512_mulhi_epu16(_mm512_add_epi16(_mm512_mullo_epi16(chroma, limited), lanes32(10)), lanes32(RECIPROCAL_21));
    const __m512i level = _mm512_add_epi16(lowest, raised);
    return _mm512_add_epi16(level, _mm512_mulhi_epu16(_mm512_add_epi16(level, rounding), lanes32(RECIPROCAL_84)));
}

AVX512_INLINE __m512i hueDistance(__m512i hue, int from)
{
    return _mm512_abs_epi16(_mm512_sub_epi16(hue, lanes32(from)));
}

AVX512_INLINE WidestLanes fromHls(const WidestHls& in)
{
    const __m512i nearer = _mm512_min_epi16(in.lightness, _mm512_sub_epi16(lanes32(252), in.lightness));
    const __m512i product = _mm512_add_epi16(_mm512_mullo_epi16(nearer, in.saturation),
                                             _mm512_mask_blend_epi16(in.bright, lanes32(126), lanes32(125)));
    const __m512i chroma = _mm512_srli_epi16(_mm512_mulhi_epu16(product, lanes32(RECIPROCAL_252)), SHIFT_252);
    const __m512i base = _mm512_sub_epi16(in.lightness, chroma);
    const __mmask32 coloured = _mm512_test_epi16_mask(in.saturation, in.saturation);
    const __m512i rounding = _mm512_maskz_mov_epi16(coloured, lanes32(42));

    const __m512i redWeight = _mm512_subs_epu16(hueDistance(in.hue, 126), lanes32(42));
    const __m512i greenWeight = _mm512_subs_epu16(lanes32(84), hueDistance(in.hue, 84));
    const __m512i blueWeight = _mm512_subs_epu16(lanes32(84), hueDistance(in.hue, 168));
    return WidestLanes{channel(base, chroma, blueWeight, rounding), channel(base, chroma, greenWeight, rounding),
                       channel(base, chroma, redWeight, rounding)};
}

static const size_t PIXELS = 32;

// Byte permutations between 96 bytes of pixels and lanes. They pick from two registers side by side,
// numbered 0..127. Loading, the second register begins 32 bytes after the first; storing, the first one
// holds blue and green bytes in turn, the second one red in its even bytes.
struct Shuffles {
    uint8_t blue[64], green[64], red[64]; // every other byte counts
    uint8_t first[64], last[64];          // stored bytes 0..63 and 64..95
};

static constexpr uint8_t loadedByte(int offset)
{
    return (uint8_t)(offset < 64 ? offset : offset + 32);
}

static constexpr uint8_t storedByte(int offset)
{
    const int pixel = offset / 3, channelByte = offset % 3;
    return (uint8_t)(pixel * 2 + (channelByte == 2 ? 64 : channelByte));
}

static constexpr Shuffles makeShuffles()
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

static constexpr Shuffles SHUFFLES = makeShuffles();

AVX512_INLINE WidestLanes loadPixels(const uint8_t* p)
{
    const __m512i first = _mm512_loadu_si512(p), second = _mm512_loadu_si512(p + 32);
    const __mmask64 even = 0x5555555555555555u;
    return WidestLanes{_mm512_maskz_permutex2var_epi8(even, first, _mm512_loadu_si512(SHUFFLES.blue), second),
                       _mm512_maskz_permutex2var_epi8(even, first, _mm512_loadu_si512(SHUFFLES.green), second),
                       _mm512_maskz_permutex2var_epi8(even, first, _mm512_loadu_si512(SHUFFLES.red), second)};
}

AVX512_INLINE void storePixels(uint8_t* p, const WidestLanes& lanes)
{
    const __m512i blueGreen = _mm512_or_si512(lanes.blue, _mm512_slli_epi16(lanes.green, 8));
    _mm512_storeu_si512(p, _mm512_permutex2var_epi8(blueGreen, _mm512_loadu_si512(SHUFFLES.first), lanes.red));
    const __m512i last = _mm512_permutex2var_epi8(blueGreen, _mm512_loadu_si512(SHUFFLES.last), lanes.red);
    _mm256_storeu_si256((__m256i*)(p + 64), _mm512_castsi512_si256(last));
}

AVX512_CODE void hlsPixelsAvx512(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount)
{
    const __m512i factor = lanes32(adjustment.saturationFactor);
    const __m512i shift = lanes32(adjustment.hueShift);
    for (; pixelCount >= PIXELS; pixelCount -= PIXELS, pixels += PIXELS * 3) {
        storePixels(pixels, fromHls(toHls(loadPixels(pixels), factor, shift)));
    }
    if (pixelCount > 0) {
        uint8_t rest[PIXELS * 3] = {};
        memcpy(rest, pixels, pixelCount * 3);
        storePixels(rest, fromHls(toHls(loadPixels(rest), factor, shift)));
        memcpy(pixels, rest, pixelCount * 3);
    }
}

#endif
