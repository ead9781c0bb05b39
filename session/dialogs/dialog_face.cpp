#include "session/dialogs/dialog_face.h"

#include "controls/kovctrl32.h"
#include "resources/resource_ids.h"
#include "session/ground/module_state.h"

constexpr int BACKGROUND_STYLE = 0x42;

INT_PTR paintFaceBackground(HWND dialog, WPARAM wParam, LPARAM)
{
    paintDialogBackground(dialog, (HDC)wParam, BACKGROUND_STYLE);
    SetWindowLongPtrA(dialog, DWLP_MSGRESULT, TRUE);
    return TRUE;
}

INT_PTR hitFace(HWND dialog, WPARAM, LPARAM)
{
    SetWindowLongPtrA(dialog, DWLP_MSGRESULT, HTCAPTION);
    return TRUE;
}

INT_PTR grabFace(HWND, WPARAM, LPARAM)
{
    SetCursor(LoadCursorA(moduleInstance, MAKEINTRESOURCEA(CURSOR_DRAG_DIALOG)));
    return FALSE;
}

INT_PTR releaseFace(HWND, WPARAM, LPARAM)
{
    SetCursor(LoadCursorA(nullptr, (LPCSTR)IDC_ARROW));
    return FALSE;
}
