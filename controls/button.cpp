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

static void setHot(HWND window, Button* button, bool hot)
{
    if (button->hot == hot) return;
    button->hot = hot;
    InvalidateRect(window, nullptr, FALSE);
    if (!hot) return;
    TRACKMOUSEEVENT leave = {sizeof leave, TME_LEAVE, window, 0};
    TrackMouseEvent(&leave);
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

static bool arrowKeyIsDown()
{
    return GetKeyState(VK_LEFT) < 0 || GetKeyState(VK_RIGHT) < 0 || GetKeyState(VK_UP) < 0 || GetKeyState(VK_DOWN) < 0;
}

// ---- what is done with a message before, or instead of, the system's procedure

struct ButtonMessage {
    HWND window;
    Button* button;
    UINT code;
    WPARAM wp;
    LPARAM lp;
    LRESULT result;  // of a handler that answers
};

static LRESULT callBase(const ButtonMessage& message)
{
    return CallWindowProcW(message.button->base, message.window, message.code, message.wp, message.lp);
}

// Each handler tells whether that was all, with `result` as the answer.

static bool onCreate(ButtonMessage& message)
{
    muteSystemDrawing(message.window);
    return false;
}

static bool onDestroy(ButtonMessage& message)
{
    removeFromTooltip(message.window);
    endObjectRequests(message.window);
    return false;
}

static bool onGetObject(ButtonMessage& message)
{
    message.result = answerObjectRequest(message.window, message.wp, message.lp);
    return message.result != 0;
}

static bool onNcDestroy(ButtonMessage& message)
{
    message.result = callBase(message);
    releaseButton(message.window, message.button);
    return true;
}

static bool drawsItself(HWND window)
{
    return !drawnBySystem(GetWindowLongW(window, GWL_STYLE));
}

static bool onEraseBackground(ButtonMessage& message)
{
    message.result = 1;
    return drawsItself(message.window);
}

static bool onPaint(ButtonMessage& message)
{
    if (!drawsItself(message.window)) return false;
    paintOwnWindow(message.window, drawButton);
    return true;
}

static bool onPrintClient(ButtonMessage& message)
{
    if (!drawsItself(message.window)) return false;
    printOwnWindow(message.window, (HDC)message.wp, drawButton);
    return true;
}

static bool onMouse(ButtonMessage& message)
{
    relayToTooltip(message.window, message.code, message.wp, message.lp);
    return false;
}

static bool onMouseMove(ButtonMessage& message)
{
    RECT client = {};
    GetClientRect(message.window, &client);
    const POINT at = {GET_X_LPARAM(message.lp), GET_Y_LPARAM(message.lp)};
    setHot(message.window, message.button, PtInRect(&client, at) != FALSE);  // a captured pointer may be outside
    return onMouse(message);
}

static bool onMouseLeave(ButtonMessage& message)
{
    setHot(message.window, message.button, false);
    return false;
}

static bool onKeyDown(ButtonMessage& message)
{
    return walkByKey(message.window, message.wp, true);
}

// An automatic radio button clicks itself when it gets the focus unchecked: that is how the arrow keys choose in a
// group. But the focus also comes back with the window's activation, and then nobody has chosen anything.
static bool onSetFocus(ButtonMessage& message)
{
    const WNDPROC base = message.button->base;
    CallWindowProcW(base, message.window, BM_SETDONTCLICK, !arrowKeyIsDown(), 0);
    message.result = callBase(message);
    if (!IsWindow(message.window)) return true;
    CallWindowProcW(base, message.window, BM_SETDONTCLICK, FALSE, 0);
    showChange(message.window, WM_SETFOCUS);
    return true;
}

// Redraws after a check or press message only when it changed anything.
static bool onState(ButtonMessage& message)
{
    const WNDPROC base = message.button->base;
    const LRESULT before = CallWindowProcW(base, message.window, BM_GETSTATE, 0, 0);
    message.result = callBase(message);
    if (IsWindow(message.window) && CallWindowProcW(base, message.window, BM_GETSTATE, 0, 0) != before)
        showChange(message.window, message.code);
    return true;
}

struct ButtonRoute {
    UINT code;
    bool (*handle)(ButtonMessage& message);
};

static const ButtonRoute buttonRoutes[] = {
    {WM_CREATE, onCreate},
    {WM_DESTROY, onDestroy},
    {WM_GETOBJECT, onGetObject},
    {WM_NCDESTROY, onNcDestroy},
    {WM_ERASEBKGND, onEraseBackground},
    {WM_PAINT, onPaint},
    {WM_PRINTCLIENT, onPrintClient},
    {WM_MOUSEMOVE, onMouseMove},
    {WM_LBUTTONDOWN, onMouse},
    {WM_LBUTTONUP, onMouse},
    {WM_RBUTTONDOWN, onMouse},
    {WM_RBUTTONUP, onMouse},
    {WM_MBUTTONDOWN, onMouse},
    {WM_MBUTTONUP, onMouse},
    {WM_SETFOCUS, onSetFocus},
    {WM_MOUSELEAVE, onMouseLeave},
    {WM_KEYDOWN, onKeyDown},
    {BM_SETSTATE, onState},
    {BM_SETCHECK, onState},
};

static LRESULT CALLBACK buttonProc(HWND window, UINT code, WPARAM wp, LPARAM lp)
{
    Button* button = buttonOf(window);
    if (!button && code == WM_NCCREATE) button = createButton(window);
    if (!button) return code == WM_NCCREATE ? FALSE : DefWindowProcW(window, code, wp, lp);

    const WNDPROC base = button->base;  // the button may be gone after a handler
    ButtonMessage message = {window, button, code, wp, lp, 0};
    for (const ButtonRoute& route : buttonRoutes)
        if (route.code == code && route.handle(message)) return message.result;
    const LRESULT result = CallWindowProcW(base, window, code, wp, lp);
    showChange(window, code);
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
