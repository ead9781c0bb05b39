// What the list shows while nothing is stored: what to do.
#pragma once

#include <windows.h>

// Answers WM_PAINT of the list.
void paintEmptyLibrary(HWND list);
