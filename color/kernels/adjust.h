// Contrast, brightness, saturation and hue of pixels. No windows, no memory handles.
//
// A pixel is the three bytes blue, green, red. The values follow vertical scroll bars, whose top is
// their minimum, and moving a bar up brightens, steepens and saturates:
//   contrast     -100..100, 0 neutral; negative is steeper
//   brightness   -100..100, 0 neutral; negative is brighter
//   saturation   0..100, 50 neutral; 0 doubles, 100 removes it
//   hue          -127..127, 0 neutral, in 1/252 of a turn
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixels/bits_view.h"

// What one call does to every pixel.
struct ColourAdjustment {
    uint8_t tone[256];     // applied to each channel first
    int slope, offset;     // the tone table is clamp(i * slope / 191 + offset)
    int saturationFactor;  // 128 keeps the saturation
    int hueShift;
    bool toneOnly;  // neutral saturation and hue: the table is the whole result
    bool inRange;   // the values were those given above; others take the plain way
};

// Whole images: at neutral values every level from 191 upward rises by one, and 128 keeps the
// saturation exactly. Meant to differ from the next one; the two are not to be aligned.
ColourAdjustment imageAdjustment(int contrast, int brightness, int saturation, int hue);

// Floating selections: neutral values change nothing, but the saturation falls a little (127 / 128)
// whenever the hue is shifted.
ColourAdjustment selectionAdjustment(int contrast, int brightness, int saturation, int hue);

// Adjusts pixels from source to target by the fastest method of this processor. The two may be the
// same memory, but must not overlap otherwise.
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
