// A crossing table as the flat rows that the span resampler reads.
#pragma once

#include "color/kernels/span_reshape.h"
#include "selection/geometry/row_crossings.h"

// One entry for each head of the table, the one below the image included. False, and `spans` all zero,
// when there is no memory.
bool makeSpanRows(const RowHead* table, SpanTable& spans);
void freeSpanRows(SpanTable& spans);  // all zero again
