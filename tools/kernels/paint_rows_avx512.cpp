#include "tools/kernels/paint_row_variants.h"

#ifdef VECTOR_CODE

#include "image/pixels/avx512_intrinsics.h"

namespace {

#include "image/pixels/words_avx512.h"

// The first pixels of a block: bytes behind them are neither read nor written.
struct SomePixels {
    __mmask64 cells, parts[3];
};

// No more is touched than need be: a line of the cache is fetched for a vector that reaches into it even if none of the
// bytes there count.
LANES_INLINE Vector loadSome(const uint8_t* at, __mmask64 bytes)
{
    if (bytes >> 32) return _mm512_maskz_loadu_epi8(bytes, at);
    if (!((uint32_t)bytes >> 16)) return _mm512_zextsi128_si512(_mm_maskz_loadu_epi8((__mmask16)bytes, at));
    return _mm512_zextsi256_si512(_mm256_maskz_loadu_epi8((__mmask32)bytes, at));
}

LANES_INLINE void storeSome(uint8_t* at, __mmask64 bytes, Vector vector)
{
    if (bytes >> 32)
        _mm512_mask_storeu_epi8(at, bytes, vector);
    else if (!((uint32_t)bytes >> 16))
        _mm_mask_storeu_epi8(at, (__mmask16)bytes, _mm512_castsi512_si128(vector));
    else
        _mm256_mask_storeu_epi8(at, (__mmask32)bytes, _mm512_castsi512_si256(vector));
}

LANES_INLINE Vector loadCells(const uint8_t* at, const SomePixels& some)
{
    return loadSome(at, some.cells);
}

LANES_INLINE void storeCells(uint8_t* at, Vector cells, const SomePixels& some)
{
    storeSome(at, some.cells, cells);
}

LANES_INLINE bool anyInPart(int part, const SomePixels& some)
{
    return some.parts[part] != 0;
}

LANES_INLINE Vector loadPart(const uint8_t* at, int part, const SomePixels& some)
{
    return loadSome(at + part * 64, some.parts[part]);
}

LANES_INLINE void storePart(uint8_t* at, Vector bytes, int part, const SomePixels& some)
{
    storeSome(at + part * 64, some.parts[part], bytes);
}

// Masks of the first bytes of a vector: none for counts below 1, all from 64 on. From a table, because 32-bit
// code is slow at making 64 bits.
struct FirstBytes {
    static constexpr int LEAST = -128, MOST = 192;
    uint64_t mask[MOST - LEAST + 1];
};

constexpr FirstBytes makeFirstBytes()
{
    FirstBytes table = {};
    for (int count = 1; count <= FirstBytes::MOST; ++count)
        table.mask[count - FirstBytes::LEAST] = count >= 64 ? ~(uint64_t)0 : ((uint64_t)1 << count) - 1;
    return table;
}

constexpr FirstBytes FIRST_BYTES = makeFirstBytes();

LANES_INLINE __mmask64 firstBytes(int count)
{
    return FIRST_BYTES.mask[count - FirstBytes::LEAST];
}

LANES_INLINE SomePixels somePixels(int count)
{
    return SomePixels{firstBytes(count),
                      {firstBytes(count * 3), firstBytes(count * 3 - 64), firstBytes(count * 3 - 128)}};
}

LANES_INLINE Vector loadFirst(const uint8_t* at, int count)
{
    return loadSome(at, firstBytes(count));
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
    if (count > 0) mixFreshBlock(pixels, cells, colour, weight, somePixels(count));
}

VECTOR_FUNCTION void raise(uint8_t* pixels, const uint8_t* under, uint8_t* cells, const uint8_t* weights, int count,
                           const ColourRow& colour)
{
    for (; count >= 64; count -= 64, cells += 64, weights += 64, pixels += 192, under += 192)
        raiseBlock(pixels, under, cells, weights, colour, WholeBlock());
    if (count > 0) raiseBlock(pixels, under, cells, weights, colour, somePixels(count));
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
    const SomePixels some = somePixels(rest);
    blurRest(line + done * 3, below, sums, (size_t)done * 3, rest, loadCells(cells + done, some), opacity, some);
}

}  // namespace

const PaintRows PAINT_ROWS_AVX512 = {mixBytes, mixFresh, raise, sumLine, blurLine};

#endif
