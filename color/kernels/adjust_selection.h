// A floating selection's pixels, derived again from its untouched source. No windows, no handles.
#pragma once

#include "color/kernels/adjustment.h"
#include "image/pixels/bits_view.h"

// Pixels and the mask that goes with them; both of one size. A mask pixel whose red byte is 0 is inside.
struct MaskedPixels {
    BitsView pixels;
    BitsView mask;
};

// Scales the source's mask into the target's (nearest neighbour) and writes the adjusted source
// pixels, the lift and its like included, into the target wherever the scaled mask is inside. Pixels outside and all
// padding keep their bytes. Rows are counted from the bottom, as they are stored: there the sampling starts. Source and
// target masks may be the same memory when the sizes are equal. False when memory is short; nothing is changed then.
bool adjustSelection(const ColourAdjustment& adjustment, MaskedPixels source, MaskedPixels target);
