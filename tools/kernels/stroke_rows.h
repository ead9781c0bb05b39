// Row operations of a Brush segment.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixels/bits_view.h"

// cells[i] = max(cells[i], weights[i])
void raiseCells(uint8_t* cells, const uint8_t* weights, int count);

// Soft edge: every pixel whose coverage cell is not 0 becomes the colour laid over `under` with the
// cell's weight. Both rows are of `count` pixels; the others keep every bit.
void blendCoveredRow(uint8_t* pixels, const uint8_t* under, const uint8_t* cells, int count, Rgb colour);

// Full edge: every pixel whose cell is 0 is mixed with the colour, and its cell becomes 1.
void mixFreshRow(uint8_t* pixels, uint8_t* cells, int count, Rgb colour, int opacity);
