#include "tools/kernels/paint_row_variants.h"

#ifdef VECTOR_CODE

#include <cstring>
#include <immintrin.h>

#define NARROWER PAINT_ROWS_SSE2

namespace {

#include "image/pixels/words_avx2.h"

#include "tools/kernels/paint_rows_parts.h"

#include "tools/kernels/paint_rows_lanes.h"

#include "tools/kernels/paint_rows_ends.h"

VECTOR_FUNCTION void mixBytesAvx2(uint8_t* pixels, const uint8_t* over, size_t count, int opacity)
{
    const size_t done = mixWholeVectors(pixels, over, count, opacity);
    NARROWER.mixBytes(pixels + done, over + done, count - done, opacity);
}

VECTOR_FUNCTION void mixFreshAvx2(uint8_t* pixels, uint8_t* cells, int count, const ColourRow& colour, int opacity)
{
    mixFreshRow(pixels, cells, count, colour, opacity);
}

VECTOR_FUNCTION void raiseAvx2(uint8_t* pixels, const uint8_t* under, uint8_t* cells, const uint8_t* weights, int count,
                               const ColourRow& colour)
{
    raiseRow(pixels, under, cells, weights, count, colour);
}

VECTOR_FUNCTION void sumLineAvx2(uint16_t* sums, const uint8_t* line, size_t count)
{
    sumBlocks(sums, line, count);
}

VECTOR_FUNCTION void blurLineAvx2(uint8_t* line, const SmoothSums& sums, const uint8_t* cells, int count, int opacity)
{
    blurRow(line, sums, cells, count, opacity);
}

}  // namespace

const PaintRows PAINT_ROWS_AVX2 = {mixBytesAvx2, mixFreshAvx2, raiseAvx2, sumLineAvx2, blurLineAvx2};

#endif
