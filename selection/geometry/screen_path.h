// An outline on the screen as a dotted line: which of its points count, and which pieces of it are to be drawn.
#pragma once

#include "image/pixels/bits_view.h"

// After so many pixels of the line, a multiple of every system's dot and gap, its dots begin anew: from such a point
// on the line can be drawn by itself.
constexpr int DOT_PERIOD = 24;

// Of a line in horizontal, vertical and slanting steps.
int pixelsBetween(PixelPoint a, PixelPoint b);

// Leaves points out that lie where the one before them does: they add nothing to the line. The count that is left.
int dropRepeats(PixelPoint* points, int count);

// Points `first` to `end` - 1 of a line.
struct PathPiece {
    int first, end;
};

// Walks the pieces of a line that reach into a part of the screen, the line's pixels being drawn without the last one:
//     PathWalk walk = {points, count, seen};
//     for (PathPiece piece; nextPiece(walk, piece);) ...
// Drawn piece by piece, `seen` shows what the whole line would show there.
struct PathWalk {
    const PixelPoint* points;
    int count;
    PixelRect seen;
    int at;  // where the next piece may begin; its dots begin anew there
};

bool nextPiece(PathWalk& walk, PathPiece& piece);
