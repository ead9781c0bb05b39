// The editing window: dialog 800, a resizable frame whose only child is the canvas.
#pragma once

#include <windows.h>

// What the dialog receives as its creation parameter.
struct SessionArguments {
    HGLOBAL image;
    const RECT* dialogRect;
    const POINT* palettePos;
};

// Dialog procedure; the creation parameter is a SessionArguments. When the session cannot start, the
// record's hostDialog stays 0 and the window's end posts no quit message.
INT_PTR CALLBACK hostDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
