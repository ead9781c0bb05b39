// A picture of the current brush, at its size on the screen, that follows the pointer over the canvas.
//
// It is drawn on the host dialog's device context over the canvas's pixels; the pixels under it are kept
// and put back when it moves or hides. Nothing of it ever gets into the image. It is on the screen only
// while overlayHideCount is above 0 (a show counter: hiding lowers it, showing raises it up to 1) and
// overlayEnabled is set. Whatever paints on the canvas must be bracketed by hide and show.
#pragma once

#include <windows.h>

// Makes brush mask and picture again for the current brush, colour and scale. dropBrushCache also drops
// the patch that Stamp or Spoonbill picked up.
void rebuildOutline(HWND canvas, int dropBrushCache);

void hideOutline(HWND canvas);
void showOutline(HWND canvas);

// Moves the picture to the pointer, without flicker.
void trackOutline(HWND canvas);

// Drops the bitmaps and switches the outline off (the canvas goes away).
void freeOutline();
