#include "color/kernels/hls.h"

#include <algorithm>

constexpr int HLS_MAX = 252;  // a full turn, and the highest lightness and saturation
constexpr int RGB_MAX = 255;
constexpr int SIXTH = HLS_MAX / 6;
constexpr int THIRD = HLS_MAX / 3;
constexpr int GRAY_HUE = HLS_MAX * 2 / 3;

// Distance of a channel from the highest one, in sixths of a turn; d is highest - lowest.
static int channelDistance(int highest, int channel, int d)
{
    return ((highest - channel) * SIXTH + d / 2) / d;
}

static int hueOf(int red, int green, int blue, int highest, int d)
{
    const int r = channelDistance(highest, red, d);
    const int g = channelDistance(highest, green, d);
    const int b = channelDistance(highest, blue, d);

    // Ties go to red, then to green.
    int hue = red == highest ? b - g : green == highest ? THIRD + r - b : 2 * THIRD + g - r;
    while (hue < 0) {
        hue += HLS_MAX;
    }
    while (hue > HLS_MAX) {
        hue -= HLS_MAX;
    }
    return hue;
}

void rgbToHls(uint16_t red, uint16_t green, uint16_t blue, uint16_t* hue, uint16_t* lightness, uint16_t* saturation)
{
    const int highest = std::max({red, green, blue});
    const int lowest = std::min({red, green, blue});
    const int sum = highest + lowest;
    const int d = highest - lowest;

    *lightness = (uint16_t)((sum * HLS_MAX + RGB_MAX) / (2 * RGB_MAX));
    if (d == 0) {
        *hue = GRAY_HUE;
        *saturation = 0;
        return;
    }
    const int divisor = *lightness <= HLS_MAX / 2 ? sum : 2 * RGB_MAX - sum;
    *saturation = (uint16_t)std::clamp((d * HLS_MAX + divisor / 2) / divisor, 0, HLS_MAX);
    *hue = (uint16_t)hueOf(red, green, blue, highest, d);
}

uint16_t hueToRgb(uint16_t m1, uint16_t m2, int hue)
{
    if (hue < 0) {
        hue += HLS_MAX;
    }
    if (hue > HLS_MAX) {
        hue -= HLS_MAX;
    }
    if (hue < SIXTH) {
        return (uint16_t)(m1 + ((m2 - m1) * hue + SIXTH / 2) / SIXTH);
    }
    if (hue < 3 * SIXTH) {
        return m2;
    }
    if (hue < 4 * SIXTH) {
        return (uint16_t)(m1 + ((m2 - m1) * (4 * SIXTH - hue) + SIXTH / 2) / SIXTH);
    }
    return m1;
}

static uint8_t byteFromLevel(int level)
{
    return (uint8_t)((level * RGB_MAX + HLS_MAX / 2) / HLS_MAX);
}

void hlsToRgb(uint16_t hue, uint16_t lightness, uint16_t saturation, uint8_t* red, uint8_t* green, uint8_t* blue)
{
    if (saturation == 0) {
        // Gray truncates where colours round, so it can come out one darker.
        *red = *green = *blue = (uint8_t)(lightness * RGB_MAX / HLS_MAX);
        return;
    }
    const int product = lightness * saturation;
    const uint16_t m2 = lightness <= HLS_MAX / 2
                            ? (uint16_t)((lightness * (saturation + HLS_MAX) + HLS_MAX / 2) / HLS_MAX)
                            : (uint16_t)(lightness + saturation - (product + HLS_MAX / 2) / HLS_MAX);
    const uint16_t m1 = (uint16_t)(2 * lightness - m2);
    *red = byteFromLevel(hueToRgb(m1, m2, hue + THIRD));
    *green = byteFromLevel(hueToRgb(m1, m2, hue));
    *blue = byteFromLevel(hueToRgb(m1, m2, hue - THIRD));
}
