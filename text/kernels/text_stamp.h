// Stamping a rendered line of text into the image.
#pragma once

#include "image/pixels/bits_view.h"

// Lays the colour over every image pixel whose strip pixel is not black, with `opacity` percent (100
// replaces the pixel, divisions truncate). The strip is a 24-bit picture as wide as the image; its top
// row belongs to image row originY, which may be negative. Rows outside the image are skipped, and the
// image's last row is never reached: a line may use (image height - 1 - originY) rows.
void stampText(BitsView image, BitsView strip, int originY, Rgb colour, int opacity);
