// Drawing a button's pictures. Their pixels of colour (192, 192, 192) are transparent, so that they
// sit on the button's face.
#pragma once

#include <windows.h>

// Draws a picture centred in a room, at the size fittedSize() gives; greyed for a disabled control
// that has no picture of its own for that.
void drawPicture(HDC dc, const RECT& room, HBITMAP picture, bool greyed);
