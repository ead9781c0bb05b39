#include "tools/patch_kernel.h"

#include <algorithm>

#include "tools/pixel_mix.h"

void patchKernel(BitsView image, const DabPlacement& dab, MapView mask, BitsView patch, int opacity)
{
    if (!dab.visible) return;
    const int width = std::min(dab.width, patch.width - dab.maskX);
    const int height = std::min(dab.height, patch.height - dab.maskY);
    for (int j = 0; j < height; ++j) {
        const uint8_t* cells = rowOf(mask, dab.maskY + j) + dab.maskX;
        const uint8_t* over = rowOf(patch, dab.maskY + j) + dab.maskX * 3;
        uint8_t* pixel = rowOf(image, dab.imageY + j) + dab.imageX * 3;
        for (int i = 0; i < width; ++i, pixel += 3, over += 3) {
            if (cells[i]) mixPixel(pixel, pixel, over, opacity);
        }
    }
}
