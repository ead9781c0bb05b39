// The floating pixels and the mask of a selection, from its crossings. A mask pixel is 0 (black) inside
// the outline and 255 (white) outside; floating pixels are black outside.
//
// `rect` has the size of the images. For the image it is the selection's rectangle in image pixels, and may lie
// partly or wholly outside; for the table it says in the table's own rows and columns where the images lie.
// Rows that the table does not have are outside the outline.
#pragma once

#include "image/pixels/bits_view.h"
#include "selection/geometry/row_crossings.h"

// Writes the whole mask, padding bytes (to 4 bytes a row, set to 255) included.
void fillSelectionMask(const BitsView& mask, const RowHead* table, PixelRect rect);

// Writes what the image shows at (left, top) into `pixels`, inside the outline only. Black beyond the image stays
// black: `pixels` are all black before.
void liftSelectionImage(const BitsView& pixels, const RowHead* table, const BitsView& image, int left, int top);

// Blackens everything outside the outline.
void cutSelectionImage(const BitsView& pixels, const RowHead* table, PixelRect rect);

// Writes the floating pixels that are inside into the image, at (left, top). What lies outside the
// image is skipped.
void applySelection(const BitsView& image, const BitsView& pixels, const BitsView& mask, int left, int top);

// Makes in `target` what the image looks like at `rect` with the selection over it; black where there
// is no image.
void composeSelection(const BitsView& target, const BitsView& image, const BitsView& pixels, const BitsView& mask,
                      PixelRect rect);

// The floating pixels for a reshaped outline, to be cut to it: the image at `rect`, over it the old floating
// pixels where the old outline was (so that a moved selection keeps its own pixels).
void rebuildSelectionImage(const BitsView& pixels, PixelRect rect, const BitsView& image, const BitsView& oldPixels,
                           const BitsView& oldMask, PixelRect oldRect);
