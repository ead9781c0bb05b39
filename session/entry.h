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
