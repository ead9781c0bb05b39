#include "tools/kernels/paint_row_variants.h"

#ifdef VECTOR_CODE

#include "image/pixels/avx512_intrinsics.h"

namespace {

#include "image/pixels/words_avx512.h"
#include "image/pixels/first_bytes_avx512.h"

// No more is touched than need be: a line of the cache is fetched for a vector that reaches into it even if none of the
// bytes there count. What to do is told by the count, not by the mask, which 32-bit code would take apart.
LANES_INLINE Vector loadFirst(const uint8_t* at, int count)
{
    if (count > 32) return _mm512_maskz_loadu_epi8(firstBytes(count), at);
    if (count > 16) return _mm512_zextsi256_si512(_mm256_maskz_loadu_epi8((__mmask32)firstBytes(count), at));
    return _mm512_zextsi128_si512(_mm_maskz_loadu_epi8((__mmask16)firstBytes(count), at));
}

LANES_INLINE void storeFirst(uint8_t* at, int count, Vector vector)
{
    if (count > 32)
        _mm512_mask_storeu_epi8(at, firstBytes(count), vector);
    else if (count > 16)
        _mm256_mask_storeu_epi8(at, (__mmask32)firstBytes(count), _mm512_castsi512_si256(vector));
    else
        _mm_mask_storeu_epi8(at, (__mmask16)firstBytes(count), _mm512_castsi512_si128(vector));
}

// The first pixels of a block, at most 64: bytes behind them are neither read nor written.
struct SomePixels {
    int count;
};

LANES_INLINE Vector loadCells(const uint8_t* at, const SomePixels& some)
{
    return loadFirst(at, some.count);
}

LANES_INLINE void storeCells(uint8_t* at, Vector cells, const SomePixels& some)
{
    storeFirst(at, some.count, cells);
}

LANES_INLINE bool anyInPart(int part, const SomePixels& some)
{
    return some.count * 3 > part * 64;
}

LANES_INLINE Vector loadPart(const uint8_t* at, int part, const SomePixels& some)
{
    return loadFirst(at + part * 64, some.count * 3 - part * 64);
}

LANES_INLINE void storePart(uint8_t* at, Vector bytes, int part, const SomePixels& some)
{
    storeFirst(at + part * 64, some.count * 3 - part * 64, bytes);
}

#include "tools/kernels/paint_rows_lanes.h"

// Painted runs are short and begin anywhere: vectors of 64 bytes would nearly always straddle two lines of the cache.
static void mixBytes(uint8_t* pixels, const uint8_t* over, size_t count, int opacity)
{
    PAINT_ROWS_AVX2.mixBytes(pixels, over, count, opacity);
}

// In the rest of a row the cells that do not count are read as 0: they are not written.
VECTOR_FUNCTION void mixFresh(uint8_t* pixels, uint8_t* cells, int count, const ColourRow& colour, int opacity)
{
    const Vector weight = allBytes(opacity);
    for (; count >= 64; count -= 64, cells += 64, pixels += 192)
        mixFreshBlock(pixels, cells, colour, weight, WholeBlock());
    if (count > 0) mixFreshBlock(pixels, cells, colour, weight, SomePixels{count});
}

VECTOR_FUNCTION void raise(uint8_t* pixels, const uint8_t* under, uint8_t* cells, const uint8_t* weights, int count,
                           const ColourRow& colour)
{
    for (; count >= 64; count -= 64, cells += 64, weights += 64, pixels += 192, under += 192)
        raiseBlock(pixels, under, cells, weights, colour, WholeBlock());
    if (count > 0) raiseBlock(pixels, under, cells, weights, colour, SomePixels{count});
}

VECTOR_FUNCTION void sumLine(uint16_t* sums, const uint8_t* line, size_t count)
{
    sumBlocks(sums, line, count);
}

VECTOR_FUNCTION void blurLine(uint8_t* line, const uint8_t* below, const SmoothSums& sums, const uint8_t* cells,
                              int count, int opacity)
{
    const int done = blurBlocks(line, below, sums, cells, count, opacity), rest = count - done;
    if (rest == 0) return;
    const SomePixels some = {rest};
    blurRest(line + done * 3, below, sums, (size_t)done * 3, rest, loadCells(cells + done, some), opacity, some);
}

}  // namespace

const PaintRows PAINT_ROWS_AVX512 = {mixBytes, mixFresh, raise, sumLine, blurLine};

#endif
