// What the tool palette and the contrast dialog have in common: the control library paints their
// background, and they are dragged by any point that is not a control. Message handlers for dialog
// procedures that dispatch from a table.
#pragma once

#include <windows.h>

using DialogHandler = INT_PTR (*)(HWND dialog, WPARAM wParam, LPARAM lParam);

struct DialogRoute {
    UINT message;
    DialogHandler handle;
};

// Calls the handler of a message; 0 when the table has none.
template <size_t count>
INT_PTR dispatchDialogMessage(const DialogRoute (&routes)[count], HWND dialog, UINT message, WPARAM wParam,
                              LPARAM lParam)
{
    for (const DialogRoute& route : routes) {
        if (route.message == message) return route.handle(dialog, wParam, lParam);
    }
    return 0;
}

INT_PTR paintFaceBackground(HWND dialog, WPARAM wParam, LPARAM lParam);  // WM_ERASEBKGND
INT_PTR hitFace(HWND dialog, WPARAM wParam, LPARAM lParam);              // WM_NCHITTEST
INT_PTR grabFace(HWND dialog, WPARAM wParam, LPARAM lParam);             // WM_NCLBUTTONDOWN
INT_PTR releaseFace(HWND dialog, WPARAM wParam, LPARAM lParam);          // WM_NCLBUTTONUP
