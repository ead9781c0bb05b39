// Rows of pixels for the painting tools, at the level of vectors in use.
#pragma once

#include "image/pixels/bits_view.h"
#include "tools/kernels/paint_row_variants.h"

// Of vectorLevel().
const PaintRows& paintRows();

ColourRow colourRow(Rgb colour);

// Lays one colour over `count` pixels.
void mixColourOver(uint8_t* pixels, const ColourRow& colour, int count, int opacity);
