#include "controls/separator.h"

#include "controls/accessible.h"
#include "controls/caption.h"
#include "controls/caption_font.h"
#include "controls/superclass.h"

constexpr wchar_t CLASS_NAME[] = L"statique";
constexpr wchar_t BASE_NAME[] = L"Static";

static WNDPROC baseProcedure;  // found when the class was registered; null when it was not

static WNDPROC baseOf(HWND window)
{
    return (WNDPROC)ownSlot(window);
}

static void drawLine(HDC dc, const RECT& client)
{
    RECT line = client;
    if (client.right > client.bottom) {
        line.top = (client.bottom - 2) / 2;
        DrawEdge(dc, &line, EDGE_ETCHED, BF_TOP);
    } else {
        line.left = (client.right - 2) / 2;
        DrawEdge(dc, &line, EDGE_ETCHED, BF_LEFT);
    }
}

static UINT alignmentOf(LONG style)
{
    switch (style & SS_TYPEMASK) {
    case SS_CENTER: return DT_CENTER | DT_WORDBREAK;
    case SS_RIGHT: return DT_RIGHT | DT_WORDBREAK;
    case SS_SIMPLE:
    case SS_LEFTNOWORDWRAP: return DT_LEFT;
    default: return DT_LEFT | DT_WORDBREAK;
    }
}

static void drawLabel(HWND window, HDC dc, const RECT& client, wchar_t* text)
{
    const LONG style = GetWindowLongW(window, GWL_STYLE);
    UINT format = alignmentOf(style) | DT_EXPANDTABS;
    if (style & SS_NOPREFIX) {
        format |= DT_NOPREFIX;
    } else if (SendMessageW(window, WM_QUERYUISTATE, 0, 0) & UISF_HIDEACCEL) {
        removeAccessKeys(text);  // DT_HIDEPREFIX is not known everywhere
        format |= DT_NOPREFIX;
    }

    const CaptionFont font = selectCaptionFont(dc, window, text);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(IsWindowEnabled(window) ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    RECT room = client;
    DrawTextW(dc, text, -1, &room, format);
    restoreFont(dc, font);
}

static void drawSeparator(HWND window, HDC dc, const RECT& client)
{
    FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
    wchar_t text[512] = L"";
    GetWindowTextW(window, text, 512);
    shownText(text);
    if (*text)
        drawLabel(window, dc, client, text);
    else
        drawLine(dc, client);
}

static bool changesLook(UINT message)
{
    switch (message) {
    case WM_SETTEXT:
    case WM_SETFONT:
    case WM_ENABLE:
    case WM_STYLECHANGED:
    case WM_UPDATEUISTATE:
    case WM_SYSCOLORCHANGE: return true;
    }
    return false;
}

static LRESULT CALLBACK separatorProc(HWND window, UINT message, WPARAM wp, LPARAM lp)
{
    if (message == WM_NCCREATE) setOwnSlot(window, (LONG_PTR)baseProcedure);
    WNDPROC base = baseOf(window);
    if (!base) return message == WM_NCCREATE ? FALSE : DefWindowProcW(window, message, wp, lp);

    switch (message) {
    case WM_CREATE: muteWindow(window, true); break;
    case WM_DESTROY: endObjectRequests(window); break;
    case WM_GETOBJECT:
        if (const LRESULT answer = answerObjectRequest(window, wp, lp)) return answer;
        break;
    case WM_ERASEBKGND: return 1;
    case WM_PAINT: paintOwnWindow(window, drawSeparator); return 0;
    case WM_PRINTCLIENT: printOwnWindow(window, (HDC)wp, drawSeparator); return 0;
    }
    const LRESULT result = CallWindowProcW(base, window, message, wp, lp);
    if (changesLook(message)) InvalidateRect(window, nullptr, FALSE);
    return result;
}

BOOL registerSeparatorClass(HINSTANCE instance)
{
    baseProcedure = registerSuperclass(instance, CLASS_NAME, BASE_NAME, separatorProc);
    return baseProcedure != nullptr;
}

void unregisterSeparatorClass(HINSTANCE instance)
{
    if (baseProcedure) UnregisterClassW(CLASS_NAME, instance);
    baseProcedure = nullptr;
}
