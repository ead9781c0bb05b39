#include "color/adjust_methods.h"

#ifdef COLOUR_VECTORS

#include <cstring>
#include <immintrin.h>

#include "color/adjust_arithmetic.h"

// All lanes are unsigned or small signed 16-bit values; adjust_arithmetic.h has the reasons why the
// short forms are exact. Only these functions are compiled for AVX2; the rest of the library runs on
// any processor. Nothing here relies on a stack aligned to 32 bytes.
#define AVX2_CODE __attribute__((target("avx2")))
#define AVX2_INLINE static inline __attribute__((target("avx2"), always_inline))

bool avx2Supported()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2");
}

struct WideToneLine {
    __m256i partSlope, wholeSlope, offset;
};

AVX2_INLINE WideToneLine wideToneLine(const ColourAdjustment& adjustment)
{
    return WideToneLine{_mm256_set1_epi16((short)(adjustment.slope % TONE_DIVISOR)),
                        _mm256_set1_epi16((short)(adjustment.slope >= TONE_DIVISOR ? -1 : 0)),
                        _mm256_set1_epi16((short)adjustment.offset)};
}

AVX2_INLINE __m256i toneLanes(const WideToneLine& line, __m256i value)
{
    const __m256i part = _mm256_srli_epi16(
        _mm256_mulhi_epu16(_mm256_mullo_epi16(value, line.partSlope), _mm256_set1_epi16((short)TONE_RECIPROCAL)),
        TONE_SHIFT);
    return _mm256_add_epi16(_mm256_add_epi16(part, line.offset), _mm256_and_si256(value, line.wholeSlope));
}

AVX2_INLINE __m256i tone32(const WideToneLine& line, __m256i bytes)
{
    const __m256i zero = _mm256_setzero_si256();
    return _mm256_packus_epi16(toneLanes(line, _mm256_unpacklo_epi8(bytes, zero)),
                               toneLanes(line, _mm256_unpackhi_epi8(bytes, zero)));
}

AVX2_CODE void toneBytesAvx2(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target,
                             size_t byteCount)
{
    const WideToneLine line = wideToneLine(adjustment);
    size_t i = 0;
    for (; i + 32 <= byteCount; i += 32) {
        const __m256i bytes = _mm256_loadu_si256((const __m256i*)(source + i));
        _mm256_storeu_si256((__m256i*)(target + i), tone32(line, bytes));
    }
    toneBytesPlain(adjustment, source + i, target + i, byteCount - i);
}

struct WideLanes {
    __m256i blue, green, red;
};

AVX2_INLINE __m256i wide(int value)
{
    return _mm256_set1_epi16((short)value);
}

// 16-bit lanes as floats: the lower four and the upper four of each half.
struct WideFloats {
    __m256 low, high;
};

AVX2_INLINE WideFloats toFloats(__m256i lanes)
{
    const __m256i zero = _mm256_setzero_si256();
    return WideFloats{_mm256_cvtepi32_ps(_mm256_unpacklo_epi16(lanes, zero)),
                      _mm256_cvtepi32_ps(_mm256_unpackhi_epi16(lanes, zero))};
}

AVX2_INLINE __m256i roundedQuotient(__m256 numerator, __m256 divisor)
{
    return _mm256_cvttps_epi32(_mm256_add_ps(_mm256_div_ps(numerator, divisor), _mm256_set1_ps(0.5f)));
}

AVX2_INLINE __m256i divideRounding(WideFloats numerator, WideFloats divisor)
{
    return _mm256_packs_epi32(roundedQuotient(numerator.low, divisor.low),
                              roundedQuotient(numerator.high, divisor.high));
}

AVX2_INLINE WideFloats timesFullTurn(WideFloats value)
{
    const __m256 turn = _mm256_set1_ps(252);
    return WideFloats{_mm256_mul_ps(value.low, turn), _mm256_mul_ps(value.high, turn)};
}

// -252..503 to 0..251: the smaller one of two values, taken as unsigned, is the one that did not wrap.
AVX2_INLINE __m256i withinOneTurn(__m256i hue)
{
    hue = _mm256_min_epu16(hue, _mm256_add_epi16(hue, wide(252)));
    return _mm256_min_epu16(hue, _mm256_sub_epi16(hue, wide(252)));
}

struct WideHls {
    __m256i hue, lightness, saturation;
    __m256i bright; // all ones where the lightness is above 126
};

AVX2_INLINE __m256i hueLanes(const WideLanes& in, __m256i steps, __m256i otherHigher, __m256i shift)
{
    const __m256i blueAboveGreen = _mm256_cmpgt_epi16(in.blue, in.green);
    const __m256i backwards = _mm256_xor_si256(
        _mm256_xor_si256(_mm256_cmpgt_epi16(in.green, in.red), _mm256_cmpgt_epi16(in.blue, in.red)), blueAboveGreen);
    const __m256i third =
        _mm256_and_si256(otherHigher, _mm256_add_epi16(_mm256_and_si256(blueAboveGreen, wide(84)), wide(84)));
    const __m256i way = _mm256_sub_epi16(_mm256_xor_si256(steps, backwards), backwards);
    return withinOneTurn(_mm256_add_epi16(_mm256_add_epi16(third, shift), way));
}

AVX2_INLINE WideHls toHls(const WideLanes& in, __m256i factor, __m256i shift)
{
    const __m256i higher = _mm256_max_epi16(in.green, in.blue);
    const __m256i lower = _mm256_min_epi16(in.green, in.blue);
    const __m256i highest = _mm256_max_epi16(higher, in.red);
    const __m256i lowest = _mm256_min_epi16(lower, in.red);
    const __m256i middle = _mm256_max_epi16(lower, _mm256_min_epi16(higher, in.red));
    const __m256i sum = _mm256_add_epi16(highest, lowest);
    const __m256i d = _mm256_sub_epi16(highest, lowest);
    const WideFloats range = toFloats(d);

    const __m256i bright = _mm256_cmpgt_epi16(sum, wide(256));
    // 510 - sum where bright: the ones' complement and 511 more.
    const __m256i room = _mm256_add_epi16(_mm256_xor_si256(sum, bright), _mm256_and_si256(bright, wide(511)));
    __m256i saturation = divideRounding(timesFullTurn(range), toFloats(_mm256_max_epi16(room, wide(1))));
    saturation = _mm256_srli_epi16(_mm256_mullo_epi16(saturation, factor), 7);

    const __m256i distance = _mm256_mullo_epi16(_mm256_sub_epi16(highest, middle), wide(42));
    const __m256 one = _mm256_set1_ps(1);
    const __m256i steps = _mm256_sub_epi16(
        wide(42),
        divideRounding(toFloats(distance), WideFloats{_mm256_max_ps(range.low, one), _mm256_max_ps(range.high, one)}));

    return WideHls{hueLanes(in, steps, _mm256_cmpgt_epi16(higher, in.red), shift),
                   _mm256_mulhi_epu16(_mm256_add_epi16(sum, wide(1)), wide(LIGHTNESS_FACTOR)),
                   _mm256_min_epi16(saturation, wide(252)), bright};
}

// One channel: m1 + (2 * chroma * weight + 21) / 42, then to 0..255.
AVX2_INLINE __m256i channel(__m256i lowest, __m256i chroma, __m256i weight, __m256i rounding)
{
    const __m256i limited = _mm256_min_epi16(weight, wide(42));
    const __m256i raised =
        _mm256_mulhi_epu16(_mm256_add_epi16(_mm256_mullo_epi16(chroma, limited), wide(10)), wide(RECIPROCAL_21));
    const __m256i level = _mm256_add_epi16(lowest, raised);
    return _mm256_add_epi16(level, _mm256_mulhi_epu16(_mm256_add_epi16(level, rounding), wide(RECIPROCAL_84)));
}

AVX2_INLINE __m256i hueDistance(__m256i hue, int from)
{
    return _mm256_abs_epi16(_mm256_sub_epi16(hue, wide(from)));
}

AVX2_INLINE WideLanes fromHls(const WideHls& in)
{
    const __m256i nearer = _mm256_min_epi16(in.lightness, _mm256_sub_epi16(wide(252), in.lightness));
    // 126 for dark, 125 for bright: the mask is -1 there.
    const __m256i product =
        _mm256_add_epi16(_mm256_mullo_epi16(nearer, in.saturation), _mm256_add_epi16(in.bright, wide(126)));
    const __m256i chroma = _mm256_srli_epi16(_mm256_mulhi_epu16(product, wide(RECIPROCAL_252)), SHIFT_252);
    const __m256i base = _mm256_sub_epi16(in.lightness, chroma);
    const __m256i rounding = _mm256_sign_epi16(wide(42), in.saturation); // none where there is no saturation

    const __m256i redWeight = _mm256_subs_epu16(hueDistance(in.hue, 126), wide(42));
    const __m256i greenWeight = _mm256_subs_epu16(wide(84), hueDistance(in.hue, 84));
    const __m256i blueWeight = _mm256_subs_epu16(wide(84), hueDistance(in.hue, 168));
    return WideLanes{channel(base, chroma, blueWeight, rounding), channel(base, chroma, greenWeight, rounding),
                     channel(base, chroma, redWeight, rounding)};
}

AVX2_INLINE __m256i loadHalves(const uint8_t* low, const uint8_t* high)
{
    return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128((const __m128i*)low)),
                                   _mm_loadu_si128((const __m128i*)high), 1);
}

// 48 bytes into lanes; no byte beyond them is read. The lanes hold pixels 0-3, 8-11, 4-7, 12-15: the
// order that a half-wise unpack gives, and that storePixels expects.
AVX2_INLINE WideLanes loadPixels(const uint8_t* p)
{
    const __m256i first = loadHalves(p, p + 12);       // pixels 0-3 | 4-7
    const __m256i second = loadHalves(p + 24, p + 32); // pixels 8-11 | 12-15 from byte 4 on
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
    return WideLanes{_mm256_unpacklo_epi64(bg1, bg2), _mm256_unpackhi_epi64(bg1, bg2),
                     _mm256_unpacklo_epi64(_mm256_shuffle_epi8(first, red1), _mm256_shuffle_epi8(second, red2))};
}

// 12 bytes in each half, closed up and stored as 24 bytes.
AVX2_INLINE void storePixels8(uint8_t* p, __m256i pixels)
{
    const __m256i closed = _mm256_permutevar8x32_epi32(pixels, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
    _mm_storeu_si128((__m128i*)p, _mm256_castsi256_si128(closed));
    _mm_storel_epi64((__m128i*)(p + 16), _mm256_extracti128_si256(closed, 1));
}

AVX2_INLINE void storePixels(uint8_t* p, WideLanes lanes)
{
    const __m256i blueGreen = _mm256_or_si256(lanes.blue, _mm256_slli_epi16(lanes.green, 8));
    const __m256i close = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, 0, 1, 2, 4, 5, 6, 8,
                                           9, 10, 12, 13, 14, -1, -1, -1, -1);
    storePixels8(p, _mm256_shuffle_epi8(_mm256_unpacklo_epi16(blueGreen, lanes.red), close));
    storePixels8(p + 24, _mm256_shuffle_epi8(_mm256_unpackhi_epi16(blueGreen, lanes.red), close));
}

static const size_t PIXELS = 16;

AVX2_CODE void hlsPixelsAvx2(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount)
{
    const __m256i factor = wide(adjustment.saturationFactor);
    const __m256i shift = wide(adjustment.hueShift);
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
