// The definition of the row operations; what is left over by the wide ones goes this way too.
#pragma once

#include "image/pixels/pixel_row_variants.h"

ptrdiff_t findMaskPlain(const uint8_t* mask, ptrdiff_t x, ptrdiff_t width, bool inside);
void fillPlain(uint8_t* to, uint8_t value, size_t count);
void copyPlain(uint8_t* to, const uint8_t* from, size_t count);
void swapRedAndBluePlain(uint8_t* to, const uint8_t* from, size_t pixels);
