// What vectors of every width can do, by one set of names; lanes are of 16 bits. Arithmetic that is written
// with these words is told once for all widths, in a file that is included after one of words_sse2.h,
// words_avx2.h and words_avx512.h; these define
//   Vector                  the vector, and what only some of its widths can do in the same way
//   LANES(name)             the intrinsic of that name for its width; LANES_WHOLE(name): on the whole vector
//   LANES_INLINE            static, always inlined, and made for its instruction set: so nothing of one width
//                           gets into another
//   VECTOR_FUNCTION         before a function that others call: made for its instruction set
//
// No ordinary header: included by those three only.
#pragma once

constexpr size_t VECTOR_SIZE = sizeof(Vector);

LANES_INLINE Vector load(const uint8_t* bytes)
{
    return LANES_WHOLE(loadu)((const Vector*)bytes);
}

LANES_INLINE void store(uint8_t* bytes, Vector value)
{
    LANES_WHOLE(storeu)((Vector*)bytes, value);
}

// Past the caches, to an address that is a multiple of VECTOR_SIZE.
LANES_INLINE void stream(uint8_t* bytes, Vector value)
{
    LANES_WHOLE(stream)((Vector*)bytes, value);
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

LANES_INLINE Vector allBytes(int value)
{
    return LANES(set1_epi8)((char)value);
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

LANES_INLINE Vector both(Vector a, Vector b)
{
    return LANES_WHOLE(and)(a, b);
}

LANES_INLINE Vector either(Vector a, Vector b)
{
    return LANES_WHOLE(or)(a, b);
}

LANES_INLINE Vector largerBytes(Vector a, Vector b)
{
    return LANES(max_epu8)(a, b);
}

LANES_INLINE Vector smallerBytes(Vector a, Vector b)
{
    return LANES(min_epu8)(a, b);
}

LANES_INLINE Vector subtractBytes(Vector a, Vector b)
{
    return LANES(sub_epi8)(a, b);
}

LANES_INLINE Vector subtractBytesDownToZero(Vector a, Vector b)
{
    return LANES(subs_epu8)(a, b);
}
