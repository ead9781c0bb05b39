#include "color/kernels/adjust.h"

#include <algorithm>
#include <cstring>

#include "color/kernels/adjust_methods.h"

static bool alwaysSupported()
{
    return true;
}

const ColourMethod COLOUR_METHODS[] = {
    {"plain", alwaysSupported, toneBytesPlain, hlsPixelsPlain},
#ifdef COLOUR_VECTORS
    {"sse2", alwaysSupported, toneBytesSse2, hlsPixelsSse2},
    {"avx2", avx2Supported, toneBytesAvx2, hlsPixelsAvx2},
    {"avx512", avx512Supported, toneBytesAvx512, hlsPixelsAvx512},
#endif
};
const int COLOUR_METHOD_COUNT = (int)(sizeof COLOUR_METHODS / sizeof COLOUR_METHODS[0]);

static const ColourMethod& fastestMethod()
{
    int last = COLOUR_METHOD_COUNT - 1;
    while (!COLOUR_METHODS[last].supported()) {
        --last;
    }
    return COLOUR_METHODS[last];
}

// Pixels that go through both steps at a time: few enough to stay in the nearest cache.
static const size_t HLS_BLOCK = 4096;

void adjustPixelsBy(const ColourMethod& wanted, const ColourAdjustment& adjustment, const uint8_t* source,
                    uint8_t* target, size_t pixelCount)
{
    const ColourMethod& method = adjustment.inRange ? wanted : COLOUR_METHODS[0];
    if (adjustment.toneOnly) {
        method.toneBytes(adjustment, source, target, pixelCount * 3);
        return;
    }
    while (pixelCount > 0) {
        const size_t count = std::min(pixelCount, HLS_BLOCK);
        method.toneBytes(adjustment, source, target, count * 3);
        method.hlsPixels(adjustment, target, count);
        source += count * 3;
        target += count * 3;
        pixelCount -= count;
    }
}

void adjustPixels(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t pixelCount)
{
    adjustPixelsBy(fastestMethod(), adjustment, source, target, pixelCount);
}

void adjustImage(const ColourAdjustment& adjustment, BitsView source, BitsView target)
{
    const ColourMethod& method = fastestMethod();
    const size_t rowBytes = (size_t)target.width * 3;
    const size_t padding = (size_t)rowStride(target.width, 24) - rowBytes;
    for (int y = 0; y < target.height; ++y) {
        uint8_t* row = rowOf(target, y);
        adjustPixelsBy(method, adjustment, rowOf(source, y), row, (size_t)target.width);
        memset(row + rowBytes, 0, padding);
    }
}
