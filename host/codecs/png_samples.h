// One pixel of a PNG file in another kind of pixels.
#pragma once

#include "host/codecs/png_rows.h"

// rows: the original's; layout: of the pixel at `to`.

// An edited colour as a pixel; false when that kind of pixels has none for it. bgr: as the file stores it, editedBgr:
// as it is seen.
bool storePngColor(const PngRows& rows, const PngLayout& layout, const uint8_t* bgr, const uint8_t* editedBgr,
                   int alpha, uint8_t* to);

// The original's pixel: the same samples, or those it stands for. shown: blue, green, red and alpha.
void storePngPixel(const PngRows& rows, const PngLayout& layout, const uint8_t* native, const uint8_t* shown,
                   uint8_t* to);
