// Putting packed bitmaps on a device context.
#pragma once

#include <windows.h>

// Draws the whole image stretched (COLORONCOLOR, no averaging) into the destination rectangle.
void drawBitmap(HDC dc, HGLOBAL image, const RECT* destination, DWORD rop);

// Repaints the part of the canvas that shows `rect` of the image (image pixels, the canvas's logical
// units) through one off-screen bitmap, drawn on the host dialog, whose client origin the canvas shares.
void paintImageRect(HWND hostDialog, HDC canvasPaintDC, HGLOBAL image, const RECT* rect);
