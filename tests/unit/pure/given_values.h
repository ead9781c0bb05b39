// The reference's colour values as the adjustment takes them.
#pragma once

#include "color/kernels/adjust.h"
#include "tests/reference/colour_reference.h"

inline ColourValues given(const reference::Values& v)
{
    return {v.contrast, v.brightness, v.saturation, v.hue, v.lift};
}
