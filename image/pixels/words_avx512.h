// The words of image/pixels/vector_words.h for vectors of 64 bytes (AVX-512 with its byte permutations). What
// "low" and "high" words of a vector are, is decided quarter by quarter; packBytes undoes it.
//
// No ordinary header: included by one source file a folder, inside its unnamed namespace, after
// image/pixels/avx512_intrinsics.h. Nothing here relies on a stack aligned to 64 bytes.
#pragma once

#define LANES(name) _mm512_##name
#define LANES_WHOLE(name) _mm512_##name##_si512
#define LANES_INLINE static inline __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi"), always_inline))
#define VECTOR_FUNCTION __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi")))

typedef __m512i Vector;

#include "image/pixels/vector_words.h"

LANES_INLINE Vector pickWhereZero(Vector test, Vector zero, Vector other)
{
    return _mm512_mask_blend_epi8(_mm512_test_epi8_mask(test, test), zero, other);
}

typedef uint64_t ByteBits;

LANES_INLINE ByteBits zeroBytes(Vector bytes)
{
    return _mm512_testn_epi8_mask(bytes, bytes);
}

LANES_INLINE bool allZero(Vector bytes)
{
    const __mmask64 some = _mm512_test_epi8_mask(bytes, bytes);
    return _kortestz_mask64_u8(some, some);
}

LANES_INLINE bool noneZero(Vector bytes)
{
    const __mmask64 zero = _mm512_testn_epi8_mask(bytes, bytes);
    return _kortestz_mask64_u8(zero, zero);
}

struct ThreeTimes {
    uint8_t cell[3][64];
};

constexpr ThreeTimes makeThreeTimes()
{
    ThreeTimes table = {};
    for (int i = 0; i < 192; ++i)
        table.cell[i / 64][i % 64] = (uint8_t)(i / 3);
    return table;
}

constexpr ThreeTimes THREE_TIMES = makeThreeTimes();

LANES_INLINE void threeTimesEach(Vector cells, Vector* bytes)
{
    for (int part = 0; part < 3; ++part)
        bytes[part] = _mm512_permutexvar_epi8(_mm512_loadu_si512(THREE_TIMES.cell[part]), cells);
}

LANES_INLINE Vector weighedLow(Vector a, Vector b, Vector x, Vector y)
{
    return _mm512_maddubs_epi16(_mm512_unpacklo_epi8(a, b), _mm512_unpacklo_epi8(x, y));
}

LANES_INLINE Vector weighedHigh(Vector a, Vector b, Vector x, Vector y)
{
    return _mm512_maddubs_epi16(_mm512_unpackhi_epi8(a, b), _mm512_unpackhi_epi8(x, y));
}
