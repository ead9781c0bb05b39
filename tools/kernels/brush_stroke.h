// What every dab of a Brush stroke shares; the same through all segments of the stroke.
//
// `start` and `coverage` are made ready only where the stroke comes: a segment may read and write them inside the
// rectangles of its own dabs, and nowhere else. Where the coverage is 0 the image is still as in `start`, and either
// may be read.
#pragma once

#include "image/pixels/bits_view.h"

struct BrushStroke {
    BitsView image;    // painted in place
    BitsView start;    // the image as it was when the stroke began; used by the Smooth edge only
    MapView coverage;  // of the image's size; all 0 when the stroke begins, then left to the Brush
    MapView mask;      // the brush, cells 0 or 1, row0 the dab's top line; its size is the brush's
    Rgb colour;
    int opacity;  // percent, 0 to 100
    bool soft;    // Smooth edge
};
