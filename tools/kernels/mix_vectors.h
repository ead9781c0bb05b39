// Blending sixteen bytes at a time, to the same bytes as pixel_mix.h.
#pragma once

#include "image/pixels/vector_bytes.h"

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
