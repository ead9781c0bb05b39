// The text tool: one line at a time is typed over the image, in the paint colour and the text font, and
// stamped into it. Coordinates are image pixels.
#pragma once

#include <windows.h>

#include "canvas/view/view_pixels.h"

// The canvas was pressed: opens a line whose bottom is at y; or, with a line open, moves the caret in it,
// or stamps it and opens the next one centred on y. Returns 1 when a line is open afterwards.
int textClick(HWND canvas, int x, int y);

void textKeyDown(HWND canvas, UINT key);
void textChar(HWND canvas, UINT character);

// Lays the open line over a picture of the zoomed canvas.
void showTextLine(HWND canvas, const ViewPicture& picture);

// Draws the open line over the canvas's picture.
void paintTextOverlay(HWND canvas, HDC dc);

// The canvas has got or lost the focus. The system has one caret, which scroll bars take for themselves: the open
// line has it while the canvas has the focus.
void takeTextFocus(HWND canvas);
void loseTextFocus(HWND canvas);

// Discards the open line, if there is one: nothing is stamped.
void endText(HWND canvas);
