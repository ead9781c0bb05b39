#include "tools/kernels/paint_row_variants.h"

#ifdef VECTOR_CODE

#include <cstring>
#include <emmintrin.h>

#define NARROWER PAINT_ROWS_PLAIN

namespace {

#include "image/pixels/words_sse2.h"

#include "tools/kernels/paint_rows_parts.h"

#include "tools/kernels/paint_rows_lanes.h"

#include "tools/kernels/paint_rows_ends.h"

VECTOR_FUNCTION void mixBytesSse2(uint8_t* pixels, const uint8_t* over, size_t count, int opacity)
{
    const size_t done = mixWholeVectors(pixels, over, count, opacity);
    NARROWER.mixBytes(pixels + done, over + done, count - done, opacity);
}

VECTOR_FUNCTION void mixFreshSse2(uint8_t* pixels, uint8_t* cells, int count, const ColourRow& colour, int opacity)
{
    mixFreshRow(pixels, cells, count, colour, opacity);
}

VECTOR_FUNCTION void raiseSse2(uint8_t* pixels, const uint8_t* under, uint8_t* cells, const uint8_t* weights, int count,
                               const ColourRow& colour)
{
    raiseRow(pixels, under, cells, weights, count, colour);
}

VECTOR_FUNCTION void sumLineSse2(uint16_t* sums, const uint8_t* line, size_t count)
{
    sumBlocks(sums, line, count);
}

VECTOR_FUNCTION void blurLineSse2(uint8_t* line, const SmoothSums& sums, const uint8_t* cells, int count, int opacity)
{
    blurRow(line, sums, cells, count, opacity);
}

}  // namespace

const PaintRows PAINT_ROWS_SSE2 = {mixBytesSse2, mixFreshSse2, raiseSse2, sumLineSse2, blurLineSse2};

#endif
