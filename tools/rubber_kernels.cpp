#include "tools/rubber_kernels.h"

#include "tools/pixel_mix.h"
#include "tools/soft_falloff.h"

void hardRubberKernel(BitsView image, const DabPlacement& dab, MapView mask, BitsView original, int opacity)
{
    if (!dab.visible) return;
    for (int j = 0; j < dab.height; ++j) {
        const uint8_t* cells = rowOf(mask, dab.maskY + j) + dab.maskX;
        const uint8_t* over = rowOf(original, dab.imageY + j) + dab.imageX * 3;
        uint8_t* pixel = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        for (int i = 0; i < dab.width; ++i, pixel += 3, over += 3) {
            if (cells[i]) mixPixel(pixel, pixel, over, opacity);
        }
    }
}

void softRubberKernel(BitsView image, const DabPlacement& dab, MapView mask, BitsView original, int opacity)
{
    const SoftFalloff falloff = softFalloff(dab);
    if (!dab.visible || !hasRoom(falloff)) return;
    for (int j = 0; j < dab.height; ++j) {
        const uint8_t* cells = rowOf(mask, dab.maskY + j) + dab.maskX;
        const uint8_t* over = rowOf(original, dab.imageY + j) + dab.imageX * 3;
        uint8_t* pixel = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        for (int i = 0; i < dab.width; ++i, pixel += 3, over += 3) {
            if (cells[i]) mixPixelFraction(pixel, over, opacity * (1 - falloffDistance(falloff, i, j)));
        }
    }
}
