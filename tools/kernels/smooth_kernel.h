// Smooth: a 3 x 3 binomial blur of the pixels under the brush mask.
#pragma once

#include "tools/kernels/dab_placement.h"

// Weights 1 2 1 / 2 4 2 / 1 2 1, the sum rounded to the nearest sixteenth; always of unfiltered values.
// The blur is mixed over the pixel with `opacity` percent (0 to 100).
//
// Two oddities decide where a stroke reaches: a pixel is decided by the mask cell one line above and one column to the
// left of it; and of the dab the first line, the LAST TWO lines, the first and the last column never change. A dab less
// than 3 pixels wide or 4 high therefore does nothing. Pixels whose neighbours would lie outside the image (only where
// a brush hangs over both sides of an image) stay as they are.
//
// False when there is no memory for the workspace: nothing is painted.
bool smoothKernel(BitsView image, const DabPlacement& dab, MapView mask, int opacity);
