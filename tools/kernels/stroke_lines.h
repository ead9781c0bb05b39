// A segment of a stroke by picture lines: which columns its points have in each. A digital line only ever goes one
// way, so no line between the first and the last is without a point.
#pragma once

#include <cstdint>

#include "tools/kernels/digital_line.h"

// The columns of the points in one picture line.
struct LineSpan {
    int first, last;
};

struct StrokeLines {
    LineSpan* spans;  // for each picture line from firstY on
    // For each picture line 0 or 1: in a wide segment whether it has the longer of the two lengths that lines have
    // there, in a tall one whether its point lies in another column than the one above. Stretches of lines without
    // the segment's first and last one have the same shape when these are the same.
    uint8_t* kinds;
    int mostPoints;  // in a picture line between the first and the last
    int firstY, lastY;
    void* memory;
};

// The points from the walk's present one to its last, which is `end`. False without memory.
bool makeStrokeLines(StrokeLines* lines, DigitalLine line, PixelPoint end);
void freeStrokeLines(StrokeLines* lines);
