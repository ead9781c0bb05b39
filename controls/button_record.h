// What the library keeps for one "Bouton", and its pictures.
#pragma once

#include <windows.h>

enum ButtonPicture { PICTURE_NORMAL, PICTURE_PRESSED, PICTURE_DISABLED, PICTURE_COUNT };

// Lives from WM_NCCREATE to WM_NCDESTROY.
struct Button {
    WNDPROC base;                     // the system's button procedure
    HBITMAP pictures[PICTURE_COUNT];  // owned; null where a state has none
    bool hot;                         // the pointer is over it
};

// The record of a window of the class "Bouton"; null before its WM_NCCREATE and after its WM_NCDESTROY. Other windows
// have none to ask for.
Button* buttonOf(HWND window);

// Puts a new record on the window; null when there is no memory. To be freed with releaseButton.
Button* attachButton(HWND window, WNDPROC base);

// Takes the record off the window and frees it with its pictures.
void releaseButton(HWND window, Button* button);

// Gives a state its picture, which the button owns from now on (null: none); the one before is deleted.
void holdPicture(Button* button, ButtonPicture state, HBITMAP picture);
