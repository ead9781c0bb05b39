#include "session/dialogs/scroll_bars.h"

#include "controls/kovctrl32.h"
#include "session/ground/language.h"
#include "session/ground/module_state.h"

void scrollStep(HWND bar, WPARAM message, const ScrollRange& range)
{
    const int position = GetScrollPos(bar, SB_CTL);
    const int moved = scrolledPosition(position, LOWORD(message), (short)HIWORD(message), range);
    if (moved != position) SetScrollPos(bar, SB_CTL, moved, TRUE);
    // A press beside the thumb that moved it under the pointer leaves it drawn as pressed on some systems.
    if (LOWORD(message) == SB_ENDSCROLL) InvalidateRect(bar, nullptr, FALSE);
}

int scrollPosition(HWND dialog, int barId)
{
    return GetScrollPos(GetDlgItem(dialog, barId), SB_CTL);
}

void nameScrollBar(HWND dialog, int barId, UINT nameId)
{
    WCHAR name[64];
    if (loadLocalString(moduleInstance, nameId, name, 64)) nameControl(GetDlgItem(dialog, barId), name);
}

void showMovement(HWND bar, WPARAM message)
{
    showBarValue(bar, LOWORD(message) != SB_ENDSCROLL);
}

void setScrollBar(HWND dialog, int barId, const ScrollRange& range, int position)
{
    const HWND bar = GetDlgItem(dialog, barId);
    SetScrollRange(bar, SB_CTL, range.minimum, range.maximum, FALSE);
    SetScrollPos(bar, SB_CTL, position, TRUE);
}
