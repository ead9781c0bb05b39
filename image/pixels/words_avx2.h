// The words of image/pixels/vector_words.h for vectors of 32 bytes (AVX2). What "low" and "high" words of a
// vector are, is decided half by half; packBytes undoes it.
//
// No ordinary header: included by one source file a folder, inside its unnamed namespace. Only functions that
// are marked so are made for AVX2; the rest of the library runs on any processor. Nothing here relies on a
// stack aligned to 32 bytes.
#pragma once

#define LANES(name) _mm256_##name
#define LANES_WHOLE(name) _mm256_##name##_si256
#define LANES_INLINE static inline __attribute__((target("avx2"), always_inline))
#define VECTOR_FUNCTION __attribute__((target("avx2")))

typedef __m256i Vector;

#include "image/pixels/vector_words.h"

LANES_INLINE Vector pickWhereZero(Vector test, Vector zero, Vector other)
{
    return _mm256_blendv_epi8(other, zero, _mm256_cmpeq_epi8(test, _mm256_setzero_si256()));
}

typedef uint32_t ByteBits;

LANES_INLINE ByteBits zeroBytes(Vector bytes)
{
    return (ByteBits)_mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes, _mm256_setzero_si256()));
}

LANES_INLINE bool allZero(Vector bytes)
{
    return _mm256_testz_si256(bytes, bytes);
}

LANES_INLINE bool noneZero(Vector bytes)
{
    return _mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes, _mm256_setzero_si256())) == 0;
}

LANES_INLINE void threeTimesEach(Vector cells, Vector* bytes)
{
    const Vector first = _mm256_setr_epi8(0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5, 5, 5, 6, 6, 6, 7, 7, 7, 8, 8,
                                          8, 9, 9, 9, 10, 10);
    const Vector middle = _mm256_setr_epi8(10, 11, 11, 11, 12, 12, 12, 13, 13, 13, 14, 14, 14, 15, 15, 15, 0, 0, 0, 1,
                                           1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5);
    const Vector last = _mm256_setr_epi8(5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 9, 10, 10, 10, 11, 11, 11, 12, 12, 12,
                                         13, 13, 13, 14, 14, 14, 15, 15, 15);
    bytes[0] = _mm256_shuffle_epi8(_mm256_permute2x128_si256(cells, cells, 0x00), first);
    bytes[1] = _mm256_shuffle_epi8(cells, middle);
    bytes[2] = _mm256_shuffle_epi8(_mm256_permute2x128_si256(cells, cells, 0x11), last);
}

LANES_INLINE Vector weighedLow(Vector a, Vector b, Vector x, Vector y)
{
    return _mm256_maddubs_epi16(_mm256_unpacklo_epi8(a, b), _mm256_unpacklo_epi8(x, y));
}

LANES_INLINE Vector weighedHigh(Vector a, Vector b, Vector x, Vector y)
{
    return _mm256_maddubs_epi16(_mm256_unpackhi_epi8(a, b), _mm256_unpackhi_epi8(x, y));
}
