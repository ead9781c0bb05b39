// Sixteen bytes at a time, for row operations.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <emmintrin.h>

constexpr size_t VECTOR_BYTES = 16;

inline __m128i loadBytes(const void* at)
{
    return _mm_loadu_si128((const __m128i*)at);
}

inline void storeBytes(void* at, __m128i value)
{
    _mm_storeu_si128((__m128i*)at, value);
}

// Rows of an image lie far apart in memory, where the processor does not look ahead by itself. Asks for the
// bytes of a row that is worked on soon.
inline void fetchAhead(const void* row, size_t count)
{
    for (size_t i = 0; i < count; i += 64)
        _mm_prefetch((const char*)row + i, _MM_HINT_T0);
}

// Eight bytes as words: (under * (100 - weight) + over * weight) / 100, weights 0 to 100. The sum is at
// most 25500, for which the multiplication by 5243 / 2^19 gives the exact quotient.
inline __m128i mixWords(__m128i under, __m128i over, __m128i weight)
{
    const __m128i rest = _mm_sub_epi16(_mm_set1_epi16(100), weight);
    const __m128i sum = _mm_add_epi16(_mm_mullo_epi16(under, rest), _mm_mullo_epi16(over, weight));
    return _mm_srli_epi16(_mm_mulhi_epu16(sum, _mm_set1_epi16(5243)), 3);
}

// Sixteen bytes mixed so, all with one weight, given in every word.
inline __m128i mixVectors(__m128i under, __m128i over, __m128i weight)
{
    const __m128i zero = _mm_setzero_si128();
    return _mm_packus_epi16(mixWords(_mm_unpacklo_epi8(under, zero), _mm_unpacklo_epi8(over, zero), weight),
                            mixWords(_mm_unpackhi_epi8(under, zero), _mm_unpackhi_epi8(over, zero), weight));
}
