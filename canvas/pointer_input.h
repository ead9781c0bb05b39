// What the mouse does on the canvas. Points are image pixels.
#pragma once

#include <windows.h>

void pressButton(HWND canvas, POINT at);
void movePointer(HWND canvas, POINT at, bool buttonDown);
void releaseButton(HWND canvas, POINT at);

// WM_CAPTURECHANGED: another window took the mouse away (a task switch, a message box) and no release
// will come. WM_CANCELMODE: a command or a dialog comes first. Ends the press as a release at the last point would.
void losePress(HWND canvas, HWND newOwner);

// Ends a press as if it had not been, unless it has done its work already: a click of the frame, or of Text. False
// when there is no press.
bool cancelPress(HWND canvas);
