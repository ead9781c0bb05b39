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
template <typename Number>
struct LineWalk {
    int x, y;
    Number left;         // steps still to go
    Number error;        // twice the distance from the line, in steps of the longer axis
    Number straight;     // added to the error by a step along the longer axis only
    Number diagonal;     // added by a step along both
    int majorX, majorY;  // a step along the longer axis
    int minorX, minorY;  // and what a diagonal step moves besides
};

typedef LineWalk<int64_t> DigitalLine;  // any 32-bit coordinates will do
typedef LineWalk<int> NearLine;         // the same walk, begun faster, between points that are near

DigitalLine beginLine(PixelPoint from, PixelPoint to);

// Near the origin, that is: so that four times a distance is no overflow.
inline bool isNear(PixelPoint point)
{
    const unsigned limit = 1u << 28;
    return (unsigned)point.x + limit < 2 * limit && (unsigned)point.y + limit < 2 * limit;
}

inline NearLine beginNearLine(PixelPoint from, PixelPoint to)
{
    const int stepX = to.x - from.x, stepY = to.y - from.y;
    const int lengthX = stepX < 0 ? -stepX : stepX, lengthY = stepY < 0 ? -stepY : stepY;
    const int signX = (stepX > 0) - (stepX < 0), signY = (stepY > 0) - (stepY < 0);
    const bool wide = lengthX >= lengthY;
    const int major = wide ? lengthX : lengthY, minor = wide ? lengthY : lengthX;
    return {from.x,
            from.y,
            major,
            2 * minor - major,
            2 * minor,
            2 * (minor - major),
            wide ? signX : 0,
            wide ? 0 : signY,
            wide ? 0 : signX,
            wide ? signY : 0};
}

// Moves to the next point; false (and no move) when the walk stands at its last one. Whether a step is a diagonal one
// cannot be foreseen, so there is no branch on it.
template <typename Number>
inline bool nextPoint(LineWalk<Number>& line)
{
    if (line.left == 0) return false;
    --line.left;
    const int diagonal = -(line.error >= 0);  // all bits or none
    line.x += line.majorX + (line.minorX & diagonal);
    line.y += line.majorY + (line.minorY & diagonal);
    line.error += line.straight + ((line.diagonal - line.straight) & diagonal);
    return true;
}
