#include "selection/frame_tips.h"

#include <windowsx.h>

#include "controls/kovctrl32.h"
#include "selection/selection.h"
#include "session/ground/language.h"
#include "session/ground/module_state.h"

constexpr int NAME_SIZE = 64;

void followFrameTip(HWND canvas, UINT message, WPARAM wParam, LPARAM lParam)
{
    const POINT at = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    const UINT nameId = wParam & MK_LBUTTON ? 0 : frameNameAt(canvas, at);
    WCHAR name[NAME_SIZE] = L"";
    if (nameId) loadLocalString(moduleInstance, nameId, name, NAME_SIZE);
    relayTip(canvas, message, wParam, lParam, *name ? name : nullptr);
}
