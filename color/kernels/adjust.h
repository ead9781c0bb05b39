// Contrast, brightness, saturation and hue of pixels. No windows, no memory handles.
#pragma once

#include <cstddef>
#include <cstdint>

#include "color/kernels/adjustment.h"
#include "image/pixels/bits_view.h"

// Adjusts pixels from source to target with the vectors of vectorLevel(); the lift is left out. The two
// may be the same memory, but must not overlap otherwise.
void adjustPixels(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t pixelCount);

// A whole image into one of the same size, or in place (both the same). The padding bytes of every row
// of the target become 0.
void adjustImage(const ColourAdjustment& adjustment, BitsView source, BitsView target);
