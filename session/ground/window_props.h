// Window properties under small integer keys.
#pragma once

#include <windows.h>

// On the host dialog:
constexpr int PROP_ASPECT_WIDTH = 5;  // client size fixed at the start: the aspect ratio
constexpr int PROP_ASPECT_HEIGHT = 6;
constexpr int PROP_IMAGE = 7;  // the host's image, a PackedBitmap
constexpr int PROP_CANVAS = 10;
constexpr int PROP_FORWARD_TARGET = 100;  // where WM_COMMAND is posted to; stays null

void setWindowProp(HWND window, int key, HANDLE value);
HANDLE windowProp(HWND window, int key);  // null when it is not set
void removeWindowProp(HWND window, int key);

// Removes every property of a window.
void removeAllProps(HWND window);

// The image being edited: property 7 of the host dialog. Null before the session has one.
HGLOBAL editedImage();
