// The selection on a zoomed canvas, and what keys do to it. Points are image pixels.
#pragma once

#include <windows.h>

#include "canvas/view/view_pixels.h"

// Lays the floating pixels over a picture of the zoomed canvas.
void showFloatingPixels(const ViewPicture& picture);

// The canvas has another view than `before`: the frame is laid out anew, and a drag goes along. Paints nothing.
void followViewWithSelection(const CanvasView& before);

// A press draws an outline, or moves, resizes or turns the selection.
bool selectionDragRuns();

// Ends it as if it had not been. False when none runs.
bool cancelSelectionDrag(HWND canvas);

// Moves the floating selection, but not out of the image; a part outside may come in.
void nudgeSelection(int dx, int dy);
void applyFloatingSelection(HWND canvas);
void closeSelection();
