// What a picture line gets from all dabs of a segment together.
//
// A line gets one row of the brush from each point line around it. Which columns and weights that makes depends
// only on how these point lines lie to one another, and a digital line has few such arrangements: not more than
// the brush has rows, and one. Each is worked out when it first comes, and from then on found again.
#pragma once

#include "tools/kernels/brush_rows.h"
#include "tools/kernels/stroke_lines.h"

struct LineShape {
    int left, count;         // picture columns
    const uint8_t* weights;  // Smooth edge: one a column
};

struct KeptShape {
    uint64_t arrangement;
    LineShape shape;      // its left from the first point of the first point line around
    KeptShape* after[2];  // the shape of the next line, for each kind of its newest point line; null: not yet known
};

struct LineShapes {
    const BrushRows* brush;
    const StrokeLines* lines;
    uint8_t* scratch;  // weights of a shape that is not kept
    KeptShape* kept;   // null: no shape comes twice
    int keptCount;
    uint8_t* keptWeights;
    size_t roomForShape;   // weights of a kept one
    uint64_t arrangement;  // of the point lines around the present line, a bit each
    KeptShape* present;    // the present line's; null: it is not kept
    void* memory;
};

// Brush and lines must stay until endLineShapes. False without memory.
bool beginLineShapes(LineShapes* shapes, const BrushRows& brush, const StrokeLines& lines);
void endLineShapes(LineShapes* shapes);

// The picture lines, from top to bottom, each once: from firstTouched to the one before endTouched.
int firstTouched(const LineShapes& shapes);
int endTouched(const LineShapes& shapes);
LineShape nextLineShape(LineShapes& shapes, int y);
