#include "color/kernels/adjust_plain.h"

#include <algorithm>

#include "color/kernels/hls.h"

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
