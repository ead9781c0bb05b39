// The freehand selection, as the canvas and the palette see it. Points are image pixels.
// Selecting is not built yet: the routes are here, and there is never a selection.
#pragma once

#include <windows.h>

void pressSelection(HWND canvas, POINT at);
void moveSelectionPointer(HWND canvas, POINT at);
void releaseSelection(HWND canvas, POINT at);

// The outline brush (tool 115).
void pressOutlineBrush(HWND canvas, POINT at);
void releaseOutlineBrush(HWND canvas);

// Draws the floating selection, its outline and its frame; logical units of the canvas.
void drawSelection(HDC dc);

// Sets the cursor for the part of the frame under the pointer. False when there is none: the tool's
// own cursor shows.
bool setSelectionCursor(HWND canvas);

// Drops the selection and everything that belongs to it.
void clearSelection();
