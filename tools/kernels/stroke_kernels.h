// Brush strokes a segment at a time.
#pragma once

#include "tools/kernels/brush_stroke.h"

// Walks the digital line, both ends included, and lays the brush centred on every point of it. Image and
// coverage end up as if the Brush kernels had laid the dabs one by one, as paintBrushDabs does.
// The Smooth edge relies on what a stroke guarantees: where the coverage is 0 the image is still the
// start image, elsewhere it is the colour laid over it with that weight.
void paintBrushSegment(const BrushStroke& stroke, PixelPoint from, PixelPoint to);

// The plain way: dab by dab.
void paintBrushDabs(const BrushStroke& stroke, PixelPoint from, PixelPoint to);
