// Contrast, brightness, saturation and hue of pixels. No windows, no memory handles.
#pragma once

#include <cstddef>
#include <cstdint>

#include "color/kernels/adjustment.h"
#include "image/pixels/bits_view.h"

// Adjusts pixels from source to target by the fastest method of this processor; the lift is left out. The two
// may be the same memory, but must not overlap otherwise.
void adjustPixels(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t pixelCount);

// A whole image into one of the same size, or in place (both the same). The padding bytes of every row
// of the target become 0.
void adjustImage(const ColourAdjustment& adjustment, BitsView source, BitsView target);

// The ways to compute the same bytes, slowest first; the first one works everywhere.
struct ColourMethod {
    const char* name;
    bool (*supported)();
    // Each channel byte through adjustment.tone. Source and target may be the same.
    void (*toneBytes)(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t byteCount);
    // Saturation and hue of pixels that the tone table has been applied to, in place.
    void (*hlsPixels)(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount);
};
extern const ColourMethod COLOUR_METHODS[];
extern const int COLOUR_METHOD_COUNT;

// As adjustPixels, by a given method.
void adjustPixelsBy(const ColourMethod& method, const ColourAdjustment& adjustment, const uint8_t* source,
                    uint8_t* target, size_t pixelCount);
