// What colour values come to for every pixel: made once a call, then applied by color/kernels/adjust.h.
//
// A pixel is the three bytes blue, green, red.
#pragma once

#include <cstdint>

#include "color/values/colour_values.h"

struct ColourAdjustment {
    uint8_t tone[256];     // applied to each channel first
    int slope, offset;     // the tone table is clamp(i * slope / 191 + offset)
    int saturationFactor;  // 128 keeps the saturation
    int hueShift;
    bool toneOnly;        // neutral saturation and hue: the table is all of it
    bool inRange;         // the values were within their limits; others take the plain way
    ColourValues values;  // as they were given, for what only floating selections have
};

// Whole images: at neutral values every level from 191 upward rises by one, and 128 keeps the
// saturation exactly. Meant to differ from the next one; the two are not to be aligned.
ColourAdjustment imageAdjustment(const ColourValues& values);

// Floating selections: neutral values change nothing, but the saturation falls a little (127 / 128)
// whenever the hue is shifted.
ColourAdjustment selectionAdjustment(const ColourValues& values);
