// Dragging a floating selection: move, resize, turn. Only a rubber band follows the pointer; the
// selection itself is changed once, at the release.
#pragma once

#include <windows.h>

// Points are image pixels.
void beginTracking(HWND canvas, POINT at, int hit);
void trackPointer(HWND canvas, POINT at);
void endTracking(HWND canvas, POINT at);
