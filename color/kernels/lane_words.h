// Floats in vectors of every width, beside the words of image/pixels/vector_words.h.
//
// No ordinary header: a source file includes this after it has defined FloatPart, floats for half of the lanes.
#pragma once

LANES_INLINE FloatPart lowFloats(Vector lanes)
{
    return LANES(cvtepi32_ps)(LANES(unpacklo_epi16)(lanes, LANES_WHOLE(setzero)()));
}

LANES_INLINE FloatPart highFloats(Vector lanes)
{
    return LANES(cvtepi32_ps)(LANES(unpackhi_epi16)(lanes, LANES_WHOLE(setzero)()));
}

LANES_INLINE FloatPart allFloats(float value)
{
    return LANES(set1_ps)(value);
}

LANES_INLINE FloatPart largerFloats(FloatPart a, FloatPart b)
{
    return LANES(max_ps)(a, b);
}

LANES_INLINE FloatPart multiplyFloats(FloatPart a, FloatPart b)
{
    return LANES(mul_ps)(a, b);
}

LANES_INLINE Vector roundedQuotient(FloatPart numerator, FloatPart divisor)
{
    return LANES(cvttps_epi32)(LANES(add_ps)(LANES(div_ps)(numerator, divisor), allFloats(0.5f)));
}

LANES_INLINE Vector packNumbers(Vector low, Vector high)
{
    return LANES(packs_epi32)(low, high);
}
