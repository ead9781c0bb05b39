// What colour values come to for every pixel: made once a call, then applied by color/kernels/adjust.h.
//
// A pixel is the three bytes blue, green, red.
#pragma once

#include <cstdint>

#include "color/kernels/colour_values.h"

struct ColourAdjustment {
    uint8_t tone[256];     // applied to each channel first
    int slope, offset;     // the tone table is clamp(i * slope / 191 + offset)
    int saturationFactor;  // 128 keeps the saturation
    int hueShift;
    int lift;       // passes; always 0 for whole images
    bool toneOnly;  // neutral saturation and hue: the table is all but the lift
    bool inRange;   // the values were within their limits; others take the plain way
};

// Whole images: at neutral values every level from 191 upward rises by one, and 128 keeps the
// saturation exactly. Meant to differ from the next one; the two are not to be aligned. The lift is left out.
ColourAdjustment imageAdjustment(const ColourValues& values);

// Floating selections: neutral values change nothing, but the saturation falls a little (127 / 128)
// whenever the hue is shifted.
ColourAdjustment selectionAdjustment(const ColourValues& values);
