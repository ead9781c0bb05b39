// The digital line between two pixels: an integer Bresenham walk, both ends included.
#pragma once

#include <cstdint>

#include "image/pixels/bits_view.h"

// Where a walk stands. x and y are the current point; the rest belongs to the walk.
//
//     DigitalLine line = beginLine(from, to);
//     do { ... line.x, line.y ... } while (nextPoint(line));
//
// The longer axis advances by one at each step, the other one so that every point is the nearest to
// the true line. Where two points are equally near, the one further along (towards `to`) is taken.
// Any 32-bit coordinates will do.
struct DigitalLine {
    int x, y;
    int64_t left;        // steps still to go
    int64_t error;       // twice the distance from the line, in steps of the longer axis
    int64_t straight;    // added to the error by a step along the longer axis only
    int64_t diagonal;    // added by a step along both
    int majorX, majorY;  // a step along the longer axis
    int minorX, minorY;  // and what a diagonal step moves besides
};

DigitalLine beginLine(PixelPoint from, PixelPoint to);

// Moves to the next point; false (and no move) when the walk stands at its last one.
inline bool nextPoint(DigitalLine& line)
{
    if (line.left == 0) return false;
    --line.left;
    line.x += line.majorX;
    line.y += line.majorY;
    if (line.error < 0) {
        line.error += line.straight;
        return true;
    }
    line.x += line.minorX;
    line.y += line.minorY;
    line.error += line.diagonal;
    return true;
}
