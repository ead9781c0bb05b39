// The selection on the screen: floating pixels, dotted outline, frame of buttons, and what follows the
// pointer while it is dragged. All of it is drawn in logical units of the canvas: image pixels, or client pixels
// while it is zoomed.
#pragma once

#include <windows.h>

// Draws all of it over the image. `dc` has the canvas's mapping; its corner may stand for any point of
// the canvas.
void drawSelection(HDC dc);

// Draws on the canvas what is new of the outline being drawn, at once: the time is that of the new points, however
// many there are.
void showNewDots(HWND canvas);

// All of the canvas is about to be painted.
void noteSelectionPainted();

// Repaints the canvas where the selection was when this was called last, and where it is now. To be
// called after every change of what is drawn, also when there is no selection any more.
void redrawSelection();
