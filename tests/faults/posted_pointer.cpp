#include "tests/faults/posted_pointer.h"

#include "tests/faults/fallible.h"

static POINT place;
static HWND below;

struct ButtonState {
    int key;
    WPARAM flag;
    UINT downMessage, upMessage;
    volatile LONG down;
};
static ButtonState buttons[] = {{VK_LBUTTON, MK_LBUTTON, WM_LBUTTONDOWN, WM_LBUTTONUP, 0},
                                {VK_MBUTTON, MK_MBUTTON, WM_MBUTTONDOWN, WM_MBUTTONUP, 0},
                                {VK_RBUTTON, MK_RBUTTON, WM_RBUTTONDOWN, WM_RBUTTONUP, 0}};

static BOOL WINAPI cursorPos(POINT* at)
{
    *at = place;
    return TRUE;
}

static SHORT WINAPI keyState(int key)
{
    for (const ButtonState& button : buttons)
        if (button.key == key && button.down) return (SHORT)0x8000;
    return 0;
}

static DWORD WINAPI messagePos()
{
    return (DWORD)MAKELPARAM(place.x, place.y);
}

static BOOL WINAPI getMessage(MSG* message, HWND window, UINT first, UINT last)
{
    const BOOL result = GetMessageA(message, window, first, last);
    message->pt = place;
    return result;
}

static BOOL WINAPI peekMessage(MSG* message, HWND window, UINT first, UINT last, UINT flags)
{
    const BOOL result = PeekMessageA(message, window, first, last, flags);
    message->pt = place;
    return result;
}

static HWND receiver(DWORD thread)
{
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    if (GetGUIThreadInfo(thread, &info) && info.hwndCapture) return info.hwndCapture;
    return IsWindowEnabled(below) && IsWindowEnabled(GetAncestor(below, GA_ROOT)) ? below : nullptr;
}

static void postMouse(DWORD thread, UINT message)
{
    const HWND window = receiver(thread);
    if (!window) return;
    POINT at = place;
    ScreenToClient(window, &at);
    WPARAM held = 0;
    for (const ButtonState& button : buttons)
        if (button.down) held |= button.flag;
    PostMessageA(window, message, held, MAKELPARAM(at.x, at.y));
}

void usePostedPointer()
{
    standIn("GetCursorPos", (void*)cursorPos);
    standIn("GetKeyState", (void*)keyState);
    standIn("GetAsyncKeyState", (void*)keyState);
    standIn("GetMessagePos", (void*)messagePos);
    standIn("GetMessageA", (void*)getMessage);
    standIn("PeekMessageA", (void*)peekMessage);
}

void postMove(DWORD thread, HWND window, POINT screen)
{
    place = screen;
    below = window;
    postMouse(thread, WM_MOUSEMOVE);
}

void postButton(DWORD thread, PointerButton button, bool down)
{
    InterlockedExchange(&buttons[button].down, down);
    postMouse(thread, down ? buttons[button].downMessage : buttons[button].upMessage);
}
