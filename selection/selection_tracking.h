// Dragging a floating selection: move, resize, turn. Only a rubber band follows the pointer; the
// selection itself is changed once, at the release.
#pragma once

#include <windows.h>

// Points are image pixels.
void beginTracking(HWND canvas, POINT at, int hit);
void trackPointer(HWND canvas, POINT at);
void endTracking(HWND canvas, POINT at);
bool trackingRuns();

// Ends a drag as if it had not been.
void cancelTracking(HWND canvas);

// The picture of the image has moved on the canvas by so many client pixels. Draws nothing.
void shiftTracking(POINT by);

// Draws what follows the pointer over a freshly painted part of the canvas, whose mapping `dc` has.
// Nothing when nothing is dragged.
void drawTracking(HDC dc);
