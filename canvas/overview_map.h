// The small map of the whole image, with a frame around what is seen, in a lower corner of a zoomed canvas. It is
// part of the canvas's picture and takes no clicks.
#pragma once

#include <windows.h>

// Draws it, and first brings its thumbnail up to date where the image has changed, but not while a stroke runs.
// The device context is in client pixels.
void drawOverviewMap(HDC dc);

// The canvas has another view: the map has its place there, or fitted none.
void placeOverviewMap();

// The pointer is at a client point: the map hops out of its way, or back.
void moveMapFrom(HWND canvas, POINT pointer);

// A stroke has ended: the map is painted again.
void repaintOverviewMap(HWND canvas);

void freeOverviewMap();
