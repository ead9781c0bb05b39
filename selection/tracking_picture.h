// What follows the pointer while a floating selection is dragged, in place of the selection itself: a rubber band,
// or the turned frame. Both invert the screen: drawn twice, they are gone.
#pragma once

#include <windows.h>

bool trackingRuns();

// Draw, or take away, the band of the host dialog and the turned frame of the canvas.
void invertBand();
void invertRotatedFrame(HWND canvas);

// Draws the one that is on the screen over a freshly painted part of the canvas, whose mapping `dc` has.
// Nothing when nothing is dragged.
void drawTracking(HDC dc);

// Ends a drag as if it had not been.
void cancelTracking(HWND canvas);

// The picture of the image has moved on the canvas by so many client pixels. Draws nothing.
void shiftTracking(POINT by);
