// The text tool, as the canvas and the palette see it. Typing is not built yet: the routes are here,
// and there is never an open line.
#pragma once

#include <windows.h>

int textClick(HWND canvas, int x, int y);  // image pixels; 1 when a line was opened or moved
void textKeyDown(HWND canvas, UINT key);
void textChar(HWND canvas, UINT character);
void paintTextOverlay(HWND canvas, HDC dc);
void endText(HWND canvas);  // discards the open line
void chooseTextFont(HWND palette);
