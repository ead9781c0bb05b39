// The mouse wheel over the canvas: zooms at the pointer; with Shift, or tilted, pans sideways.
#pragma once

#include <windows.h>

// The messages' parameters.
void turnWheel(HWND canvas, WPARAM wParam, LPARAM lParam);
void tiltWheel(HWND canvas, WPARAM wParam);
