// The Aerographe: sprays a colour that builds up, dab on dab. No coverage map, no random numbers.
#pragma once

#include "tools/kernels/dab_placement.h"

// `opacity` is percent, 0 to 100.
void hardSprayKernel(BitsView image, const DabPlacement& dab, MapView mask, Rgb colour, int opacity);

// The weight falls off in a straight line from the dab's middle to its rim and is a fraction of a
// percent: opacity x (1 - sqrt t).
void softSprayKernel(BitsView image, const DabPlacement& dab, MapView mask, Rgb colour, int opacity);
