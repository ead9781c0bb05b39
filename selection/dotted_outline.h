// The selection's outline on the screen: white dots on black, visible on any image.
#pragma once

#include <windows.h>

// Draws all of the shown outline that lies in the clip box. `dc` has the canvas's mapping, its corner may stand for
// any point of the canvas.
void drawDottedOutline(HDC dc);

// Draws on the canvas what is new of the outline being drawn, at once: the time is that of the new points, however
// many there are.
void showNewDots(HWND canvas);
