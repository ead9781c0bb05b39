// The colour arithmetic on lanes of 16 bits, told once for vectors of any width. adjust_arithmetic.h has
// the reasons why these short forms are exact.
//
// No ordinary header: a source file says what its vectors can do, then includes this, and has the functions of a
// ColourMethod.
// Everything is LANES_INLINE, so that nothing of one width gets into another. Besides the words of
// image/pixels/vector_words.h and color/kernels/lane_words.h the file has
//   LANE_COUNT              how many lanes
//   Truth                   yes or no for each lane
//   smallerUnsigned, distance (of signed values)
//   isGreater(a, b)         signed; oddNumberOf(a, b, c): of three truths
//   addWhere(truth, a, b)   a + b there, else a
//   negateWhere(truth, a)   -a there, else a
//   Pixels {blue, green, red}, loadPixels, storePixels: LANE_COUNT pixels, no byte more
#pragma once

#include "color/kernels/tone_line_lanes.h"
#include "color/kernels/tone_lanes.h"

// ---- divisions

struct Floats {
    FloatPart low, high;
};

LANES_INLINE Floats toFloats(Vector lanes)
{
    return Floats{lowFloats(lanes), highFloats(lanes)};
}

LANES_INLINE Floats multiplied(const Floats& value, float factor)
{
    return Floats{multiplyFloats(value.low, allFloats(factor)), multiplyFloats(value.high, allFloats(factor))};
}

LANES_INLINE Floats atLeast(const Floats& value, float least)
{
    return Floats{largerFloats(value.low, allFloats(least)), largerFloats(value.high, allFloats(least))};
}

LANES_INLINE Vector divideRounding(const Floats& numerator, const Floats& divisor)
{
    return packNumbers(roundedQuotient(numerator.low, divisor.low), roundedQuotient(numerator.high, divisor.high));
}

// ---- to hue, lightness and saturation

struct Hls {
    Vector hue, lightness, saturation;
    Truth bright;  // the lightness is above 126
};

// -252..503 to 0..251: the smaller one of two values, taken as unsigned, is the one that did not wrap.
LANES_INLINE Vector withinOneTurn(Vector hue)
{
    hue = smallerUnsigned(hue, add(hue, all(252)));
    return smallerUnsigned(hue, subtract(hue, all(252)));
}

LANES_INLINE Vector hueOf(const Pixels& in, Vector steps, Vector higherOther, Vector shift)
{
    const Truth blueAboveGreen = isGreater(in.blue, in.green);
    const Truth backwards = oddNumberOf(isGreater(in.green, in.red), isGreater(in.blue, in.red), blueAboveGreen);
    const Vector third = addWhere(blueAboveGreen, all(84), all(84));
    const Vector start = addWhere(isGreater(higherOther, in.red), shift, third);
    return withinOneTurn(add(start, negateWhere(backwards, steps)));
}

LANES_INLINE Hls toHls(const Pixels& in, Vector factor, Vector shift)
{
    const Vector higher = larger(in.green, in.blue), lower = smaller(in.green, in.blue);
    const Vector highest = larger(higher, in.red), lowest = smaller(lower, in.red);
    const Vector middle = larger(lower, smaller(higher, in.red));
    const Vector sum = add(highest, lowest);
    const Floats range = toFloats(subtract(highest, lowest));

    const Truth bright = isGreater(sum, all(256));
    const Vector room = addWhere(bright, negateWhere(bright, sum), all(510));  // sum, or 510 - sum where bright
    const Vector pure = divideRounding(multiplied(range, 252), toFloats(larger(room, all(1))));
    const Vector saturation = shiftRight<7>(multiply(pure, factor));

    const Vector towardsMiddle = multiply(subtract(highest, middle), all(42));
    const Vector steps = subtract(all(42), divideRounding(toFloats(towardsMiddle), atLeast(range, 1)));

    return Hls{hueOf(in, steps, higher, shift), multiplyHigh(add(sum, all(1)), all(LIGHTNESS_FACTOR)),
               smaller(saturation, all(252)), bright};
}

// ---- and back

// m1 + (2 * chroma * weight + 21) / 42, then to 0..255.
LANES_INLINE Vector channelOf(Vector lowest, Vector chroma, Vector weight, Vector rounding)
{
    const Vector product = add(multiply(chroma, smaller(weight, all(42))), all(10));
    const Vector level = add(lowest, multiplyHigh(product, all(RECIPROCAL_21)));
    return add(level, multiplyHigh(add(level, rounding), all(RECIPROCAL_84)));
}

LANES_INLINE Pixels fromHls(const Hls& in)
{
    const Vector nearer = smaller(in.lightness, subtract(all(252), in.lightness));
    const Vector half = addWhere(in.bright, all(126), all(-1));
    const Vector product = add(multiply(nearer, in.saturation), half);
    const Vector chroma = shiftRight<SHIFT_252>(multiplyHigh(product, all(RECIPROCAL_252)));
    const Vector base = subtract(in.lightness, chroma);
    const Vector rounding = addWhere(isGreater(in.saturation, all(0)), all(0), all(42));  // none for gray

    const Vector red = subtractDownToZero(distance(in.hue, all(126)), all(42));
    const Vector green = subtractDownToZero(all(84), distance(in.hue, all(84)));
    const Vector blue = subtractDownToZero(all(84), distance(in.hue, all(168)));
    return Pixels{channelOf(base, chroma, blue, rounding), channelOf(base, chroma, green, rounding),
                  channelOf(base, chroma, red, rounding)};
}

LANES_INLINE void hlsPixels(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount)
{
    const Vector factor = all(adjustment.saturationFactor), shift = all(adjustment.hueShift);
    for (; pixelCount >= LANE_COUNT; pixelCount -= LANE_COUNT, pixels += LANE_COUNT * 3)
        storePixels(pixels, fromHls(toHls(loadPixels(pixels), factor, shift)));
    if (pixelCount == 0) return;
    uint8_t rest[LANE_COUNT * 3] = {};
    memcpy(rest, pixels, pixelCount * 3);
    storePixels(rest, fromHls(toHls(loadPixels(rest), factor, shift)));
    memcpy(pixels, rest, pixelCount * 3);
}

// Pixels that go through both steps at a time: few enough to stay in the nearest cache.
constexpr size_t COLOUR_BLOCK = 4096;

VECTOR_FUNCTION void colourPixels(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target,
                                  size_t pixelCount)
{
    while (pixelCount > 0) {
        const size_t count = pixelCount < COLOUR_BLOCK ? pixelCount : COLOUR_BLOCK;
        toneBytes(adjustment, source, target, count * 3);
        hlsPixels(adjustment, target, count);
        source += count * 3;
        target += count * 3;
        pixelCount -= count;
    }
}
