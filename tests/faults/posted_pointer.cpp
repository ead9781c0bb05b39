#include "tests/faults/posted_pointer.h"

#include "tests/faults/fallible.h"

namespace {

POINT place;
HWND below;
volatile LONG buttonDown;

BOOL WINAPI cursorPos(POINT* at)
{
    *at = place;
    return TRUE;
}

SHORT WINAPI keyState(int key)
{
    return key == VK_LBUTTON && buttonDown ? (SHORT)0x8000 : 0;
}

DWORD WINAPI messagePos()
{
    return (DWORD)MAKELPARAM(place.x, place.y);
}

BOOL WINAPI getMessage(MSG* message, HWND window, UINT first, UINT last)
{
    const BOOL result = GetMessageA(message, window, first, last);
    message->pt = place;
    return result;
}

BOOL WINAPI peekMessage(MSG* message, HWND window, UINT first, UINT last, UINT flags)
{
    const BOOL result = PeekMessageA(message, window, first, last, flags);
    message->pt = place;
    return result;
}

HWND receiver(DWORD thread)
{
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    if (GetGUIThreadInfo(thread, &info) && info.hwndCapture) return info.hwndCapture;
    return IsWindowEnabled(below) && IsWindowEnabled(GetAncestor(below, GA_ROOT)) ? below : nullptr;
}

void postMouse(DWORD thread, UINT message)
{
    const HWND window = receiver(thread);
    if (!window) return;
    POINT at = place;
    ScreenToClient(window, &at);
    PostMessageA(window, message, buttonDown ? MK_LBUTTON : 0, MAKELPARAM(at.x, at.y));
}

}  // namespace

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

void postButton(DWORD thread, bool down)
{
    InterlockedExchange(&buttonDown, down);
    postMouse(thread, down ? WM_LBUTTONDOWN : WM_LBUTTONUP);
}
