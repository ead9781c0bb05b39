#include "image/pixels/nearest.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "image/pixels/fetch_ahead.h"
#include "image/pixels/pixel_rows.h"
#include "image/pixels/scarce_memory.h"

constexpr int BYTES_PER_PIXEL = 3;

// Wide arithmetic: up to 8192 positions 16 bits would give the very same table, and beyond that they
// would overflow.
void nearestTable(uint32_t* table, int from, int to)
{
    const bool enlarging = to >= from;
    const int64_t a = (enlarging ? from : to) - 1;
    const int64_t b = (enlarging ? to : from) - 1;
    int64_t error = 2 * a - b;
    uint32_t position = 0;
    *table++ = 0;
    for (int64_t step = 0; step < b; ++step) {
        const bool diagonal = error >= 0;
        if (diagonal || !enlarging) position++;
        if (diagonal || enlarging) *table++ = position;
        error += diagonal ? 2 * (a - b) : 2 * a;
    }
}

static void copyPixel(uint8_t* to, const uint8_t* from)
{
    to[0] = from[0];
    to[1] = from[1];
    to[2] = from[2];
}

// Copies a pixel and the byte behind it, which the next pixel overwrites: one load and one store.
static void copyPixelLoosely(uint8_t* to, const uint8_t* from)
{
    uint32_t four;
    memcpy(&four, from, sizeof four);
    memcpy(to, &four, sizeof four);
}

// `offsets` are the byte offsets of the source columns; the first `loose` of them are neither the last
// column of the source nor of the result, so that a fourth byte may be touched.
static void gatherRow(uint8_t* to, const uint8_t* from, const uint32_t* offsets, int width, int loose)
{
    int x = 0;
    for (; x < loose; ++x)
        copyPixelLoosely(to + (ptrdiff_t)x * BYTES_PER_PIXEL, from + offsets[x]);
    for (; x < width; ++x)
        copyPixel(to + (ptrdiff_t)x * BYTES_PER_PIXEL, from + offsets[x]);
}

// Turns columns into byte offsets and returns how many may be copied loosely. Columns never decrease.
static int columnsToOffsets(uint32_t* columns, int width, int sourceWidth)
{
    int loose = 0;
    for (int x = 0; x < width; ++x) {
        if (x < width - 1 && columns[x] < (uint32_t)sourceWidth - 1) loose = x + 1;
        columns[x] *= BYTES_PER_PIXEL;
    }
    return loose;
}

// ---- the wide way: 64 result bytes at once, picked from a window of the source row

// Columns and windows of a whole image, in one piece of memory.
struct NearestPlan {
    void* memory;
    uint32_t* offsets;  // byte offsets of the source columns
    uint32_t* rows;     // source rows, from the bottom
    int loose;
    GatherBlocks blocks;
};

static uint32_t sourceByte(const uint32_t* offsets, uint32_t resultByte)
{
    return offsets[resultByte / BYTES_PER_PIXEL] + resultByte % BYTES_PER_PIXEL;
}

// The last block of a row overlaps the one before it.
static uint32_t blockStart(int block, uint32_t rowBytes)
{
    return std::min((uint32_t)block * GatherBlocks::BYTES, rowBytes - GatherBlocks::BYTES);
}

static uint32_t widestBlock(const uint32_t* offsets, int count, uint32_t rowBytes)
{
    uint32_t widest = 0;
    for (int n = 0; n < count; ++n) {
        const uint32_t start = blockStart(n, rowBytes);
        const uint32_t last = sourceByte(offsets, start + GatherBlocks::BYTES - 1);
        // Whole pixels: the first byte may be the last one of its pixel.
        widest = std::max(widest, last - offsets[start / BYTES_PER_PIXEL] + 1);
    }
    return widest;
}

static int windowFor(uint32_t bytes)
{
    return bytes <= GatherBlocks::NARROW ? GatherBlocks::NARROW : bytes <= GatherBlocks::WIDE ? GatherBlocks::WIDE : 0;
}

// Windows never reach beyond the source row: at its end they lie further to the left.
static void fillBlocks(const NearestPlan& plan, uint32_t* to, uint32_t* from, uint8_t* number, uint32_t rowBytes,
                       uint32_t sourceBytes)
{
    for (int n = 0; n < plan.blocks.count; ++n, number += GatherBlocks::BYTES) {
        to[n] = blockStart(n, rowBytes);
        from[n] = std::min(plan.offsets[to[n] / BYTES_PER_PIXEL], sourceBytes - (uint32_t)plan.blocks.window);
        for (int i = 0; i < GatherBlocks::BYTES; ++i)
            number[i] = (uint8_t)(sourceByte(plan.offsets, to[n] + (uint32_t)i) - from[n]);
    }
}

static bool makePlan(NearestPlan* plan, const BitsView& result, const BitsView& source)
{
    const size_t rowBytes = (size_t)result.width * BYTES_PER_PIXEL,
                 sourceBytes = (size_t)source.width * BYTES_PER_PIXEL;
    const size_t blocks = (rowBytes + GatherBlocks::BYTES - 1) / GatherBlocks::BYTES;
    const size_t entries = (size_t)result.width + (size_t)result.height + 2 * blocks;
    *plan = {};
    plan->memory = takeMemory(entries * sizeof(uint32_t) + blocks * GatherBlocks::BYTES);
    if (!plan->memory) return false;
    plan->offsets = (uint32_t*)plan->memory;
    plan->rows = plan->offsets + result.width;
    uint32_t *const to = plan->rows + result.height, *const from = to + blocks;
    uint8_t* const number = (uint8_t*)(from + blocks);
    nearestTable(plan->offsets, source.width, result.width);
    nearestTable(plan->rows, source.height, result.height);
    plan->loose = columnsToOffsets(plan->offsets, result.width, source.width);
    if (!pixelRows().gather || rowBytes < GatherBlocks::BYTES) return true;
    plan->blocks = {(int)blocks, windowFor(widestBlock(plan->offsets, (int)blocks, (uint32_t)rowBytes)), to, from,
                    number};
    if (sourceBytes < (size_t)plan->blocks.window) plan->blocks.window = 0;
    if (plan->blocks.window) fillBlocks(*plan, to, from, number, (uint32_t)rowBytes, (uint32_t)sourceBytes);
    return true;
}

static void scaleRow(uint8_t* to, const uint8_t* from, const NearestPlan& plan, int width)
{
    if (plan.blocks.window) {
        pixelRows().gather(to, from, plan.blocks);
    } else {
        gatherRow(to, from, plan.offsets, width, plan.loose);
    }
}

// The row of the source from which row `j` of the result comes, counted from the bottom.
static const uint8_t* sourceRow(const BitsView& source, const NearestPlan& plan, int j)
{
    return rowOf(source, source.height - 1 - (int)plan.rows[j]);
}

bool scaleNearest(const BitsView& result, const BitsView& source)
{
    if ((uint32_t)source.width > UINT32_MAX / BYTES_PER_PIXEL) return false;
    NearestPlan plan;
    if (!makePlan(&plan, result, source)) return false;
    const size_t rowBytes = (size_t)result.width * BYTES_PER_PIXEL;
    for (int j = 0; j < result.height; ++j) {
        uint8_t* const to = rowOf(result, result.height - 1 - j);
        const uint8_t* const from = sourceRow(source, plan, j);
        if (j > 0 && plan.rows[j] == plan.rows[j - 1]) {
            memcpy(to, to + result.stride, rowBytes);  // the row below: the one written before
        } else if (result.width == source.width) {
            memcpy(to, from, rowBytes);
        } else {
            if (j + 1 < result.height)
                fetchPages(sourceRow(source, plan, j + 1), (size_t)source.width * BYTES_PER_PIXEL);
            scaleRow(to, from, plan, result.width);
        }
    }
    free(plan.memory);
    return true;
}
