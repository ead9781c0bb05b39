// The outline while the pointer draws it. It lives in the record's fields until its release lifts the
// floating selection.
#pragma once

#include <windows.h>

// Points are image pixels.
void startDrawing(HWND canvas, POINT at);
void continueDrawing(HWND canvas, POINT at);
void finishDrawing(HWND canvas, POINT at);
bool drawingRuns();

// The drawn outline becomes the floating selection, unturned, with neutral colours. False, and the record has
// no outline any more, when it encloses nothing or memory is short.
bool floatOutline();

// The canvas's client area in image pixels; all of the image while it is zoomed.
RECT canvasArea(HWND canvas);
