// The words of image/pixels/vector_words.h for vectors of 16 bytes (SSE2).
//
// No ordinary header: included by one source file a folder, inside its unnamed namespace.
#pragma once

#define LANES(name) _mm_##name
#define LANES_WHOLE(name) _mm_##name##_si128
#define LANES_INLINE static inline __attribute__((always_inline))
#define VECTOR_FUNCTION

typedef __m128i Vector;

#include "image/pixels/vector_words.h"

// The bytes of `zero` where `test` is 0, elsewhere those of `other`.
LANES_INLINE Vector pickWhereZero(Vector test, Vector zero, Vector other)
{
    const Vector is = _mm_cmpeq_epi8(test, _mm_setzero_si128());
    return _mm_or_si128(_mm_and_si128(is, zero), _mm_andnot_si128(is, other));
}

typedef uint16_t ByteBits;  // a bit a byte

LANES_INLINE ByteBits zeroBytes(Vector bytes)
{
    return (ByteBits)_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_setzero_si128()));
}

LANES_INLINE bool allZero(Vector bytes)
{
    return _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_setzero_si128())) == 0xFFFF;
}

// Whether no byte is 0.
LANES_INLINE bool noneZero(Vector bytes)
{
    return _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_setzero_si128())) == 0;
}

// Words w0 ... w7, one a pixel, as 24 words, each of them three times.
LANES_INLINE void wordsThreeTimes(Vector w, Vector* words)
{
    words[0] = _mm_unpacklo_epi64(_mm_shufflelo_epi16(w, _MM_SHUFFLE(1, 0, 0, 0)),
                                  _mm_shufflelo_epi16(w, _MM_SHUFFLE(2, 2, 1, 1)));
    words[1] = _mm_shufflehi_epi16(_mm_shufflelo_epi16(w, _MM_SHUFFLE(3, 3, 3, 2)), _MM_SHUFFLE(1, 0, 0, 0));
    words[2] = _mm_unpackhi_epi64(_mm_shufflehi_epi16(w, _MM_SHUFFLE(2, 2, 1, 1)),
                                  _mm_shufflehi_epi16(w, _MM_SHUFFLE(3, 3, 3, 2)));
}

// Every byte three times: 16 cells to the bytes of 16 pixels.
LANES_INLINE void threeTimesEach(Vector cells, Vector* bytes)
{
    Vector low[3], high[3];
    wordsThreeTimes(lowBytes(cells), low);
    wordsThreeTimes(highBytes(cells), high);
    bytes[0] = packBytes(low[0], low[1]);
    bytes[1] = packBytes(low[2], high[0]);
    bytes[2] = packBytes(high[1], high[2]);
}

// a * x + b * y of words, for bytes a, b below 256 and x, y up to 100: bytes 0 ... 7 and 8 ... 15.
LANES_INLINE Vector weighedLow(Vector a, Vector b, Vector x, Vector y)
{
    return add(multiply(lowBytes(a), lowBytes(x)), multiply(lowBytes(b), lowBytes(y)));
}

LANES_INLINE Vector weighedHigh(Vector a, Vector b, Vector x, Vector y)
{
    return add(multiply(highBytes(a), highBytes(x)), multiply(highBytes(b), highBytes(y)));
}
