// What a turned selection shows, one pixel at a time in the plane, to compare against. Shares no code with the library.
#pragma once

#include "tests/reference/bitmap_reference.h"

// A selection before a turn: its place, its pixels, and a mask whose red 0 is inside.
struct ReferencePatch {
    int left, top;
    reference::Picture pixels, mask;
};

// A turn by whole degrees, counter-clockwise positive, about a point.
struct ReferenceTurn {
    double centreX, centreY;
    int degrees;
};

// The colours that pixel (x, y) of the image shows after the turn: blue, green, red, not rounded. The up to four
// pixels around the place that it comes from and that are inside, weighted bilinearly. False when none of them is
// inside.
bool referenceTurnedPixel(const ReferencePatch& from, const ReferenceTurn& turn, int x, int y, double* channels);
