#include "color/kernels/adjust.h"

#include <algorithm>
#include <cstring>

#include "color/kernels/adjust_methods.h"
#include "color/kernels/hls.h"
#include "color/kernels/tone_table.h"

static ColourAdjustment makeAdjustment(int a, int b, int saturationFactor, int saturation, int hue)
{
    ColourAdjustment adjustment;
    buildToneTable(adjustment.tone, a, b);
    adjustment.slope = a + 64;
    adjustment.offset = b - a;
    adjustment.saturationFactor = saturationFactor;
    adjustment.hueShift = hue;
    adjustment.toneOnly = saturation == 50 && hue == 0;
    adjustment.inRange =
        a >= 0 && a <= 256 && b >= 0 && b <= 256 && saturation >= 0 && saturation <= 100 && hue >= -127 && hue <= 127;
    return adjustment;
}

ColourAdjustment imageAdjustment(int contrast, int brightness, int saturation, int hue)
{
    return makeAdjustment((100 - contrast) * 256 / 200, (100 - brightness) * 256 / 200, (100 - saturation) * 256 / 100,
                          saturation, hue);
}

ColourAdjustment selectionAdjustment(int contrast, int brightness, int saturation, int hue)
{
    return makeAdjustment((100 - contrast) * 255 / 200, (100 - brightness) * 255 / 200, (100 - saturation) * 255 / 100,
                          saturation, hue);
}

void toneBytesPlain(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t byteCount)
{
    for (size_t i = 0; i < byteCount; ++i) {
        target[i] = adjustment.tone[source[i]];
    }
}

static uint16_t scaledSaturation(int saturation, int factor)
{
    return (uint16_t)std::min((saturation * factor) >> 7, 252);
}

static uint16_t shiftedHue(int hue, int shift)
{
    hue += shift;
    return (uint16_t)(hue < 0 ? hue + 252 : hue > 252 ? hue - 252 : hue);
}

void hlsPixelsPlain(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount)
{
    for (uint8_t* pixel = pixels; pixelCount > 0; --pixelCount, pixel += 3) {
        uint16_t hue, lightness, saturation;
        rgbToHls(pixel[2], pixel[1], pixel[0], &hue, &lightness, &saturation);
        saturation = scaledSaturation(saturation, adjustment.saturationFactor);
        hue = shiftedHue(hue, adjustment.hueShift);
        hlsToRgb(hue, lightness, saturation, &pixel[2], &pixel[1], &pixel[0]);
    }
}

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
