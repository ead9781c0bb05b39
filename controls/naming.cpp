// What controls of the system's own classes do beside what their class does, once they were given a name.
#include "controls/accessible.h"
#include "controls/keyboard_walk.h"
#include "controls/kovctrl32.h"
#include "controls/named_control.h"
#include "controls/tooltip.h"

static bool isOwnProcess(HWND control)
{
    DWORD process = 0;
    return GetWindowThreadProcessId(control, &process) && process == GetCurrentProcessId();
}

// Taking the property away finds the record even where looking it up has failed.
static LRESULT onNcDestroy(HWND control, WPARAM wp, LPARAM lp)
{
    NamedControl* named = (NamedControl*)RemovePropW(control, NAMED_PROPERTY);
    if (!named) return DefWindowProcW(control, WM_NCDESTROY, wp, lp);
    WNDPROC base = named->base;
    SetWindowLongPtrW(control, GWLP_WNDPROC, (LONG_PTR)base);
    HeapFree(GetProcessHeap(), 0, named);
    return CallWindowProcW(base, control, WM_NCDESTROY, wp, lp);
}

static LRESULT CALLBACK namedProc(HWND control, UINT message, WPARAM wp, LPARAM lp)
{
    if (message == WM_NCDESTROY) return onNcDestroy(control, wp, lp);
    NamedControl* named = namedOf(control);
    if (!named) return DefWindowProcW(control, message, wp, lp);
    switch (message) {
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP: relayToTooltip(control, message, wp, lp); break;
    case WM_KEYDOWN:
        if (walkByKey(control, wp, false)) return 0;
        break;
    case WM_DESTROY:
        removeFromTooltip(control);
        endObjectRequests(control);
        break;
    case WM_GETOBJECT:
        if (const LRESULT answer = answerObjectRequest(control, wp, lp)) return answer;
        break;
    }
    return CallWindowProcW(named->base, control, message, wp, lp);
}

static NamedControl* attachNamed(HWND control)
{
    NamedControl* named = (NamedControl*)HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(NamedControl));
    if (!named) return nullptr;
    if (SetPropW(control, NAMED_PROPERTY, named)) {
        named->base = (WNDPROC)SetWindowLongPtrW(control, GWLP_WNDPROC, (LONG_PTR)namedProc);
        if (named->base) return named;
        RemovePropW(control, NAMED_PROPERTY);
    }
    HeapFree(GetProcessHeap(), 0, named);
    return nullptr;
}

int WINAPI nameControl(HWND control, const WCHAR* name)
{
    if (!name || !isOwnProcess(control)) return 0;
    NamedControl* named = namedOf(control);
    if (!named) named = attachNamed(control);
    if (!named) return 0;
    lstrcpynW(named->name, name, NAME_LENGTH);
    updateTooltip(control);
    return 1;
}

int WINAPI showBarValue(HWND bar, BOOL moving)
{
    const NamedControl* named = isOwnProcess(bar) ? namedOf(bar) : nullptr;
    if (!named) return 0;
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, bar, OBJID_CLIENT, CHILDID_SELF);
    wchar_t text[NAME_LENGTH + 16];
    wsprintfW(text, L"%s %d", named->name, GetScrollPos(bar, SB_CTL));
    trackTooltip(bar, moving ? text : nullptr);
    return 1;
}
