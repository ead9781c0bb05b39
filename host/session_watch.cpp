#include "host/session_watch.h"

#include "host/guide.h"
#include "host/host_window.h"
#include "host/waiting_photos.h"

#include <shellapi.h>

static HHOOK hook;
constexpr UINT SESSION_RUNS = WM_APP;  // posted before the session: its loop finds it first

static BOOL CALLBACK acceptDrops(HWND window, LPARAM)
{
    if (IsWindowVisible(window)) DragAcceptFiles(window, TRUE);
    return TRUE;
}

// The library's loop takes the messages of the thread's other windows for granted: what is for this program is taken
// out before any window sees it.
static void takeOurs(MSG* message)
{
    if (message->message == SESSION_RUNS && message->hwnd == hostWindow()) {
        EnumThreadWindows(GetCurrentThreadId(), acceptDrops, 0);
    } else if (message->message == WM_DROPFILES) {
        addDropped((HDROP)message->wParam);
        InvalidateRect(hostWindow(), nullptr, TRUE);
    } else if (message->message == WM_KEYDOWN && message->wParam == VK_F1) {
        openGuide(GetActiveWindow());
    } else {
        return;
    }
    message->message = WM_NULL;
}

static LRESULT CALLBACK watchMessage(int code, WPARAM removed, LPARAM message)
{
    if (code == HC_ACTION && removed == PM_REMOVE) takeOurs((MSG*)message);
    return CallNextHookEx(hook, code, removed, message);
}

void beginSessionWatch()
{
    hook = SetWindowsHookExW(WH_GETMESSAGE, watchMessage, nullptr, GetCurrentThreadId());
    PostMessageW(hostWindow(), SESSION_RUNS, 0, 0);
}

void endSessionWatch()
{
    UnhookWindowsHookEx(hook);
}
