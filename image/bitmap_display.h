// Putting packed bitmaps on a device context.
#pragma once

#include <windows.h>

// Draws the whole image stretched (COLORONCOLOR, no averaging) into the destination rectangle.
void drawBitmap(HDC dc, HGLOBAL image, const RECT* destination, DWORD rop);

// The same with a part of a 24-bit image (pixels, y downward), which must lie inside it: each pixel of the screen takes
// the pixel that it would take from a bitmap of that part alone.
void drawBitmapPart(HDC dc, HGLOBAL image, const RECT& part, const RECT& destination, DWORD rop);

// Draws over a picture that is still off screen; the device context has the canvas's mapping.
typedef void (*OverlayPainter)(HDC dc);

// Repaints the part of the canvas that shows `rect` of the image (image pixels, the canvas's logical
// units) through one off-screen bitmap, drawn on the host dialog, whose client origin the canvas shares.
// Whatever the part and the scale, each pixel shows what a repaint of the whole image shows there.
// What `overlay` draws (null: nothing) is shown with the image in the same instant, without flicker.
void paintImageRect(HWND hostDialog, HDC canvasPaintDC, HGLOBAL image, const RECT* rect,
                    OverlayPainter overlay = nullptr);
