// What can be done with a floating selection. Each starts again from the untouched states, happens whole
// or, when memory is short, not at all, and repaints the canvas. Coordinates are image pixels.
#pragma once

#include <windows.h>

#include "selection/geometry/outline.h"

// One-click operations and colour steps, by hit code (selection/geometry/frame_layout.h).
void runSelectionOperation(HWND canvas, int hit);

// Moves there and back lose nothing, wherever they lead.
void moveSelectionBy(int dx, int dy);
void resizeSelectionTo(const RECT& rect);

// Adds whole degrees, counter-clockwise positive, to the selection's turn.
void rotateSelectionBy(int degrees);

// A reshaped outline takes the place of the present one; its pixels come from the image, and from the old
// floating pixels where those were. The outline's table counts from `origin`. Takes what the outline owns,
// also when it fails: then (it encloses nothing, or memory is short) the selection stays as it was.
bool takeReshapedOutline(Outline& outline, PixelPoint origin);
