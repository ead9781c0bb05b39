// Drawing a button's pictures. A 32-bit bitmap with an alpha channel (colours multiplied by it) is blended with the
// button's face; in any other one the pixels of colour (192, 192, 192) are transparent.
#pragma once

#include <windows.h>

// Draws a picture centred in a room, at the size fittedSize() gives on a button of the given client area; greyed for
// a disabled control that has no picture of its own for that; with a light rim where the system's faces are dark.
void drawPicture(HDC dc, const RECT& client, const RECT& room, HBITMAP picture, bool greyed);
