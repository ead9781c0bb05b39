// The freehand selection, as the canvas and the palette see it. Points are image pixels.
//
// A press outside any frame draws an outline; its release lifts what lies inside into a floating
// selection with a frame of buttons. While one floats, presses act on its frame only.
#pragma once

#include <windows.h>

void pressSelection(HWND canvas, POINT at);
void moveSelectionPointer(HWND canvas, POINT at);
void releaseSelection(HWND canvas, POINT at);

// Sets the cursor for the part of the frame under the pointer. False when the pointer is on none: the
// tool's own cursor shows.
bool setSelectionCursor(HWND canvas);

// String that names the button of the frame at a client point; 0 where there is none.
UINT frameNameAt(HWND canvas, POINT client);
