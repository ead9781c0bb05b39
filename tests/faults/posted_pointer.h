// A pointer that only the libraries see: its messages are posted, and what the libraries ask the system about pointer
// and button is answered from here. Many times faster than the real one, and needs no screen of its own.
#pragma once

#include <windows.h>

// Before replaceImports.
void usePostedPointer();

// To the window that has the capture of that thread, or else to this one, unless it or its dialog is disabled.
void postMove(DWORD thread, HWND window, POINT screen);
// Where the pointer is.
enum PointerButton { NO_BUTTON = -1, LEFT_BUTTON, MIDDLE_BUTTON, RIGHT_BUTTON };
void postButton(DWORD thread, PointerButton button, bool down);
