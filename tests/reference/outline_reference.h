// Outlines, crossings and masks done the slow and obvious way, to compare against. Even-odd on a grid
// of cells, no lists. Shares no code with the library.
#pragma once

#include <random>
#include <vector>

#include "tests/reference/bitmap_reference.h"

struct ReferencePoint {
    int x, y;
    bool operator==(const ReferencePoint& other) const { return x == other.x && y == other.y; }
    bool operator!=(const ReferencePoint& other) const { return !(*this == other); }
};

struct ReferenceBounds {
    bool empty;
    int left, top, right, bottom;
};

// Every point of the nearest-point line, both ends included; ties go to the point further along.
std::vector<ReferencePoint> referenceLine(ReferencePoint from, ReferencePoint to);

// The cells at which an outline crosses rows: cell (row, column) is set or not.
struct ReferenceCrossings {
    int rowCount, columns;
    std::vector<std::vector<bool>> cells;  // rowCount + 1 rows

    ReferenceCrossings(int rows, int columnCount);
    void toggle(int row, int column);
    void addStep(ReferencePoint from, ReferencePoint to);
    std::vector<int> row(int y) const;  // columns, ascending
    bool inside(int x, int y) const;
    ReferenceBounds bounds() const;
};

// A drawn outline: its points and its crossings.
struct ReferenceOutline {
    std::vector<ReferencePoint> points;
    ReferenceCrossings crossings;
};

// First point, every further one, then from `release` back to the first.
ReferenceOutline referenceOutline(int rowCount, int columns, const std::vector<ReferencePoint>& given,
                                  ReferencePoint release);

reference::Picture referenceSelectionMask(const ReferenceCrossings& crossings, const ReferenceBounds& bounds);

// The image at the bounds (black where there is none), black outside the outline.
reference::Picture referenceSelectionImage(const reference::Picture& image, const ReferenceCrossings& crossings,
                                           const ReferenceBounds& bounds);

// One shape of outline after the other: random corners, a pen that wanders, needles, saws along a row or
// a column, the border of the area. Points lie in 1..width-2, 1..height-2.
std::vector<ReferencePoint> randomOutline(std::mt19937& random, int shape, int width, int height, int points);
constexpr int RANDOM_OUTLINE_SHAPES = 6;
