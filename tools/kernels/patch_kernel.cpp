#include "tools/kernels/patch_kernel.h"

#include <algorithm>

#include "tools/kernels/cell_runs.h"
#include "tools/kernels/paint_rows.h"

void patchKernel(BitsView image, const DabPlacement& dab, MapView mask, BitsView patch, int opacity)
{
    if (!dab.visible) return;
    const int width = std::min(dab.width, patch.width - dab.maskX);
    const int height = std::min(dab.height, patch.height - dab.maskY);
    for (int j = 0; j < height; ++j) {
        const uint8_t* cells = rowOf(mask, dab.maskY + j) + dab.maskX;
        const uint8_t* over = rowOf(patch, dab.maskY + j) + dab.maskX * 3;
        uint8_t* pixels = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        fetchDabLine(image, dab, j + DAB_LINES_AHEAD);
        for (CellRun run = {}; nextRun(cells, width, run);) {
            const ptrdiff_t at = (ptrdiff_t)run.first * 3;
            paintRows().mixBytes(pixels + at, over + at, (size_t)(run.end - run.first) * 3, opacity);
        }
    }
}
