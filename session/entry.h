// The session's beginning, loop and end.
#pragma once

#include <windows.h>

extern "C" int WINAPI entry(HWND parent, HGLOBAL image, RECT* dialogRect, POINT* palettePos);

// What the host dialog receives as its creation parameter.
struct SessionArguments {
    HGLOBAL image;
    const RECT* dialogRect;
    const POINT* palettePos;
};

// Messages that the loop posts to the canvas; lParam packs the screen point of the pointer.
constexpr UINT CANVAS_POINTER_ENTERED = 1025;
constexpr UINT CANVAS_POINTER_LEFT = 1026;
