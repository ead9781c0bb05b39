#include "color/kernels/adjust.h"

#include <algorithm>
#include <cstring>

#include "color/kernels/adjust_methods.h"

// By level of vectors.
struct ColourMethod {
    void (*toneBytes)(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t byteCount);
    void (*hlsPixels)(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount);
};
static const ColourMethod methods[VECTOR_LEVEL_COUNT] = {
    {toneBytesPlain, hlsPixelsPlain},
#ifdef VECTOR_CODE
    {toneBytesSse2, hlsPixelsSse2},
    {toneBytesAvx2, hlsPixelsAvx2},
    {toneBytesAvx512, hlsPixelsAvx512},
#endif
};

// Pixels that go through both steps at a time: few enough to stay in the nearest cache.
constexpr size_t HLS_BLOCK = 4096;

void adjustPixels(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t pixelCount)
{
    const ColourMethod& method = methods[adjustment.inRange ? vectorLevel() : VECTOR_PLAIN];
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

void adjustImage(const ColourAdjustment& adjustment, BitsView source, BitsView target)
{
    const size_t rowBytes = (size_t)target.width * 3;
    const size_t padding = (size_t)rowStride(target.width, 24) - rowBytes;
    for (int y = 0; y < target.height; ++y) {
        uint8_t* row = rowOf(target, y);
        adjustPixels(adjustment, rowOf(source, y), row, (size_t)target.width);
        memset(row + rowBytes, 0, padding);
    }
}
