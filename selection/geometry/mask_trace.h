// From a mask back to an outline: follows the boundary of the inside region that holds the mask's first
// inside pixel, row by row from the top.
#pragma once

#include "image/pixels/bits_view.h"

enum TraceResult {
    TRACE_CLOSED,    // back at the start: the only one that gives points
    TRACE_EMPTY,     // the mask has no inside pixel
    TRACE_DEAD_END,  // no inside neighbour to go on to, as from a single pixel
    TRACE_ENDLESS,   // the walk goes round without ever coming back to the start
    TRACE_NO_MEMORY,
};

// The first pixel, from the top row down and from the left, whose three bytes are 0. Column and row
// from the top. False when there is none.
bool findFirstInsidePixel(const BitsView& mask, PixelPoint& point);

// The boundary's points, image pixels, with the mask's top left corner at `origin`: the start first and
// the start again last. A neighbour is inside when its blue byte is 0; whatever lies beyond the mask is
// outside. On TRACE_CLOSED the caller owns the points (freeOutlinePoints); else they are null and 0.
TraceResult traceMask(const BitsView& mask, PixelPoint origin, PixelPoint*& points, int& count);
