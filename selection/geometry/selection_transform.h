// The geometry of moving, resizing, turning and flipping a selection: its points and its pixels. Points and
// rectangles are image pixels.
#pragma once

#include "image/pixels/bits_view.h"
#include "selection/geometry/outline.h"

// ---- points

// Adds (dx, dy) to every point and raises each coordinate to at least 1.
void movePoints(PixelPoint* points, int count, int dx, int dy);

// Maps the points of a reference state, whose selection has rectangle `reference`, to rectangle
// `target`. Divisions truncate toward zero; points that all share a coordinate go to the side where
// the box begins. `points` and `scaled` may be the same array.
void scalePoints(const PixelPoint* points, int count, PixelRect reference, PixelRect target, PixelPoint* scaled);

// Mirrors the points within their own bounding box.
void flipPointsVertically(PixelPoint* points, int count);
void flipPointsHorizontally(PixelPoint* points, int count);

// A turn by whole degrees, counter-clockwise positive, about the middle of a bounding box (which may
// lie between two pixels).
struct Turn {
    double centreX, centreY;
    double cosine, sine;
};

Turn turnAbout(PointBox box, int degrees);

// Turned coordinates are rounded toward zero.
void turnPoints(const PixelPoint* points, int count, const Turn& turn, PixelPoint* turned);

// ---- pixels of a turned selection

struct PlacedImage {
    BitsView pixels;  // unadjusted
    BitsView mask;    // the same size; red 0 is inside
    PixelRect rect;   // its place, image pixels
};

// Fills `target` wherever its mask is inside; other pixels become black. Each pixel is turned back into
// the source and weighted bilinearly from the up to four pixels around that place that are inside the
// source's mask, so that nothing from outside the outline bleeds in. Where none of the four is inside
// (the turned outline is rounded to whole pixels), the nearest inside pixel within TURN_SEARCH is taken,
// and black beyond that. `turn` is the turn from the source to the target.
//
// A pixel (x, y) stands for the point (x + 1/2, y - 1/2) of the plane in which outlines are drawn: a
// span begins AT its crossing, and a step between two rows belongs to the lower one.
constexpr int TURN_SEARCH = 4;
void turnPixels(const PlacedImage& target, const PlacedImage& source, const Turn& turn);
