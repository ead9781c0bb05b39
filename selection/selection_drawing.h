// The selection on the screen: floating pixels, dotted outline, frame of buttons, and what follows the
// pointer while it is dragged. All of it is drawn in logical units of the canvas: image pixels, or client pixels
// while it is zoomed.
#pragma once

#include <windows.h>

// Draws all of it over the image. `dc` has the canvas's mapping; its corner may stand for any point of
// the canvas.
void drawSelection(HDC dc);

// The shown outline is on the canvas from this point on.
void noteOutlinePainted(int first);

// All of the canvas is about to be painted.
void noteSelectionPainted();

// Repaints the canvas where the selection was when this was called last, and where it is now. To be
// called after every change of what is drawn, also when there is no selection any more.
void redrawSelection();
