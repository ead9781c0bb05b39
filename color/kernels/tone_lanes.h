// The tone line on lanes of 16 bits, told once for vectors of any width; see image/pixels/vector_words.h and
// color/kernels/adjust_arithmetic.h.
//
// No ordinary header: included by one source a width, which then has toneBytes.
#pragma once

struct ToneLine {
    Vector partSlope, wholeSlope, offset;  // the whole slope is 0 or 1
};

LANES_INLINE Vector toneOfLanes(const ToneLine& line, Vector value)
{
    const Vector part = shiftRight<TONE_SHIFT>(multiplyHigh(multiply(value, line.partSlope), all(TONE_RECIPROCAL)));
    return add(add(part, line.offset), multiply(value, line.wholeSlope));
}

LANES_INLINE void toneBytes(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target,
                            size_t byteCount)
{
    const ToneLine line = {all(adjustment.slope % TONE_DIVISOR), all(adjustment.slope / TONE_DIVISOR),
                           all(adjustment.offset)};
    size_t i = 0;
    for (; i + VECTOR_SIZE <= byteCount; i += VECTOR_SIZE) {
        const Vector bytes = load(source + i);
        store(target + i, packBytes(toneOfLanes(line, lowBytes(bytes)), toneOfLanes(line, highBytes(bytes))));
    }
    toneBytesPlain(adjustment, source + i, target + i, byteCount - i);
}
