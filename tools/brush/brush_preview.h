// A picture of the brush in the paint colour, for the palette and for the outline at the pointer.
#pragma once

#include <windows.h>

// Draws the brush of width x height device pixels centred in `area`. Sets previewBackground, the colour
// behind the brush (white, or light grey when the paint colour is white). paletteFlag: a white brush is
// shown on white with a black outline instead.
void drawBrushPreview(HDC dc, const RECT& area, int width, int height, int paletteFlag);

// Client rectangle of the palette's preview area, in the palette's coordinates.
RECT previewArea(HWND palette);

// The palette's preview is painted again, for whoever changes brush or paint colour.
void invalidateBrushPreview();
