#include "color/adjust_methods.h"

#ifdef COLOUR_VECTORS

#include <cstring>
#include <emmintrin.h>

#include "color/adjust_arithmetic.h"

// All lanes are unsigned or small signed 16-bit values; adjust_arithmetic.h has the reasons why the
// short forms are exact.

namespace {

struct ToneLine {
    __m128i partSlope, wholeSlope, offset;
};

ToneLine toneLine(const ColourAdjustment& adjustment)
{
    return ToneLine{_mm_set1_epi16((short)(adjustment.slope % TONE_DIVISOR)),
                    _mm_set1_epi16((short)(adjustment.slope >= TONE_DIVISOR ? -1 : 0)),
                    _mm_set1_epi16((short)adjustment.offset)};
}

inline __m128i toneLanes(const ToneLine& line, __m128i value)
{
    const __m128i part = _mm_srli_epi16(
        _mm_mulhi_epu16(_mm_mullo_epi16(value, line.partSlope), _mm_set1_epi16((short)TONE_RECIPROCAL)), TONE_SHIFT);
    return _mm_add_epi16(_mm_add_epi16(part, line.offset), _mm_and_si128(value, line.wholeSlope));
}

inline __m128i tone16(const ToneLine& line, __m128i bytes)
{
    const __m128i zero = _mm_setzero_si128();
    return _mm_packus_epi16(toneLanes(line, _mm_unpacklo_epi8(bytes, zero)),
                            toneLanes(line, _mm_unpackhi_epi8(bytes, zero)));
}

struct Lanes {
    __m128i blue, green, red;
};

inline __m128i lanes16(int value)
{
    return _mm_set1_epi16((short)value);
}

// 16-bit lanes as floats: the lower four and the upper four.
struct Floats {
    __m128 low, high;
};

inline Floats toFloats(__m128i lanes)
{
    const __m128i zero = _mm_setzero_si128();
    return Floats{_mm_cvtepi32_ps(_mm_unpacklo_epi16(lanes, zero)), _mm_cvtepi32_ps(_mm_unpackhi_epi16(lanes, zero))};
}

inline __m128i roundedQuotient(__m128 numerator, __m128 divisor)
{
    return _mm_cvttps_epi32(_mm_add_ps(_mm_div_ps(numerator, divisor), _mm_set1_ps(0.5f)));
}

inline __m128i divideRounding(Floats numerator, Floats divisor)
{
    return _mm_packs_epi32(roundedQuotient(numerator.low, divisor.low), roundedQuotient(numerator.high, divisor.high));
}

inline Floats timesFullTurn(Floats value)
{
    const __m128 turn = _mm_set1_ps(252);
    return Floats{_mm_mul_ps(value.low, turn), _mm_mul_ps(value.high, turn)};
}

// -252..503 to 0..251.
inline __m128i withinOneTurn(__m128i hue)
{
    hue = _mm_add_epi16(hue, _mm_and_si128(_mm_srai_epi16(hue, 15), lanes16(252)));
    return _mm_sub_epi16(hue, _mm_and_si128(_mm_cmpgt_epi16(hue, lanes16(251)), lanes16(252)));
}

struct Hls {
    __m128i hue, lightness, saturation;
    __m128i bright; // all ones where the lightness is above 126
};

inline __m128i hueLanes(const Lanes& in, __m128i steps, __m128i otherHigher, __m128i shift)
{
    const __m128i blueAboveGreen = _mm_cmpgt_epi16(in.blue, in.green);
    const __m128i backwards = _mm_xor_si128(
        _mm_xor_si128(_mm_cmpgt_epi16(in.green, in.red), _mm_cmpgt_epi16(in.blue, in.red)), blueAboveGreen);
    const __m128i third =
        _mm_and_si128(otherHigher, _mm_add_epi16(_mm_and_si128(blueAboveGreen, lanes16(84)), lanes16(84)));
    const __m128i way = _mm_sub_epi16(_mm_xor_si128(steps, backwards), backwards);
    return withinOneTurn(_mm_add_epi16(_mm_add_epi16(third, shift), way));
}

inline Hls toHls(const Lanes& in, __m128i factor, __m128i shift)
{
    const __m128i higher = _mm_max_epi16(in.green, in.blue);
    const __m128i lower = _mm_min_epi16(in.green, in.blue);
    const __m128i highest = _mm_max_epi16(higher, in.red);
    const __m128i lowest = _mm_min_epi16(lower, in.red);
    const __m128i middle = _mm_max_epi16(lower, _mm_min_epi16(higher, in.red));
    const __m128i sum = _mm_add_epi16(highest, lowest);
    const __m128i d = _mm_sub_epi16(highest, lowest);
    const Floats range = toFloats(d);

    const __m128i bright = _mm_cmpgt_epi16(sum, lanes16(256));
    // 510 - sum where bright: the ones' complement and 511 more.
    const __m128i room = _mm_add_epi16(_mm_xor_si128(sum, bright), _mm_and_si128(bright, lanes16(511)));
    __m128i saturation = divideRounding(timesFullTurn(range), toFloats(_mm_max_epi16(room, lanes16(1))));
    saturation = _mm_srli_epi16(_mm_mullo_epi16(saturation, factor), 7);

    const __m128i distance = _mm_mullo_epi16(_mm_sub_epi16(highest, middle), lanes16(42));
    const __m128 one = _mm_set1_ps(1);
    const __m128i steps =
        _mm_sub_epi16(lanes16(42), divideRounding(toFloats(distance),
                                                  Floats{_mm_max_ps(range.low, one), _mm_max_ps(range.high, one)}));

    return Hls{hueLanes(in, steps, _mm_cmpgt_epi16(higher, in.red), shift),
               _mm_mulhi_epu16(_mm_add_epi16(sum, lanes16(1)), lanes16(LIGHTNESS_FACTOR)),
               _mm_min_epi16(saturation, lanes16(252)), bright};
}

// One channel: m1 + (2 * chroma * weight + 21) / 42, then to 0..255.
inline __m128i channel(__m128i lowest, __m128i chroma, __m128i weight, __m128i rounding)
{
    const __m128i limited = _mm_min_epi16(weight, lanes16(42));
    const __m128i raised =
        _mm_mulhi_epu16(_mm_add_epi16(_mm_mullo_epi16(chroma, limited), lanes16(10)), lanes16(RECIPROCAL_21));
    const __m128i level = _mm_add_epi16(lowest, raised);
    return _mm_add_epi16(level, _mm_mulhi_epu16(_mm_add_epi16(level, rounding), lanes16(RECIPROCAL_84)));
}

inline __m128i hueDistance(__m128i hue, int from)
{
    return _mm_sub_epi16(_mm_max_epi16(hue, lanes16(from)), _mm_min_epi16(hue, lanes16(from)));
}

inline Lanes fromHls(const Hls& in)
{
    const __m128i nearer = _mm_min_epi16(in.lightness, _mm_sub_epi16(lanes16(252), in.lightness));
    // 126 for dark, 125 for bright: the mask is -1 there.
    const __m128i product =
        _mm_add_epi16(_mm_mullo_epi16(nearer, in.saturation), _mm_add_epi16(in.bright, lanes16(126)));
    const __m128i chroma = _mm_srli_epi16(_mm_mulhi_epu16(product, lanes16(RECIPROCAL_252)), SHIFT_252);
    const __m128i base = _mm_sub_epi16(in.lightness, chroma);
    const __m128i rounding =
        _mm_and_si128(_mm_cmpgt_epi16(in.saturation, _mm_setzero_si128()), lanes16(42)); // none without saturation

    const __m128i redWeight = _mm_subs_epu16(hueDistance(in.hue, 126), lanes16(42));
    const __m128i greenWeight = _mm_subs_epu16(lanes16(84), hueDistance(in.hue, 84));
    const __m128i blueWeight = _mm_subs_epu16(lanes16(84), hueDistance(in.hue, 168));
    return Lanes{channel(base, chroma, blueWeight, rounding), channel(base, chroma, greenWeight, rounding),
                 channel(base, chroma, redWeight, rounding)};
}

inline __m128i load4(const uint8_t* bytes)
{
    int value;
    memcpy(&value, bytes, sizeof value);
    return _mm_cvtsi32_si128(value);
}

inline __m128i join4(__m128i a, __m128i b, __m128i c, __m128i d)
{
    return _mm_unpacklo_epi64(_mm_unpacklo_epi32(a, b), _mm_unpacklo_epi32(c, d));
}

// 24 bytes into lanes; no byte beyond them is read.
inline Lanes loadPixels(const uint8_t* p)
{
    const __m128i low = join4(load4(p), load4(p + 3), load4(p + 6), load4(p + 9));
    const __m128i high = join4(load4(p + 12), load4(p + 15), load4(p + 18), _mm_srli_epi32(load4(p + 20), 8));
    const __m128i byte = _mm_set1_epi32(255);
    return Lanes{
        _mm_packs_epi32(_mm_and_si128(low, byte), _mm_and_si128(high, byte)),
        _mm_packs_epi32(_mm_and_si128(_mm_srli_epi32(low, 8), byte), _mm_and_si128(_mm_srli_epi32(high, 8), byte)),
        _mm_packs_epi32(_mm_and_si128(_mm_srli_epi32(low, 16), byte), _mm_and_si128(_mm_srli_epi32(high, 16), byte))};
}

// Four pixels of 32 bits, the highest byte 0, closed up and stored as 12 bytes.
inline void storePixels4(uint8_t* p, __m128i pixels)
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

inline void storePixels(uint8_t* p, Lanes lanes)
{
    const __m128i blueGreen = _mm_or_si128(lanes.blue, _mm_slli_epi16(lanes.green, 8));
    storePixels4(p, _mm_unpacklo_epi16(blueGreen, lanes.red));
    storePixels4(p + 12, _mm_unpackhi_epi16(blueGreen, lanes.red));
}

const size_t PIXELS = 8;

} // namespace

void toneBytesSse2(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t byteCount)
{
    const ToneLine line = toneLine(adjustment);
    size_t i = 0;
    for (; i + 16 <= byteCount; i += 16) {
        const __m128i bytes = _mm_loadu_si128((const __m128i*)(source + i));
        _mm_storeu_si128((__m128i*)(target + i), tone16(line, bytes));
    }
    toneBytesPlain(adjustment, source + i, target + i, byteCount - i);
}

void hlsPixelsSse2(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount)
{
    const __m128i factor = _mm_set1_epi16((short)adjustment.saturationFactor);
    const __m128i shift = _mm_set1_epi16((short)adjustment.hueShift);
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
