// The class "Bouton": the system's push buttons, check boxes and radio buttons, drawn by this library.
#pragma once

#include <windows.h>

enum ButtonPicture { PICTURE_NORMAL, PICTURE_PRESSED, PICTURE_DISABLED, PICTURE_COUNT };

// What the library keeps for one control, from WM_NCCREATE to WM_NCDESTROY.
struct Button {
    WNDPROC base;                     // the system's button procedure
    HBITMAP pictures[PICTURE_COUNT];  // owned; null where a state has none
    bool hot;                         // the pointer is over it
};

BOOL registerButtonClass(HINSTANCE instance);
void unregisterButtonClass(HINSTANCE instance);

// The record of a window of the class, null for any other window.
Button* buttonFromWindow(HWND window);

// Deletes all pictures.
void releasePictures(Button* button);
