// The colour arithmetic byte by byte and pixel by pixel: what the faster ways are measured by.
#pragma once

#include <cstddef>
#include <cstdint>

#include "color/kernels/adjustment.h"

// Each channel byte through adjustment.tone. Source and target may be the same.
void toneBytesPlain(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t byteCount);

// Saturation and hue of pixels that the tone table has been applied to, in place.
void hlsPixelsPlain(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount);
