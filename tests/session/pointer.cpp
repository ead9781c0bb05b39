#include "tests/session/pointer.h"

#include "tests/session/pointer_guard.h"

#include <algorithm>
#include <cstdlib>

static void sendMouse(DWORD flags, LONG x = 0, LONG y = 0)
{
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dx = x;
    input.mi.dy = y;
    input.mi.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

// Screen pixel to the units of an absolute move, so that truncation gives the pixel back.
static LONG absoluteUnits(LONG pixel, int screenSize)
{
    return (LONG)(((LONGLONG)pixel * 65536 + screenSize - 1) / screenSize);
}

static POINT pointerPlace = {-1, -1};  // where the last move went; a move to the same place is no input

static void sendMove(POINT screen)
{
    pointerPlace = screen;
    sendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, absoluteUnits(screen.x, GetSystemMetrics(SM_CXSCREEN)),
              absoluteUnits(screen.y, GetSystemMetrics(SM_CYSCREEN)));
}

static bool samePoint(POINT a, POINT b)
{
    return a.x == b.x && a.y == b.y;
}

static bool isMouseMove(UINT message)
{
    return message == WM_MOUSEMOVE || message == WM_NCMOUSEMOVE;
}

// True when the newest pointer message that the thread retrieved since `first` is at the point.
static bool arrived(size_t first, POINT screen)
{
    bool there = false;
    for (const SeenMessage& seen : seenSince(first))
        if (!seen.sent && isMouseMove(seen.message)) there = samePoint(seen.screen, screen);
    return there;
}

// Only the window that has captured the pointer, or else an enabled one under it, is told about a move.
static bool isTold(const Host& host, POINT screen)
{
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    if (GetGUIThreadInfo(host.threadId, &info) && info.hwndCapture) return true;
    const HWND window = WindowFromPoint(screen);
    if (!window || GetWindowThreadProcessId(window, nullptr) != host.threadId) return false;
    return IsWindowEnabled(GetAncestor(window, GA_ROOT));
}

void restPointer()
{
    pointerPlace = pointerRest();
    sendPointerToRest();
}

void takeOverPointer()
{
    if (pointerIsGuarded()) return;
    pointerPlace = pointerRest();
    guardPointer();
}

bool movePointer(Host* host, POINT screen)
{
    const size_t first = seenCount();
    const bool told = isTold(*host, screen) && !samePoint(pointerPlace, screen);
    sendMove(screen);
    return (!told || waitUntil("the pointer's move to be retrieved", [&] { return arrived(first, screen); })) &&
           settle(host);
}

// The display's pointer is moved only when the system's place changes, so it may need a step aside first.
bool placePointer(Host* host, POINT screen)
{
    if (samePoint(pointerPlace, screen)) SetCursorPos(screen.x - 1, screen.y);
    const size_t first = seenCount();
    const bool told = isTold(*host, screen);
    pointerPlace = screen;
    SetCursorPos(screen.x, screen.y);
    return (!told || waitUntil("the pointer's move to be retrieved", [&] { return arrived(first, screen); })) &&
           settle(host);
}

static bool buttonSeen(size_t first, const UINT* messages, size_t count)
{
    for (size_t i = 0; i < count; ++i)
        if (wasSeen(first, nullptr, messages[i])) return true;
    return false;
}

bool pressButtonOnly()
{
    static const UINT presses[] = {WM_LBUTTONDOWN, WM_NCLBUTTONDOWN, WM_LBUTTONDBLCLK, WM_NCLBUTTONDBLCLK};
    const size_t first = seenCount();
    sendMouse(MOUSEEVENTF_LEFTDOWN);
    return waitUntil("the press to be retrieved", [&] { return buttonSeen(first, presses, 4); });
}

bool pressButton(Host* host)
{
    return pressButtonOnly() && settle(host);
}

bool releaseButton(Host* host)
{
    static const UINT releases[] = {WM_LBUTTONUP, WM_NCLBUTTONUP};
    const size_t first = seenCount();
    sendMouse(MOUSEEVENTF_LEFTUP);
    const bool ok = waitUntil("the release to be retrieved", [&] {
        return buttonSeen(first, releases, 2) || !host->running;  // a release may end the session
    });
    return ok && settle(host);
}

void letGoOfButton()
{
    sendMouse(MOUSEEVENTF_LEFTUP);
}

POINT onCanvas(const Host& host, int x, int y)
{
    POINT point = {x, y};
    ClientToScreen(host.canvas, &point);
    return point;
}

bool movePointerOnCanvas(Host* host, int x, int y)
{
    return movePointer(host, onCanvas(*host, x, y));
}

bool drawStroke(Host* host, const std::vector<POINT>& clientPoints)
{
    if (!movePointerOnCanvas(host, clientPoints[0].x, clientPoints[0].y)) return false;
    bool ok = pressButton(host);
    for (size_t i = 1; ok && i < clientPoints.size(); ++i)
        ok = movePointerOnCanvas(host, clientPoints[i].x, clientPoints[i].y);
    return releaseButton(host) && ok;
}

static RECT controlRect(const Host& host, int id)
{
    RECT rect = {};
    GetWindowRect(GetDlgItem(host.palette, id), &rect);
    return rect;
}

bool clickControl(Host* host, int id)
{
    const RECT rect = controlRect(*host, id);
    return movePointer(host, {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2}) && pressButton(host) &&
           releaseButton(host);
}

// A point in the arrow (1) or in the channel just behind it (2), at the near (step < 0) or far end.
static POINT scrollBarPoint(const RECT& rect, int step)
{
    const int width = rect.right - rect.left, height = rect.bottom - rect.top;
    const bool horizontal = width > height;
    const int length = horizontal ? width : height;
    const int arrow = std::min(GetSystemMetrics(horizontal ? SM_CXHSCROLL : SM_CYVSCROLL), length / 2 - 1);
    const int distance = std::abs(step) == 1 ? arrow / 2 : arrow + 1;
    const int along = step < 0 ? distance : length - 1 - distance;
    if (horizontal) return {rect.left + along, (rect.top + rect.bottom) / 2};
    return {(rect.left + rect.right) / 2, rect.top + along};
}

// At once: a bar that is held for long steps again.
static void sendClick()
{
    INPUT inputs[2] = {};
    for (INPUT& input : inputs)
        input.type = INPUT_MOUSE;
    inputs[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    inputs[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    SendInput(2, inputs, sizeof *inputs);
}

bool clickScrollBar(Host* host, int id, int step)
{
    if (!movePointer(host, scrollBarPoint(controlRect(*host, id), step))) return false;
    const size_t first = seenCount();
    const UINT scroll = (GetWindowLongA(GetDlgItem(host->palette, id), GWL_STYLE) & SBS_VERT) ? WM_VSCROLL : WM_HSCROLL;
    sendClick();
    return waitUntil("the scroll bar's end message",
                     [&] {
                         for (const SeenMessage& seen : seenSince(first))
                             if (seen.message == scroll && LOWORD(seen.wParam) == SB_ENDSCROLL) return true;
                         return false;
                     }) &&
           settle(host);
}

int scrollPosition(const Host& host, int id)
{
    return GetScrollPos(GetDlgItem(host.palette, id), SB_CTL);
}

bool isChecked(const Host& host, int id)
{
    return SendDlgItemMessageA(host.palette, id, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

static void addKey(INPUT* input, WORD key, DWORD flags)
{
    input->type = INPUT_KEYBOARD;
    input->ki.wVk = key;
    input->ki.dwFlags = flags;
}

void pressAltF4()
{
    INPUT inputs[4] = {};
    addKey(&inputs[0], VK_MENU, 0);
    addKey(&inputs[1], VK_F4, 0);
    addKey(&inputs[2], VK_F4, KEYEVENTF_KEYUP);
    addKey(&inputs[3], VK_MENU, KEYEVENTF_KEYUP);
    SendInput(4, inputs, sizeof inputs[0]);
}
