// Stamp and Spoonbill: lay a patch picked up from the image under the brush mask.
#pragma once

#include "tools/kernels/dab_placement.h"

// The patch's top-left pixel belongs to the mask's top-left cell; it is clipped with the mask. Cells for
// which a patch smaller than the mask has no pixel are left alone. `opacity` is percent, 0 to 100.
void patchKernel(BitsView image, const DabPlacement& dab, MapView mask, BitsView patch, int opacity);
