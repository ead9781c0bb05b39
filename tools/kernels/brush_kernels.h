// The Brush: lays a colour under the brush mask, no pixel twice within one stroke.
//
// image     changed in place; pixels outside the dab and padding bytes keep every bit
// dab       the mask's place on the image; an invisible one changes nothing
// mask      cells 0 or 1, row0 the dab's top line
// coverage  of the image's size, one cell a pixel, what the stroke has laid there so far; all 0 when
//           the stroke starts
// opacity   percent, 0 to 100
#pragma once

#include "tools/kernels/dab_placement.h"

// Full edge: each pixel is painted by the first dab of the stroke that covers it (coverage 1 from then on).
void hardBrushKernel(BitsView image, const DabPlacement& dab, MapView mask, MapView coverage, Rgb colour, int opacity);

// Smooth edge: the weight falls off towards the rim, and a pixel ends with the colour laid over the
// image `start`, as it was when the stroke began (same size as image), at the highest weight any dab
// gave it. The coverage cell keeps that weight.
void softBrushKernel(BitsView image, BitsView start, const DabPlacement& dab, MapView mask, MapView coverage,
                     Rgb colour, int opacity);

// The soft Brush's weight, percent, for a distance t from the dab's middle (0 to 1).
inline uint8_t softBrushWeight(double t, int opacity)
{
    return (uint8_t)(int)(opacity * (1 - t * t * t));
}
