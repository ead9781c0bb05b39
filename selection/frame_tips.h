// Names for the buttons of the selection frame, most of which are blank: a tip under the pointer.
#pragma once

#include <windows.h>

// To be called with every mouse message of the canvas.
void followFrameTip(HWND canvas, UINT message, WPARAM wParam, LPARAM lParam);
