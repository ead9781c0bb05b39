// The footprint of one dab as a grid of cells, 1 inside the brush shape and 0 outside.
#pragma once

#include <cstdint>

#include "image/pixels/bits_view.h"

// Fills every cell of the mask. `shape` is a BrushShape; any other value sets no cell.
//
// A 1 x 1 brush and every brush thinner than 3 cells is full, whatever its shape. Otherwise the shape
// fills the box less one line and one column: a rectangle all of it, a circle the cells whose centre
// lies in or on the inscribed ellipse.
//
// The view shows the mask as the dab lies on the picture: row0 is the dab's TOP line, which for a mask
// stored bottom-up is the last row in memory. The lines left empty are the dab's top line and its
// right column: the shape is drawn into memory rows from the first on, which mirrors it.
// Sizes up to 32767 cells a side.
void rasteriseBrush(MapView mask, uint32_t shape);
