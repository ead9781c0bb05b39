// The keyboard while the canvas has the focus and no line of text is open.
#pragma once

#include <windows.h>

void pressKey(HWND canvas, UINT key);
void typeKey(HWND canvas, UINT character);
void letGoOfKey(HWND canvas, UINT key);
