// The outline brush (tool 115): pressed inside a floating selection it adds its disk, outside it cuts it away.
// The press reshapes the outline, the release makes the floating pixels anew.
#pragma once

#include <windows.h>

void pressOutlineBrush(HWND canvas, POINT at);  // image pixels
void releaseOutlineBrush();
void cancelOutlineBrush();  // the press is taken back: the selection is what it was
