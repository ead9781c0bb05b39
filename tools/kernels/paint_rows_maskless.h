// The rows' frame for vectors without masks. Raising and covering do nothing when they are done twice, so the last
// block of a row simply overlaps the one before it; what is less than a vector goes by way of a copy, and rows shorter
// than a block go to the narrower way.
//
// No ordinary header: a source includes this after the words of its width and has mixBytes, mixFresh, raise, sumLine
// and blurLine; NARROWER is the variant below.
#pragma once

LANES_INLINE Vector loadFirst(const uint8_t* at, int count)
{
    uint8_t bytes[VECTOR_SIZE] = {};
    memcpy(bytes, at, (size_t)count);
    return load(bytes);
}

#include "tools/kernels/paint_rows_lanes.h"

constexpr int BLOCK = (int)VECTOR_SIZE;

// Mixing a byte twice would show, so what is left of a row goes to the narrower way.
VECTOR_FUNCTION void mixBytes(uint8_t* pixels, const uint8_t* over, size_t count, int opacity)
{
    const Vector weight = allBytes(opacity);
    size_t i = 0;
    for (; i + VECTOR_SIZE <= count; i += VECTOR_SIZE)
        store(pixels + i, mixedBytes(load(pixels + i), load(over + i), weight));
    NARROWER.mixBytes(pixels + i, over + i, count - i, opacity);
}

VECTOR_FUNCTION void mixFresh(uint8_t* pixels, uint8_t* cells, int count, const ColourRow& colour, int opacity)
{
    if (count < BLOCK) return NARROWER.mixFresh(pixels, cells, count, colour, opacity);
    const Vector weight = allBytes(opacity);
    for (int i = 0; i < count; i += BLOCK) {
        const int at = i < count - BLOCK ? i : count - BLOCK;
        mixFreshBlock(pixels + at * 3, cells + at, colour, weight, WholeBlock());
    }
}

VECTOR_FUNCTION void raise(uint8_t* pixels, const uint8_t* under, uint8_t* cells, const uint8_t* weights, int count,
                           const ColourRow& colour)
{
    if (count < BLOCK) return NARROWER.raise(pixels, under, cells, weights, count, colour);
    for (int i = 0; i < count; i += BLOCK) {
        const int at = i < count - BLOCK ? i : count - BLOCK;
        raiseBlock(pixels + at * 3, under + at * 3, cells + at, weights + at, colour, WholeBlock());
    }
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
    uint8_t* const last = line + done * 3;
    uint8_t pixels[3 * VECTOR_SIZE];
    memcpy(pixels, last, (size_t)rest * 3);
    blurRest(pixels, below, sums, (size_t)done * 3, rest, loadFirst(cells + done, rest), opacity, WholeBlock());
    memcpy(last, pixels, (size_t)rest * 3);
}
