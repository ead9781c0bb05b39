// The little picture by which a stored selection is recognised.
#pragma once

#include "image/pixels/bits_view.h"
#include "library/format/tiff_layout.h"

// The area of the thumbnail that a selection fills: centred, its shape kept. Margins on both sides are
// equal, so an odd size gains one column or row; a very long selection may leave no area at all.
struct ThumbnailArea {
    int left, top;      // margins
    int width, height;  // even; may be 0
};
ThumbnailArea fitThumbnail(int width, int height);

// Draws the selection's inside (mask pixels that are all black) on light gray. `rgb` receives 30 rows of 40
// pixels from the top, red, green, blue. Image and mask have the same size.
void drawThumbnail(uint8_t (&rgb)[THUMBNAIL_BYTES], const BitsView& image, const BitsView& mask);
