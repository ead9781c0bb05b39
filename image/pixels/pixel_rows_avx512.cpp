#include "image/pixels/pixel_rows_plain.h"

#ifdef VECTOR_CODE

#include <cstring>
#include "image/pixels/avx512_intrinsics.h"

namespace {

#include "image/pixels/words_avx512.h"
#include "image/pixels/first_bytes_avx512.h"

#include "image/pixels/past_caches_lanes.h"
#include "image/pixels/pixel_rows_lanes.h"

VECTOR_FUNCTION void fill(uint8_t* to, uint8_t value, size_t count)
{
    const Vector bytes = allBytes(value);
    for (; count > VECTOR_SIZE; count -= VECTOR_SIZE, to += VECTOR_SIZE)
        store(to, bytes);
    if (count > 0) _mm512_mask_storeu_epi8(to, firstBytes((int)count), bytes);
}

VECTOR_FUNCTION void copy(uint8_t* to, const uint8_t* from, size_t count)
{
    for (; count > VECTOR_SIZE; count -= VECTOR_SIZE, to += VECTOR_SIZE, from += VECTOR_SIZE)
        store(to, load(from));
    if (count == 0) return;
    const __mmask64 rest = firstBytes((int)count);
    _mm512_mask_storeu_epi8(to, rest, _mm512_maskz_loadu_epi8(rest, from));
}

struct SwapOrder {
    uint8_t at[64];
};

constexpr SwapOrder makeSwapOrder()
{
    SwapOrder order = {};
    for (int i = 0; i < 63; ++i)
        order.at[i] = (uint8_t)(i + 2 - 2 * (i % 3));
    order.at[63] = 63;
    return order;
}

constexpr SwapOrder SWAP_ORDER = makeSwapOrder();

// Twenty-one pixels at a time; the last byte of the vector is written as it was and then again by what follows.
VECTOR_FUNCTION void swapRedAndBlue(uint8_t* to, const uint8_t* from, size_t pixels)
{
    const Vector order = load(SWAP_ORDER.at);
    for (; pixels > 21; pixels -= 21, to += 63, from += 63)
        store(to, _mm512_permutexvar_epi8(order, load(from)));
    const __mmask64 rest = firstBytes((int)pixels * 3);
    _mm512_mask_storeu_epi8(to, rest, _mm512_permutexvar_epi8(order, _mm512_maskz_loadu_epi8(rest, from)));
}

LANES_INLINE Vector pickFrom128(Vector number, const uint8_t* window)
{
    return _mm512_permutex2var_epi8(load(window), number, load(window + 64));
}

VECTOR_FUNCTION void gather(uint8_t* to, const uint8_t* from, const GatherBlocks& blocks)
{
    const uint8_t* number = blocks.number;
    for (int n = 0; n < blocks.count; ++n, number += GatherBlocks::BYTES) {
        const uint8_t* window = from + blocks.from[n];
        const Vector numbers = load(number);
        Vector picked = pickFrom128(numbers, window);
        if (blocks.window == GatherBlocks::WIDE)  // bit 7 tells in which half of the window a byte lies
            picked = _mm512_mask_blend_epi8(_mm512_movepi8_mask(numbers), picked, pickFrom128(numbers, window + 128));
        store(to + blocks.to[n], picked);
    }
}

}  // namespace

const PixelRows PIXEL_ROWS_AVX512 = {findMask, fill, copy, copyLarge, swapRedAndBlue, gather};

#endif
