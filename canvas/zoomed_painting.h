// Painting the canvas while it is zoomed: only what is seen, with the selection and the open line of text.
#pragma once

#include <windows.h>

// Paints a part of the client area. The device context is the canvas's, in client pixels.
void paintZoomed(HDC dc, const RECT& box);
