#include "color/kernels/adjust_methods.h"

#include <algorithm>

#include "color/kernels/hls.h"

static void toneBytes(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t byteCount)
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

static void colourPixels(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t pixelCount)
{
    toneBytes(adjustment, source, target, pixelCount * 3);
    for (uint8_t* pixel = target; pixelCount > 0; --pixelCount, pixel += 3) {
        uint16_t hue, lightness, saturation;
        rgbToHls(pixel[2], pixel[1], pixel[0], &hue, &lightness, &saturation);
        saturation = scaledSaturation(saturation, adjustment.saturationFactor);
        hue = shiftedHue(hue, adjustment.hueShift);
        hlsToRgb(hue, lightness, saturation, &pixel[2], &pixel[1], &pixel[0]);
    }
}

const ColourMethod COLOUR_PLAIN = {toneBytes, toneBytes, colourPixels, colourPixels};
