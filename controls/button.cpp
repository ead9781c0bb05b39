#include "controls/button.h"

#include <windowsx.h>

#include "controls/accessible.h"
#include "controls/button_paint.h"
#include "controls/button_record.h"
#include "controls/keyboard_walk.h"
#include "controls/kovctrl32.h"
#include "controls/superclass.h"
#include "controls/tooltip.h"

constexpr wchar_t CLASS_NAME[] = L"Bouton";
constexpr wchar_t BASE_NAME[] = L"Button";

static WNDPROC baseProcedure;  // found when the class was registered; null when it was not

static LRESULT CALLBACK buttonProc(HWND window, UINT message, WPARAM wp, LPARAM lp);

// The record of a window of the class, null for any other window.
static Button* buttonFromWindow(HWND window)
{
    DWORD process = 0;
    if (!GetWindowThreadProcessId(window, &process) || process != GetCurrentProcessId()) return nullptr;
    if ((WNDPROC)GetClassLongPtrW(window, GCLP_WNDPROC) != buttonProc) return nullptr;
    return buttonOf(window);
}

int WINAPI setButtonPicture(HWND window, HBITMAP picture, int state)
{
    Button* button = buttonFromWindow(window);
    if (!button || state < 0 || state >= PICTURE_COUNT) return 0;
    if (picture && GetObjectType(picture) != OBJ_BITMAP) return 0;
    holdPicture(button, (ButtonPicture)state, picture);
    InvalidateRect(window, nullptr, FALSE);
    return 1;
}

static Button* createButton(HWND window)
{
    return attachButton(window, baseProcedure);
}

static LRESULT onNcDestroy(HWND window, Button* button, WPARAM wp, LPARAM lp)
{
    const LRESULT result = CallWindowProcW(button->base, window, WM_NCDESTROY, wp, lp);
    releaseButton(window, button);
    return result;
}

static void setHot(HWND window, Button* button, bool hot)
{
    if (button->hot == hot) return;
    button->hot = hot;
    InvalidateRect(window, nullptr, FALSE);
    if (!hot) return;
    TRACKMOUSEEVENT leave = {sizeof leave, TME_LEAVE, window, 0};
    TrackMouseEvent(&leave);
}

static void onMouseMessage(HWND window, Button* button, UINT message, WPARAM wp, LPARAM lp)
{
    if (message == WM_MOUSEMOVE) {
        RECT client;
        GetClientRect(window, &client);
        const POINT at = {GET_X_LPARAM(lp), GET_Y_LPARAM(lp)};
        setHot(window, button, PtInRect(&client, at) != FALSE);  // a captured pointer may be outside
    }
    relayToTooltip(window, message, wp, lp);
}

static void muteSystemDrawing(HWND window)
{
    muteWindow(window, !drawnBySystem(GetWindowLongW(window, GWL_STYLE)));
}

// After the system's procedure has dealt with a message. The window may be gone by now.
static void showChange(HWND window, UINT message)
{
    switch (message) {
    case BM_SETSTYLE:
    case WM_STYLECHANGED: muteSystemDrawing(window); break;
    case WM_SETTEXT: updateTooltip(window); break;
    case BM_SETSTATE:
    case BM_SETCHECK:
        // Shown at once: the command that follows a click may take its time.
        RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        return;
    case BM_SETIMAGE:
    case WM_SETFONT:
    case WM_ENABLE:
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_UPDATEUISTATE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED: break;
    default: return;
    }
    InvalidateRect(window, nullptr, FALSE);
}

// Redraws after a check or press message only when it changed anything.
static LRESULT onStateMessage(HWND window, Button* button, UINT message, WPARAM wp, LPARAM lp)
{
    WNDPROC base = button->base;
    const LRESULT before = CallWindowProcW(base, window, BM_GETSTATE, 0, 0);
    const LRESULT result = CallWindowProcW(base, window, message, wp, lp);
    if (IsWindow(window) && CallWindowProcW(base, window, BM_GETSTATE, 0, 0) != before) showChange(window, message);
    return result;
}

static bool arrowKeyIsDown()
{
    return GetKeyState(VK_LEFT) < 0 || GetKeyState(VK_RIGHT) < 0 || GetKeyState(VK_UP) < 0 || GetKeyState(VK_DOWN) < 0;
}

// An automatic radio button clicks itself when it gets the focus unchecked: that is how the arrow keys choose in a
// group. But the focus also comes back with the window's activation, and then nobody has chosen anything.
static LRESULT takeFocus(HWND window, Button* button, WPARAM wp, LPARAM lp)
{
    WNDPROC base = button->base;
    CallWindowProcW(base, window, BM_SETDONTCLICK, !arrowKeyIsDown(), 0);
    const LRESULT result = CallWindowProcW(base, window, WM_SETFOCUS, wp, lp);
    if (!IsWindow(window)) return result;
    CallWindowProcW(base, window, BM_SETDONTCLICK, FALSE, 0);
    showChange(window, WM_SETFOCUS);
    return result;
}

static LRESULT CALLBACK buttonProc(HWND window, UINT message, WPARAM wp, LPARAM lp)
{
    Button* button = buttonOf(window);
    if (!button && message == WM_NCCREATE) button = createButton(window);
    if (!button) return message == WM_NCCREATE ? FALSE : DefWindowProcW(window, message, wp, lp);

    WNDPROC base = button->base;
    const bool ours = !drawnBySystem(GetWindowLongW(window, GWL_STYLE));
    switch (message) {
    case WM_CREATE: muteSystemDrawing(window); break;
    case WM_DESTROY:
        removeFromTooltip(window);
        endObjectRequests(window);
        break;
    case WM_GETOBJECT:
        if (const LRESULT answer = answerObjectRequest(window, wp, lp)) return answer;
        break;
    case WM_NCDESTROY: return onNcDestroy(window, button, wp, lp);
    case WM_ERASEBKGND:
        if (ours) return 1;
        break;
    case WM_PAINT:
        if (ours) return paintOwnWindow(window, drawButton), 0;
        break;
    case WM_PRINTCLIENT:
        if (ours) return printOwnWindow(window, (HDC)wp, drawButton), 0;
        break;
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP: onMouseMessage(window, button, message, wp, lp); break;
    case WM_SETFOCUS: return takeFocus(window, button, wp, lp);
    case WM_MOUSELEAVE: setHot(window, button, false); break;
    case WM_KEYDOWN:
        if (walkByKey(window, wp, true)) return 0;
        break;
    case BM_SETSTATE:
    case BM_SETCHECK: return onStateMessage(window, button, message, wp, lp);
    }
    const LRESULT result = CallWindowProcW(base, window, message, wp, lp);
    showChange(window, message);
    return result;
}

BOOL registerButtonClass(HINSTANCE instance)
{
    baseProcedure = registerSuperclass(instance, CLASS_NAME, BASE_NAME, buttonProc);
    return baseProcedure != nullptr;
}

void unregisterButtonClass(HINSTANCE instance)
{
    if (baseProcedure) UnregisterClassW(CLASS_NAME, instance);
    baseProcedure = nullptr;
}
