// The Rubber: brings back the image as it was when the session began.
//
// `original` has the image's size; every pixel goes towards the pixel of it that lies under the same cell
// of the brush. There is no coverage map: each dab acts again on the image as it is. `opacity` is percent,
// 0 to 100.
//
// That is the image's own pixel, but for a brush that hangs over both sides of the image: as its cells are
// placed oddly there (see DabPlacement), what it brings back is shifted, and black where it comes from
// outside: the same cells decide as for every other tool.
#pragma once

#include "tools/kernels/dab_placement.h"

void hardRubberKernel(BitsView image, const DabPlacement& dab, MapView mask, BitsView original, int opacity);

// The weight falls off with the squared distance from the dab's middle and is a fraction of a percent:
// opacity x (1 - t).
void softRubberKernel(BitsView image, const DabPlacement& dab, MapView mask, BitsView original, int opacity);
