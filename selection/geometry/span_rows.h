// A crossing table as the flat rows that the span resampler reads.
#pragma once

#include "color/kernels/span_reshape.h"
#include "selection/geometry/row_crossings.h"

// The outline of a selection with rectangle `rect` (image pixels), whose table counts from its corner. One
// entry for each head of the table, the one below included; the rows count from the rectangle's top. The
// columns are the image's; where they would not lie between 1 and CROSSING_END, all that the resampler takes
// for crossings, they and the rectangle with them begin at 1.
// False, and `outline` all zero, when there is no memory.
bool makeSpanOutline(const RowHead* table, PixelRect rect, SpanOutline& outline);
void freeSpanOutline(SpanOutline& outline);  // all zero again
