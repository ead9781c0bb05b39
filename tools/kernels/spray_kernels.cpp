#include "tools/kernels/spray_kernels.h"

#include <cmath>

#include "tools/kernels/cell_runs.h"
#include "tools/kernels/paint_rows.h"
#include "tools/kernels/pixel_mix.h"
#include "tools/kernels/soft_falloff.h"

void hardSprayKernel(BitsView image, const DabPlacement& dab, MapView mask, Rgb colour, int opacity)
{
    if (!dab.visible) return;
    const ColourRow over = colourRow(colour);
    for (int j = 0; j < dab.height; ++j) {
        const uint8_t* cells = rowOf(mask, dab.maskY + j) + dab.maskX;
        uint8_t* pixels = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        fetchDabLine(image, dab, j + DAB_LINES_AHEAD);
        for (CellRun run = {}; nextRun(cells, dab.width, run);)
            mixColourOver(pixels + (ptrdiff_t)run.first * 3, over, run.end - run.first, opacity);
    }
}

void softSprayKernel(BitsView image, const DabPlacement& dab, MapView mask, Rgb colour, int opacity)
{
    const SoftFalloff falloff = softFalloff(dab);
    if (!dab.visible || !hasRoom(falloff)) return;
    const PixelBytes over = pixelBytes(colour);
    for (int j = 0; j < dab.height; ++j) {
        const uint8_t* cells = rowOf(mask, dab.maskY + j) + dab.maskX;
        uint8_t* pixel = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        for (int i = 0; i < dab.width; ++i, pixel += 3) {
            if (!cells[i]) continue;
            mixPixelFraction(pixel, over.byte, opacity * (1 - std::sqrt(falloffDistance(falloff, i, j))));
        }
    }
}
