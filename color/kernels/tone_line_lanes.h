// The tone curve as arithmetic on lanes of 16 bits, where bytes cannot be looked up in a table; see
// color/kernels/adjust_arithmetic.h.
//
// No ordinary header: included by one source a width.
#pragma once

struct Tone {
    Vector partSlope, wholeSlope, offset;  // the whole slope is 0 or 1
};

LANES_INLINE Tone toneOf(const ColourAdjustment& adjustment)
{
    return {all(adjustment.slope % TONE_DIVISOR), all(adjustment.slope / TONE_DIVISOR), all(adjustment.offset)};
}

LANES_INLINE Vector toneOfLanes(const Tone& tone, Vector value)
{
    const Vector part = shiftRight<TONE_SHIFT>(multiplyHigh(multiply(value, tone.partSlope), all(TONE_RECIPROCAL)));
    return add(add(part, tone.offset), multiply(value, tone.wholeSlope));
}

LANES_INLINE Vector changed(const Tone& tone, Vector bytes)
{
    return packBytes(toneOfLanes(tone, lowBytes(bytes)), toneOfLanes(tone, highBytes(bytes)));
}
