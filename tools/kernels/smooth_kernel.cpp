#include "tools/kernels/smooth_kernel.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <utility>

#include "image/pixels/scarce_memory.h"
#include "tools/kernels/paint_rows.h"

// Small dabs are bound by the way to their pixels: each line of a large image lies in a page of its own.
constexpr int LINES_AHEAD = 10;

// Sums are written and soon read again, which is slow for words that lie across two lines of the cache.
constexpr size_t LINE_BYTES = 64;

static uint16_t* firstWholeLine(void* memory)
{
    return (uint16_t*)(((uintptr_t)memory + LINE_BYTES - 1) / LINE_BYTES * LINE_BYTES);
}

bool smoothKernel(BitsView image, const DabPlacement& dab, MapView mask, int opacity)
{
    const int lastLine = std::min(dab.ruleHeight - 3, dab.height - 2);
    if (!dab.visible || dab.width < 3 || lastLine < 1) return true;
    const PaintRows& rows = paintRows();
    const int count = dab.width - 2;
    const size_t bytes = (size_t)count * 3, room = roomForSums(bytes);
    void* const workspace = takeMemory(2 * room * sizeof(uint16_t) + LINE_BYTES - 1);
    if (!workspace) return false;

    for (int j = 0; j < LINES_AHEAD; ++j)
        fetchDabLine(image, dab, j);
    // A line's sums are made before it changes, so that all are of unfiltered values.
    uint8_t* line = rowOf(image, dab.imageY) + (ptrdiff_t)(dab.imageX + 1) * 3;
    uint16_t *above = firstWholeLine(workspace), *here = above + room;
    rows.sumLine(above, line, bytes);
    line += image.stride;
    rows.sumLine(here, line, bytes);
    for (int j = 1; j <= lastLine; ++j, line += image.stride) {
        fetchDabLine(image, dab, j + LINES_AHEAD);
        // The mask line that decides is the one above, its first cell for the pixel in column 1, where `line` begins.
        const uint8_t* const cells = rowOf(mask, dab.maskY + j - 1) + dab.maskX;
        rows.blurLine(line, line + image.stride, {above, here}, cells, count, opacity);
        std::swap(above, here);
    }
    free(workspace);
    return true;
}
