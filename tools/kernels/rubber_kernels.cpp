#include "tools/kernels/rubber_kernels.h"

#include <algorithm>

#include "tools/kernels/cell_runs.h"
#include "tools/kernels/paint_rows.h"
#include "tools/kernels/pixel_mix.h"
#include "tools/kernels/soft_falloff.h"

// What the dab brings to its column i and line j: the pixel of the session's first image that lies under
// that cell of the brush, black where the cell lies outside the image.
static const uint8_t* broughtBack(const BitsView& original, const DabPlacement& dab, int i, int j)
{
    static const uint8_t black[3] = {0, 0, 0};
    const int x = dab.left + dab.maskX + i, y = dab.top + dab.maskY + j;
    const bool inside = x >= 0 && y >= 0 && x < original.width && y < original.height;
    return inside ? rowOf(original, y) + (ptrdiff_t)x * 3 : black;
}

// The same for `count` pixels, the first of which goes towards pixel (x, y) of the original.
static void bringBackRun(uint8_t* pixels, const BitsView& original, int x, int y, int count, int opacity)
{
    static const ColourRow black = {};
    if (y < 0 || y >= original.height) {
        mixColourOver(pixels, black, count, opacity);
        return;
    }
    const int first = std::clamp(-x, 0, count), end = std::clamp(original.width - x, first, count);
    const ptrdiff_t from = ((ptrdiff_t)x + first) * 3;
    mixColourOver(pixels, black, first, opacity);
    paintRows().mixBytes(pixels + (ptrdiff_t)first * 3, rowOf(original, y) + from, (size_t)(end - first) * 3, opacity);
    mixColourOver(pixels + (ptrdiff_t)end * 3, black, count - end, opacity);
}

void hardRubberKernel(BitsView image, const DabPlacement& dab, MapView mask, BitsView original, int opacity)
{
    if (!dab.visible) return;
    for (int j = 0; j < dab.height; ++j) {
        const uint8_t* cells = rowOf(mask, dab.maskY + j) + dab.maskX;
        uint8_t* pixels = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        const int x = dab.left + dab.maskX, y = dab.top + dab.maskY + j;
        fetchDabLine(image, dab, j + DAB_LINES_AHEAD);
        fetchDabLine(original, dab, j + DAB_LINES_AHEAD);
        for (CellRun run = {}; nextRun(cells, dab.width, run);) {
            bringBackRun(pixels + (ptrdiff_t)run.first * 3, original, x + run.first, y, run.end - run.first, opacity);
        }
    }
}

void softRubberKernel(BitsView image, const DabPlacement& dab, MapView mask, BitsView original, int opacity)
{
    const SoftFalloff falloff = softFalloff(dab);
    if (!dab.visible || !hasRoom(falloff)) return;
    for (int j = 0; j < dab.height; ++j) {
        const uint8_t* cells = rowOf(mask, dab.maskY + j) + dab.maskX;
        uint8_t* pixel = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        for (int i = 0; i < dab.width; ++i, pixel += 3) {
            if (!cells[i]) continue;
            mixPixelFraction(pixel, broughtBack(original, dab, i, j), opacity * (1 - falloffDistance(falloff, i, j)));
        }
    }
}
