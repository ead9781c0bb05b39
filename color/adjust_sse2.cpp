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

inline __m128i choose(__m128i mask, __m128i yes, __m128i no)
{
    return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}

inline __m128 quotient(__m128i numerator32, __m128i divisor32)
{
    return _mm_div_ps(_mm_cvtepi32_ps(numerator32), _mm_cvtepi32_ps(divisor32));
}

inline __m128i divide(__m128i numerator, __m128i divisor)
{
    const __m128i zero = _mm_setzero_si128();
    const __m128 low = quotient(_mm_unpacklo_epi16(numerator, zero), _mm_unpacklo_epi16(divisor, zero));
    const __m128 high = quotient(_mm_unpackhi_epi16(numerator, zero), _mm_unpackhi_epi16(divisor, zero));
    return _mm_packs_epi32(_mm_cvttps_epi32(low), _mm_cvttps_epi32(high));
}

inline __m128i distance(__m128i a, __m128i b)
{
    const __m128i difference = _mm_sub_epi16(a, b);
    return _mm_max_epi16(difference, _mm_sub_epi16(_mm_setzero_si128(), difference));
}

inline __m128i turnUp(__m128i hue)
{
    return _mm_add_epi16(hue, _mm_and_si128(_mm_srai_epi16(hue, 15), _mm_set1_epi16(252)));
}

// One channel: m1 + (2 * chroma * weight + 21) / 42, then to 0..255.
inline __m128i channel(__m128i lowest, __m128i chroma, __m128i weight, __m128i rounding)
{
    const __m128i raised = _mm_mulhi_epu16(_mm_add_epi16(_mm_mullo_epi16(chroma, weight), _mm_set1_epi16(10)),
                                           _mm_set1_epi16(RECIPROCAL_21));
    const __m128i level = _mm_add_epi16(lowest, raised);
    return _mm_add_epi16(level, _mm_mulhi_epu16(_mm_add_epi16(level, rounding), _mm_set1_epi16(RECIPROCAL_84)));
}

inline Lanes hlsLanes(Lanes in, __m128i factor, __m128i shift)
{
    const __m128i one = _mm_set1_epi16(1);
    const __m128i highest = _mm_max_epi16(_mm_max_epi16(in.red, in.green), in.blue);
    const __m128i lowest = _mm_min_epi16(_mm_min_epi16(in.red, in.green), in.blue);
    const __m128i sum = _mm_add_epi16(highest, lowest);
    const __m128i d = _mm_sub_epi16(highest, lowest);
    const __m128i middle = _mm_sub_epi16(_mm_add_epi16(_mm_add_epi16(in.red, in.green), in.blue), sum);

    // Lightness and saturation. Gray has d = 0, so its saturation comes out as 0 by itself.
    const __m128i lightness =
        _mm_srli_epi16(_mm_mulhi_epu16(_mm_add_epi16(_mm_mullo_epi16(sum, _mm_set1_epi16(84)), _mm_set1_epi16(85)),
                                       _mm_set1_epi16((short)RECIPROCAL_170)),
                       SHIFT_170);
    const __m128i bright = _mm_cmpgt_epi16(lightness, _mm_set1_epi16(126));
    const __m128i divisor =
        _mm_max_epi16(choose(bright, _mm_sub_epi16(_mm_set1_epi16(510), sum), sum), one);
    __m128i saturation = divide(
        _mm_add_epi16(_mm_mullo_epi16(d, _mm_set1_epi16(252)), _mm_srli_epi16(divisor, 1)), divisor);
    saturation = _mm_srli_epi16(_mm_mullo_epi16(saturation, factor), 7);
    saturation = _mm_min_epi16(saturation, _mm_set1_epi16(252));

    // Hue: so many steps to one side of the highest channel's third.
    const __m128i way =
        divide(_mm_add_epi16(_mm_mullo_epi16(_mm_sub_epi16(highest, middle), _mm_set1_epi16(42)),
                             _mm_srli_epi16(d, 1)),
               _mm_max_epi16(d, one));
    const __m128i steps = _mm_sub_epi16(_mm_set1_epi16(42), way);
    const __m128i redHighest = _mm_cmpeq_epi16(in.red, highest);
    const __m128i greenHighest = _mm_cmpeq_epi16(in.green, highest);
    const __m128i third = choose(redHighest, _mm_setzero_si128(),
                                 choose(greenHighest, _mm_set1_epi16(84), _mm_set1_epi16(168)));
    const __m128i side = choose(redHighest, _mm_sub_epi16(in.green, in.blue),
                                choose(greenHighest, _mm_sub_epi16(in.blue, in.red), _mm_sub_epi16(in.red, in.green)));
    const __m128i backwards = _mm_srai_epi16(side, 15);
    __m128i hue = _mm_add_epi16(third, _mm_sub_epi16(_mm_xor_si128(steps, backwards), backwards));
    hue = turnUp(hue);
    hue = turnUp(_mm_add_epi16(hue, shift));
    hue = _mm_sub_epi16(hue, _mm_and_si128(_mm_cmpgt_epi16(hue, _mm_set1_epi16(252)), _mm_set1_epi16(252)));

    // Back to red, green and blue.
    const __m128i product = _mm_add_epi16(_mm_mullo_epi16(lightness, saturation), _mm_set1_epi16(126));
    const __m128i part =
        _mm_srli_epi16(_mm_mulhi_epu16(_mm_srli_epi16(product, 2), _mm_set1_epi16((short)RECIPROCAL_63)), SHIFT_63);
    const __m128i chroma = choose(bright, _mm_sub_epi16(saturation, part), part);
    const __m128i base = _mm_sub_epi16(lightness, chroma);
    const __m128i rounding =
        _mm_andnot_si128(_mm_cmpeq_epi16(saturation, _mm_setzero_si128()), _mm_set1_epi16(42));

    const __m128i sixth = _mm_set1_epi16(42);
    const __m128i redWeight = _mm_subs_epu16(distance(hue, _mm_set1_epi16(126)), sixth);
    const __m128i greenWeight = _mm_subs_epu16(_mm_set1_epi16(84), distance(hue, _mm_set1_epi16(84)));
    const __m128i blueWeight = _mm_subs_epu16(_mm_set1_epi16(84), distance(hue, _mm_set1_epi16(168)));
    return Lanes{channel(base, chroma, _mm_min_epi16(blueWeight, sixth), rounding),
                 channel(base, chroma, _mm_min_epi16(greenWeight, sixth), rounding),
                 channel(base, chroma, _mm_min_epi16(redWeight, sixth), rounding)};
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
        storePixels(pixels, hlsLanes(loadPixels(pixels), factor, shift));
    }
    if (pixelCount > 0) {
        uint8_t rest[PIXELS * 3] = {};
        memcpy(rest, pixels, pixelCount * 3);
        storePixels(rest, hlsLanes(loadPixels(rest), factor, shift));
        memcpy(pixels, rest, pixelCount * 3);
    }
}

#endif
