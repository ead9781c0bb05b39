// The open line's picture: textStrip, a 1-bit bitmap as wide as the image and one line high, text white
// on black.
#pragma once

#include <windows.h>

#include "canvas/view/view_pixels.h"
#include "text/kernels/text_line.h"

// Makes textFontHandle from textFont, whose height becomes brushHeight.
void createTextFont();

// Makes textFontHandle, and textStrip for an image of this width. False when one of them cannot be made.
bool createTextStrip(int imageWidth);
void freeTextStrip();

// Pixels: the absolute height of the font, and the width of the first `count` bytes, -1 when it cannot be told.
int textLineHeight();
int measureText(const char* text, int count);

// How the bytes of a string make characters: as in the font's code page.
LeadBytes textLeadBytes();

// Draws the string into the strip from textOriginX on. False when the strip may show something else now.
bool renderTextStrip(const char* text);

// Lays the strip over a canvas device context: its text takes the paint colour.
void drawTextStrip(HDC dc);

// The same on a picture of the zoomed canvas.
void showTextStrip(const ViewPicture& picture);

// Stamps the strip into the edited image at textOriginY. False when there is no 24-bit image.
bool stampTextStrip();

// The image rectangle that the strip covers.
RECT textStripRect();
