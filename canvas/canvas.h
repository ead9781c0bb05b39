// The canvas: the editing window's only child. Shows the host's image scaled to its client area and
// routes mouse and keyboard input to the current tool. It owns no image.
#pragma once

#include <windows.h>

constexpr char CANVAS_CLASS[] = "KOVRETOUCH";

// The session loop posts these; lParam packs the screen point of the pointer.
constexpr UINT CANVAS_POINTER_ENTERED = 1025;
constexpr UINT CANVAS_POINTER_LEFT = 1026;

// Registers the window class; returns RegisterClassA's result, 0 on failure.
int registerCanvasClass(HINSTANCE instance);
void unregisterCanvasClass(HINSTANCE instance);

// The canvas or the image has a new size: the view follows, and the mapping of the canvas's own device context.
// Fitted, one logical unit is one image pixel, y downward; without an image, and zoomed, one device pixel.
void mapCanvas(HWND canvas);
