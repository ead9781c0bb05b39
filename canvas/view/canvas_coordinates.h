// Between image pixels and the canvas's client area (device units), by the session's view of the canvas.
#pragma once

#include <windows.h>

#include "canvas/view/view.h"

// The image pixel under a client point.
POINT imagePointOf(HWND canvas, POINT client);

// The client rectangle that shows a rectangle of image pixels, each edge rounded to the nearest: where things
// are drawn. What must not miss a changed pixel takes coveringDeviceRect.
RECT deviceRectOf(HWND canvas, const RECT& image);

// The smallest rectangle of image pixels whose picture covers a client rectangle, fitted.
RECT coveringImageRect(const RECT& device, SIZE client, SIZE image);

// The smallest client rectangle around the picture of a rectangle of image pixels; never empty unless that is.
RECT coveringDeviceRect(const RECT& image, SIZE imageSize, SIZE client);

// The screen position of the pointer in the client coordinates of a window.
POINT pointerIn(HWND window);
// Where the newest message found it while the system does not tell, as under a prompt of its own.
POINT pointerOnScreen();

// Invalidates every pixel of the client area that shows something of a rectangle of image pixels, without
// erasing: a column of the image that is narrower than a pixel of the screen has its pixel repainted, too.
// `margin` grows the rectangle on every side, in device pixels.
void invalidateImageRect(HWND canvas, const RECT& image, int margin = 0);

// All that was invalidated of the image since the last call, in image pixels; empty: nothing. What shows the
// image a second time is renewed there.
PixelRect takeChangedImageRect();
void noteWholeImageChanged();
