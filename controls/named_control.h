// Controls of the system's own classes that were given a name (nameControl of kovctrl32.h).
#pragma once

#include <windows.h>

constexpr int NAME_LENGTH = 64;  // with the terminator

// From nameControl to WM_NCDESTROY: the property's value.
struct NamedControl {
    WNDPROC base;
    wchar_t name[NAME_LENGTH];
};

constexpr wchar_t NAMED_PROPERTY[] = L"KovNamed";

NamedControl* namedOf(HWND control);  // null when the control has been given no name

// The name; null when the control has been given none.
const wchar_t* nameOfControl(HWND control);
