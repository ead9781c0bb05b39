// All crossings of a closed outline at once: counted, put where they belong, and each row sorted by itself. The
// table is the one that adding them one after the other would give.
#pragma once

#include "selection/geometry/row_crossings.h"

// The steps of the digital lines from each point to the next and from the last one to the first; -1 when an int
// cannot hold as many.
int stepsOfOutline(const PixelPoint* points, int count);

// The table for an image of `rowCount` rows, counted from `origin`. `walked`, unless null, gets the stepsOfOutline
// points of the lines, each line without its first point. Null without memory.
RowHead* crossingsOfOutline(int rowCount, const PixelPoint* points, int count, PixelPoint origin, PixelPoint* walked);
