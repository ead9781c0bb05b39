// The inside of paintBrushSegment: one segment of a stroke, without the dabs that the image's border cuts.
#pragma once

#include "tools/kernels/stroke_kernels.h"

// The x values of the points in one picture line.
struct LineSpan {
    int first, last;
};

// The points of a digital line whose dabs lie wholly inside the image. A line only ever goes one way, so
// they follow on one another: no picture line between firstY and lastY is without a point.
struct StrokeSegment {
    const PixelPoint* points;
    int count;              // at least 1
    const LineSpan* spans;  // for each picture line from firstY on
    int firstY, lastY;
};

// Both give what the Brush kernels give dab by dab, in any order of the dabs. False, and nothing painted,
// when they cannot: for a brush with gaps in its rows (Full edge), or without memory.
bool paintHardSegment(const BrushStroke& stroke, const StrokeSegment& segment);
bool paintSoftSegment(const BrushStroke& stroke, const StrokeSegment& segment);

// The picture lines over which the dabs reach, and for each of them the lines whose points have a dab there.
struct LineRange {
    int first, end;
};
LineRange linesTouched(const BrushStroke& stroke, const StrokeSegment& segment);
LineRange pointLinesAround(const BrushStroke& stroke, const StrokeSegment& segment, int y);

// Asks for the pixels and cells of the columns that lie two lines below line y, which come next but one.
void fetchLineAhead(const BrushStroke& stroke, int y, int left, int right);
