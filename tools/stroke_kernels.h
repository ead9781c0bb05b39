// Brush strokes a segment at a time.
#pragma once

#include "image/bits_view.h"

// What every dab of a Brush stroke shares.
struct BrushStroke {
    BitsView image;     // painted in place
    BitsView start;     // the image as it was when the stroke began; used by the Smooth edge only
    MapView coverage;   // of the image's size; all 0 when the stroke begins, kept between segments
    MapView mask;       // the brush, cells 0 or 1, row0 the dab's top line; its size is the brush's
    Rgb colour;
    int opacity;        // percent, 0 to 100
    bool soft;          // Smooth edge
};

// Walks the digital line, both ends included, and lays the brush centred on every point of it. Image and
// coverage end up as if the Brush kernels had laid the dabs one by one.
// False when there is no memory for the workspace: the segment is painted all the same, or not at all.
bool paintBrushSegment(const BrushStroke& stroke, PixelPoint from, PixelPoint to);
