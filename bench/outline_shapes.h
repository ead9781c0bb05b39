// Outlines to select with: how much each operation costs must follow from their points and the area inside.
#pragma once

#include "selection/geometry/outline.h"

// One that goes to and fro over a square, crossing itself: the area that it lies in grows with its points. A thin one
// is a strip of a few pixels from one corner of a rectangle to the other: all but nothing lies inside.
struct OutlineShape {
    int points;         // about
    PixelPoint corner;  // of the rectangle that it lies in
    int width, height;
    bool thin;
};

enum OutlineSize { OUTLINE_1K, OUTLINE_10K, OUTLINE_20K, OUTLINE_100K, OUTLINE_200K, THIN_1K, THIN_10K, OUTLINE_SIZES };

const OutlineShape& outlineShape(int size);

// Closed; it lies within 5,100 columns and 4,000 rows. All zero when there is no memory.
Outline makeOutline(const OutlineShape& shape);
