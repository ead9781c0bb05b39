// Making another view of the image the canvas's.
#pragma once

#include <windows.h>

#include "canvas/view/view.h"

// The canvas shows the view, and everything on it follows: mapping, brush picture, selection, caret, title, map.
void showView(HWND canvas, const CanvasView& view);

// The same without painting: sessionExtras.canvas.view has changed, from `before`.
void followView(HWND canvas, const CanvasView& before);

// Gives the canvas's own device context the view's mapping: fitted, one logical unit is one image pixel; zoomed,
// one client pixel. What fails is tried again before the next painting.
void mapDeviceContext(HWND canvas);
