#include "controls/keyboard_walk.h"

static HWND neighbour(HWND dialog, HWND control, WPARAM key, bool group)
{
    switch (key) {
    case VK_TAB: return GetNextDlgTabItem(dialog, control, GetKeyState(VK_SHIFT) < 0);
    case VK_LEFT:
    case VK_UP: return group ? GetNextDlgGroupItem(dialog, control, TRUE) : nullptr;
    case VK_RIGHT:
    case VK_DOWN: return group ? GetNextDlgGroupItem(dialog, control, FALSE) : nullptr;
    }
    return nullptr;
}

bool walkByKey(HWND control, WPARAM key, bool group)
{
    HWND dialog = GetAncestor(control, GA_PARENT);
    HWND next = neighbour(dialog, control, key, group);
    if (!next) return false;
    SendMessageW(dialog, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS | UISF_HIDEACCEL), 0);
    if (next != control) SetFocus(next);
    return true;
}
