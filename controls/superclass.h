// Window classes built on one of the system's: behaviour from the system, look from here.
//
// The system's procedures draw straight into the window in many messages (check, press, focus, text),
// past WM_PAINT. Our classes give each window a device context of its own, and keep its clip region
// empty: what the system draws there is lost, and only paintOwnWindow() opens the region for a moment.
#pragma once

#include <windows.h>

// Registers `name`, for the whole process, on top of the system class `base`. Each window gets one
// pointer-sized slot (ownSlot). Returns the system class's procedure as it is now, which belongs to the class's
// bytes as they are now, whatever is done to that class later. Null when the name is taken or the base is missing.
WNDPROC registerSuperclass(HINSTANCE instance, const wchar_t* name, const wchar_t* base, WNDPROC procedure);

LONG_PTR ownSlot(HWND window);
void setOwnSlot(HWND window, LONG_PTR value);

// Discards (or lets through) all that is drawn into the window outside paintOwnWindow().
void muteWindow(HWND window, bool muted);

// Draws a control's whole client area, opaque.
typedef void (*DrawWindow)(HWND window, HDC dc, const RECT& client);

// Answers WM_PAINT and WM_PRINTCLIENT: draws into a memory bitmap and copies it at once, so that
// nothing flickers.
void paintOwnWindow(HWND window, DrawWindow draw);
void printOwnWindow(HWND window, HDC dc, DrawWindow draw);
