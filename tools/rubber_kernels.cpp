#include "tools/rubber_kernels.h"

#include "tools/pixel_mix.h"
#include "tools/soft_falloff.h"

// What the dab brings to its column i and line j: the pixel of the session's first image that lies under
// that cell of the brush, black where the cell lies outside the image.
static const uint8_t* broughtBack(const BitsView& original, const DabPlacement& dab, int i, int j)
{
    static const uint8_t black[3] = {0, 0, 0};
    const int x = dab.left + dab.maskX + i, y = dab.top + dab.maskY + j;
    const bool inside = x >= 0 && y >= 0 && x < original.width && y < original.height;
    return inside ? rowOf(original, y) + (ptrdiff_t)x * 3 : black;
}

void hardRubberKernel(BitsView image, const DabPlacement& dab, MapView mask, BitsView original, int opacity)
{
    if (!dab.visible) return;
    for (int j = 0; j < dab.height; ++j) {
        const uint8_t* cells = rowOf(mask, dab.maskY + j) + dab.maskX;
        uint8_t* pixel = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        for (int i = 0; i < dab.width; ++i, pixel += 3) {
            if (cells[i]) mixPixel(pixel, pixel, broughtBack(original, dab, i, j), opacity);
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
