#include "tools/smooth_kernel.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "tools/pixel_mix.h"

// Three lines, unfiltered, each pointer at the byte to blur.
static uint8_t blurredByte(const uint8_t* above, const uint8_t* line, const uint8_t* below)
{
    const int sum = above[-3] + 2 * above[0] + above[3] + 2 * (line[-3] + 2 * line[0] + line[3]) + below[-3] +
                    2 * below[0] + below[3];
    return (uint8_t)((sum + 8) >> 4);
}

// `cells` is the mask line that decides, its first cell for the pixel in column 1.
static void smoothLine(uint8_t* pixels, const uint8_t* above, const uint8_t* line, const uint8_t* below,
                       const uint8_t* cells, int width, int opacity)
{
    for (int i = 1; i < width - 1; ++i) {
        if (!cells[i - 1]) continue;
        for (int at = i * 3; at < i * 3 + 3; ++at)
            pixels[at] = mixByte(line[at], blurredByte(above + at, line + at, below + at), opacity);
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
        memcpy(line, pixels, lineBytes);
        smoothLine(pixels, above, line, pixels + image.stride, rowOf(mask, dab.maskY + j - 1) + dab.maskX, dab.width,
                   opacity);
        std::swap(above, line);
    }
    free(workspace);
    return true;
}
