#include "tools/kernels/smooth_kernel.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "tools/kernels/cell_runs.h"
#include "tools/kernels/smooth_rows.h"

// `cells` is the mask line that decides, its first cell for the pixel in column 1. `pixels` and the lines
// begin at column 0; `line` is what `pixels` were.
static void smoothLine(uint8_t* pixels, const SmoothSource& lines, const uint8_t* cells, int width, int opacity)
{
    for (CellRun run = {}; nextRun(cells, width - 2, run);) {
        const ptrdiff_t at = (ptrdiff_t)(run.first + 1) * 3;
        smoothPixels(pixels + at, {lines.above + at, lines.line + at, lines.below + at}, run.end - run.first, opacity);
    }
}

bool smoothKernel(BitsView image, const DabPlacement& dab, MapView mask, int opacity)
{
    const int lastLine = std::min(dab.ruleHeight - 3, dab.height - 2);
    if (!dab.visible || dab.width < 3 || lastLine < 1) return true;
    const size_t lineBytes = (size_t)dab.width * 3;
    uint8_t* workspace = (uint8_t*)malloc(2 * lineBytes);
    if (!workspace) return false;

    // The line below is still unfiltered in the image; this one and the one above it are kept.
    uint8_t *above = workspace, *line = workspace + lineBytes;
    memcpy(above, rowOf(image, dab.imageY) + dab.imageX * 3, lineBytes);
    for (int j = 1; j <= lastLine; ++j) {
        uint8_t* pixels = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        fetchLineAhead(image, dab, j + 1);
        memcpy(line, pixels, lineBytes);
        smoothLine(pixels, {above, line, pixels + image.stride}, rowOf(mask, dab.maskY + j - 1) + dab.maskX, dab.width,
                   opacity);
        std::swap(above, line);
    }
    free(workspace);
    return true;
}
