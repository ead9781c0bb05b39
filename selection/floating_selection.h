// One state of a floating selection as a value, and the values that are made from it. Every value is whole
// wherever it lies: nothing of it is cut at the image's borders.
//
// A value owns its parts; all zero it is no selection. What makes one gives false, and no selection, when
// memory is short or nothing would be selected.
#pragma once

#include <windows.h>

#include "image/pixels/bits_view.h"
#include "selection/geometry/outline.h"
#include "selection/geometry/selection_transform.h"
#include "session/ground/owned_selection.h"

void freeFloating(FloatingSelection& selection);  // all zero again
bool copyFloating(const FloatingSelection& from, FloatingSelection& copy);
void moveFloating(FloatingSelection& selection, int dx, int dy);

// What lies inside a closed outline, cut out of the photo. The outline's table counts from `origin`, its
// points are image pixels. Takes what the outline owns, also when it fails.
bool liftFloating(Outline& outline, PixelPoint origin, HGLOBAL photo, FloatingSelection& lifted);

// A stored selection with its corner at `corner`; its outline is traced from the mask. Takes both bitmaps,
// also when it fails.
bool traceFloating(HGLOBAL image, HGLOBAL mask, PixelPoint corner, FloatingSelection& traced);

bool flipFloating(const FloatingSelection& from, bool vertically, FloatingSelection& flipped);

bool resizeFloating(const FloatingSelection& from, PixelRect rect, FloatingSelection& resized);

// Turned by whole degrees, counter-clockwise positive. The turned points are clamped to the canvas, whose
// client rectangle is given in image pixels, as pointer positions are.
struct TurnLimits {
    PixelRect canvas;
    int rowCount;  // of the photo
};
bool turnFloating(const FloatingSelection& from, int degrees, const TurnLimits& limits, FloatingSelection& turned);

// With a new outline, as liftFloating, but over the photo lie the old pixels where those were.
bool reshapeFloating(const FloatingSelection& from, Outline& outline, PixelPoint origin, HGLOBAL photo,
                     FloatingSelection& reshaped);
