// What vectors of every width can do, by one set of names; lanes are of 16 bits.
//
// No ordinary header: a source file includes this after it has defined
//   Vector, FloatPart       its vector, and one of floats for half of the lanes
//   LANES(name)             the intrinsic of that name for its width; LANES_WHOLE(name): on the whole vector
//   LANES_INLINE            static, always inlined, and made for its instruction set
// and adds those words of its own that color/kernels/adjust_lanes.h needs besides.
#pragma once

LANES_INLINE Vector load(const uint8_t* bytes)
{
    return LANES_WHOLE(loadu)((const Vector*)bytes);
}

LANES_INLINE void store(uint8_t* bytes, Vector value)
{
    LANES_WHOLE(storeu)((Vector*)bytes, value);
}

LANES_INLINE Vector lowBytes(Vector bytes)
{
    return LANES(unpacklo_epi8)(bytes, LANES_WHOLE(setzero)());
}

LANES_INLINE Vector highBytes(Vector bytes)
{
    return LANES(unpackhi_epi8)(bytes, LANES_WHOLE(setzero)());
}

LANES_INLINE Vector packBytes(Vector low, Vector high)
{
    return LANES(packus_epi16)(low, high);
}

LANES_INLINE Vector all(int value)
{
    return LANES(set1_epi16)((short)value);
}

LANES_INLINE Vector add(Vector a, Vector b)
{
    return LANES(add_epi16)(a, b);
}

LANES_INLINE Vector subtract(Vector a, Vector b)
{
    return LANES(sub_epi16)(a, b);
}

LANES_INLINE Vector multiply(Vector a, Vector b)
{
    return LANES(mullo_epi16)(a, b);
}

LANES_INLINE Vector multiplyHigh(Vector a, Vector b)
{
    return LANES(mulhi_epu16)(a, b);
}

LANES_INLINE Vector smaller(Vector a, Vector b)
{
    return LANES(min_epi16)(a, b);
}

LANES_INLINE Vector larger(Vector a, Vector b)
{
    return LANES(max_epi16)(a, b);
}

LANES_INLINE Vector subtractDownToZero(Vector a, Vector b)
{
    return LANES(subs_epu16)(a, b);
}

template <int bits>
LANES_INLINE Vector shiftRight(Vector a)
{
    return LANES(srli_epi16)(a, bits);
}

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
