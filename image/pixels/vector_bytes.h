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
