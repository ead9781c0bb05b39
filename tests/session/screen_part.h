// What a rectangle of the screen shows.
#pragma once

#include <windows.h>

#include "tests/reference/colour_reference.h"

// Rows bottom-up.
reference::Image screenPart(const RECT& part);

// The client area of a window.
reference::Image shownBy(HWND window);
