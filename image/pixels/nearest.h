// Nearest-neighbour scaling. Pure pixel code, as image/pixels/pixel_ops.h.
#pragma once

#include "image/pixels/bits_view.h"

// Fills `table` (`to` entries) with the source position for each of `to` positions, by the line rule
// from (0, 0) to (from - 1, to - 1). Both are at least 1.
void nearestTable(uint32_t* table, int from, int to);

// Resamples the source into the result, nearest neighbour. Rows are matched from the BOTTOM of both
// pictures. False (and nothing written) when there is no memory for the tables or a source
// row is above 4 GB.
bool scaleNearest(const BitsView& result, const BitsView& source);
