// Between image pixels (the canvas's logical units) and the canvas's client area (device units).
#pragma once

#include <windows.h>

// The image pixel under a client point.
POINT imagePointOf(HWND canvas, POINT client);

// The client rectangle that shows a rectangle of image pixels.
RECT deviceRectOf(HWND canvas, const RECT& image);

// The smallest rectangle of image pixels whose picture covers a client rectangle.
RECT coveringImageRect(const RECT& device, SIZE client, SIZE image);

// The screen position of the pointer in the client coordinates of a window.
POINT pointerIn(HWND window);

// Invalidates the client area that shows a rectangle of image pixels, without erasing. `margin` grows it
// on every side, in device pixels.
void invalidateImageRect(HWND canvas, const RECT& image, int margin = 0);
