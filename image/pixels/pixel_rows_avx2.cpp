#include "image/pixels/pixel_rows_plain.h"

#ifdef VECTOR_CODE

#include <cstring>
#include <immintrin.h>

namespace {

#include "image/pixels/words_avx2.h"

#include "image/pixels/past_caches_lanes.h"
#include "image/pixels/pixel_rows_lanes.h"
#include "image/pixels/run_ends.h"

// Five pixels in each half. The sixteenth byte of a half is written as it was and then again by what follows.
VECTOR_FUNCTION void swapRedAndBlue(uint8_t* to, const uint8_t* from, size_t pixels)
{
    const Vector order = _mm256_setr_epi8(2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, 15, 2, 1, 0, 5, 4, 3, 8, 7,
                                          6, 11, 10, 9, 14, 13, 12, 15);
    for (; pixels > 10; pixels -= 10, to += 30, from += 30) {
        const __m128i low = _mm_loadu_si128((const __m128i*)from), high = _mm_loadu_si128((const __m128i*)(from + 15));
        const Vector swapped =
            _mm256_shuffle_epi8(_mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1), order);
        _mm_storeu_si128((__m128i*)to, _mm256_castsi256_si128(swapped));
        _mm_storeu_si128((__m128i*)(to + 15), _mm256_extracti128_si256(swapped, 1));
    }
    swapRedAndBluePlain(to, from, pixels);
}

}  // namespace

const PixelRows PIXEL_ROWS_AVX2 = {findMask, fill, copy, copyLarge, swapRedAndBlue, nullptr};

#endif
