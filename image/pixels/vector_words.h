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

LANES_INLINE Vector allBytes(int value)
{
    return LANES(set1_epi8)((char)value);
}

LANES_INLINE Vector all(int value)
{
    return LANES(set1_epi16)((short)value);
}

template <int bits>
LANES_INLINE Vector shiftRight(Vector a)
{
    return LANES(srli_epi16)(a, bits);
}

#define WORD_OF_TWO(word, intrinsic)                                                                                   \
    LANES_INLINE Vector word(Vector a, Vector b)                                                                       \
    {                                                                                                                  \
        return intrinsic(a, b);                                                                                        \
    }

WORD_OF_TWO(add, LANES(add_epi16))
WORD_OF_TWO(subtract, LANES(sub_epi16))
WORD_OF_TWO(multiply, LANES(mullo_epi16))
WORD_OF_TWO(multiplyHigh, LANES(mulhi_epu16))
WORD_OF_TWO(smaller, LANES(min_epi16))
WORD_OF_TWO(larger, LANES(max_epi16))
WORD_OF_TWO(subtractDownToZero, LANES(subs_epu16))

WORD_OF_TWO(packBytes, LANES(packus_epi16))
WORD_OF_TWO(largerBytes, LANES(max_epu8))
WORD_OF_TWO(smallerBytes, LANES(min_epu8))
WORD_OF_TWO(subtractBytes, LANES(sub_epi8))
WORD_OF_TWO(subtractBytesDownToZero, LANES(subs_epu8))

WORD_OF_TWO(both, LANES_WHOLE(and))
WORD_OF_TWO(either, LANES_WHOLE(or))

#undef WORD_OF_TWO
