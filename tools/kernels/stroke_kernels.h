// Brush strokes a segment at a time.
#pragma once

#include "image/pixels/bits_view.h"

// What every dab of a Brush stroke shares; the same through all segments of the stroke.
struct BrushStroke {
    BitsView image;    // painted in place
    BitsView start;    // the image as it was when the stroke began; used by the Smooth edge only
    MapView coverage;  // of the image's size; all 0 when the stroke begins, then left to the Brush
    MapView mask;      // the brush, cells 0 or 1, row0 the dab's top line; its size is the brush's
    Rgb colour;
    int opacity;  // percent, 0 to 100
    bool soft;    // Smooth edge
};

// Walks the digital line, both ends included, and lays the brush centred on every point of it. Image and
// coverage end up as if the Brush kernels had laid the dabs one by one, as paintBrushDabs does.
// The Smooth edge relies on what a stroke guarantees: where the coverage is 0 the image is still the
// start image, elsewhere it is the colour laid over it with that weight.
void paintBrushSegment(const BrushStroke& stroke, PixelPoint from, PixelPoint to);

// The plain way: dab by dab.
void paintBrushDabs(const BrushStroke& stroke, PixelPoint from, PixelPoint to);
