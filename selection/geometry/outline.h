// The freehand outline while it is drawn or replayed: its points and its row crossings.
//
// Point arrays are blocks of this file: they grow in powers of two, so that their room follows from
// their count. Only appendOutlinePoint and copyOutlinePoints make them, freeOutlinePoints frees them.
#pragma once

#include "image/pixels/bits_view.h"
#include "selection/geometry/row_crossings.h"

// Appends a point, image pixels. Both are 0 / null at first. False, and nothing changed, when there is
// no memory.
bool appendOutlinePoint(PixelPoint*& points, int& count, PixelPoint point);
PixelPoint* copyOutlinePoints(const PixelPoint* points, int count);  // null for no points or no memory
void freeOutlinePoints(PixelPoint* points);                          // null is allowed

// Owns its table and its points. All zero: no outline.
struct Outline {
    RowHead* crossings;
    PixelPoint* points;  // in drawing order, neighbours at most one pixel apart
    int pointCount;
    PixelPoint last;   // the last point given
    PixelPoint start;  // the first one
    bool incomplete;   // memory ran out on the way: points or crossings are missing
};

// Begins at a point, with a fresh table for an image of `rowCount` rows; what the outline held is
// freed. False, and the outline all zero, when there is no memory.
bool startOutline(Outline& outline, int rowCount, PixelPoint point);

// Draws on to a point along the digital line: every point of it is appended, every step to another
// row adds a crossing. Does nothing before startOutline.
void extendOutline(Outline& outline, PixelPoint point);

// Draws from the release point to the start. Nothing joins the last point to the release point: a
// release away from the last point leaves the outline open there, which decides what is selected.
void closeOutline(Outline& outline, PixelPoint release);

void freeOutline(Outline& outline);  // all zero again

// Starts at the first point, extends by every further one and closes at the last. False, and all zero,
// when there is no point or not enough memory. The points must not be the ones of the outline itself.
bool replayOutline(Outline& outline, int rowCount, const PixelPoint* points, int count);

// The same for points that may lie anywhere: the table's rows and columns count from `origin`, which is
// chosen so that it holds every crossing.
bool replayOutlineAnywhere(Outline& outline, PixelPoint& origin, const PixelPoint* points, int count);

// The crossings alone of the closed outline through the points, which may lie apart. Null when there
// is no memory. The table's rows and columns count from `origin`.
RowHead* crossingsOfPoints(int rowCount, const PixelPoint* points, int count, PixelPoint origin = {0, 0});

// Whether a pixel is inside the closed outline through the points (even-odd), as the table of these
// points would have it.
bool outlineContains(const PixelPoint* points, int count, PixelPoint pixel);

// Smallest and largest coordinates, all inclusive. All 0 when there are no points.
struct PointBox {
    int minX, minY, maxX, maxY;
};

PointBox boxOfPoints(const PixelPoint* points, int count);

// Pulls a point one pixel inside the canvas, whose client rectangle is given in image pixels.
PixelPoint clampToCanvas(PixelPoint point, PixelRect canvas);

// The same and at least 1: every point of an outline but the first.
PixelPoint clampOutlinePoint(PixelPoint point, PixelRect canvas);
