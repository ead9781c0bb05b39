#include "tools/kernels/brush_kernels.h"

#include "tools/kernels/pixel_mix.h"
#include "tools/kernels/soft_falloff.h"

void hardBrushKernel(BitsView image, const DabPlacement& dab, MapView mask, MapView coverage, Rgb colour, int opacity)
{
    if (!dab.visible) return;
    const PixelBytes over = pixelBytes(colour);
    for (int j = 0; j < dab.height; ++j) {
        const uint8_t* cells = rowOf(mask, dab.maskY + j) + dab.maskX;
        uint8_t* covered = rowOf(coverage, dab.imageY + j) + dab.imageX;
        uint8_t* pixel = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        for (int i = 0; i < dab.width; ++i, pixel += 3) {
            if (!cells[i] || covered[i]) continue;
            mixPixel(pixel, pixel, over.byte, opacity);
            covered[i] = 1;
        }
    }
}

void softBrushKernel(BitsView image, BitsView start, const DabPlacement& dab, MapView mask, MapView coverage,
                     Rgb colour, int opacity)
{
    const SoftFalloff falloff = softFalloff(dab);
    if (!dab.visible || !hasRoom(falloff)) return;
    const PixelBytes over = pixelBytes(colour);
    for (int j = 0; j < dab.height; ++j) {
        const uint8_t* cells = rowOf(mask, dab.maskY + j) + dab.maskX;
        uint8_t* covered = rowOf(coverage, dab.imageY + j) + dab.imageX;
        const uint8_t* under = rowOf(start, dab.imageY + j) + dab.imageX * 3;
        uint8_t* pixel = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        for (int i = 0; i < dab.width; ++i, pixel += 3, under += 3) {
            if (!cells[i]) continue;
            const uint8_t weight = softBrushWeight(falloffDistance(falloff, i, j), opacity);
            if (weight < covered[i]) continue;
            mixPixel(pixel, under, over.byte, weight);
            covered[i] = weight;
        }
    }
}
