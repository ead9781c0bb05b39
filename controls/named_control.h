// Controls of the system's own classes that were given a name (nameControl of kovctrl32.h).
#pragma once

#include <windows.h>

// The name; null when the control has been given none.
const wchar_t* nameOfControl(HWND control);
