#include "color/kernels/lift.h"

// Double precision, truncated, without contraction: the same bytes in every build.
static uint8_t pulledToWhite(uint8_t channel, double weight, int times)
{
    for (int i = 0; i < times; ++i) {
        const uint8_t next = (uint8_t)((1 - weight) * channel + weight * 255);
        if (next == channel) break;  // further passes would repeat it
        channel = next;
    }
    return channel;
}

void liftPixels(uint8_t* pixels, size_t pixelCount, int times)
{
    if (times < 1) return;
    for (uint8_t* pixel = pixels; pixelCount > 0; --pixelCount, pixel += 3) {
        const int gray = (int)((pixel[2] + pixel[1] + pixel[0]) / 3.0);
        const double weight = (gray / 255.0) * (gray / 255.0);
        pixel[1] = pulledToWhite(pixel[1], 0.6 * weight, times);
        pixel[0] = pulledToWhite(pixel[0], weight, times);
    }
}
