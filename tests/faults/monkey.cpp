// A monkey at the editor: a posted pointer, keys, commands, scrolls, sizes and closes in any order to any window of the
// session, seeded. Whatever it does, nothing crashes or hangs, and Close gives the original back.
//
//     monkey SECONDS [SEED]
//
// Prints "SESSION seed after n" before each session, "FOUND ..." for each harm and "MONKEY n steps, m findings" at the
// end. Without that line it has crashed or hung; scripts/monkey goes on behind.
#include <cstdio>
#include <cstdlib>
#include <random>

#include "tests/faults/fault_counts.h"
#include "tests/faults/fault_host.h"
#include "tests/faults/posted_pointer.h"
#include "tests/session/host_image.h"

static FaultHost host;
static HostImage photo;
static std::vector<uint8_t> original;
static std::mt19937 dice;
static unsigned long long steps;
static unsigned findings;
static bool adjusted;  // the contrast dialog may have been confirmed: Close goes back to that
static bool mayAdjust;
static volatile LONG sessionStarted;

static unsigned below(unsigned n)
{
    return (unsigned)(dice() % n);
}

static void found(const char* what)
{
    ++findings;
    printf("FOUND %s\n", what);
    fflush(stdout);
}

struct Windows {
    std::vector<HWND> all;  // the session's, children included
};

static BOOL CALLBACK addWindow(HWND window, LPARAM parameter)
{
    ((Windows*)parameter)->all.push_back(window);
    return TRUE;
}

static BOOL CALLBACK addTree(HWND window, LPARAM parameter)
{
    if (window == host.parent) return TRUE;
    addWindow(window, parameter);
    EnumChildWindows(window, addWindow, parameter);
    return TRUE;
}

static Windows windowsOfSession()
{
    Windows windows;
    EnumThreadWindows(host.threadId, addTree, (LPARAM)&windows);
    return windows;
}

static bool pressesSomething(UINT message, WPARAM wide)
{
    switch (message) {
    case WM_COMMAND: return LOWORD(wide) == IDOK;
    case WM_KEYDOWN:
    case WM_KEYUP:
    case WM_CHAR:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP: return true;
    }
    return false;
}

// Something that would confirm the contrast dialog, or a chooser of the system: only in sessions that may.
static bool confirms(HWND window, UINT message, WPARAM wide)
{
    return GetDlgItem(GetAncestor(window, GA_ROOT), IDOK) && pressesSomething(message, wide);
}

static void post(HWND window, UINT message, WPARAM wide, LPARAM parameter)
{
    if (confirms(window, message, wide)) {
        if (!mayAdjust) return;
        adjusted = true;
    }
    PostMessageA(window, message, wide, parameter);
}

static POINT pointIn(HWND window)
{
    RECT box = {};
    GetWindowRect(window, &box);
    const int width = box.right - box.left, height = box.bottom - box.top;
    return {box.left - 10 + (LONG)below((unsigned)(width > 0 ? width : 1) + 20),
            box.top - 10 + (LONG)below((unsigned)(height > 0 ? height : 1) + 20)};
}

static bool overOk(HWND window)
{
    return GetDlgItem(GetAncestor(window, GA_ROOT), IDOK) != nullptr;
}

static void movesAndPresses(HWND window)
{
    if (overOk(window) && !mayAdjust) return;
    if (overOk(window)) adjusted = true;
    postMove(host.threadId, window, pointIn(window));
    static const PointerButton buttons[] = {LEFT_BUTTON,   LEFT_BUTTON,  LEFT_BUTTON, NO_BUTTON,
                                            MIDDLE_BUTTON, RIGHT_BUTTON, NO_BUTTON};
    const PointerButton button = buttons[below(7)];
    if (button != NO_BUTTON) postButton(host.threadId, button, below(2) == 0);
}

static void wheel(HWND window)
{
    const POINT at = pointIn(window);
    post(window, below(2) ? WM_MOUSEWHEEL : 0x020E, MAKEWPARAM(below(2) ? MK_SHIFT : 0, (short)(below(481) - 240)),
         MAKELPARAM(at.x, at.y));
}

static void command(HWND window)
{
    static const WORD ids[] = {114, 115, 116, 117, 118, 119, 120, 121, 122, 154, 190, 190, 191,  206,
                               208, 209, 213, 214, 2,   8,   9,   10,  1,   150, 152, 0,   65535};
    const WORD id = below(12) ? ids[below(sizeof ids / sizeof ids[0])] : (WORD)below(300);
    if ((id == 2 || id == 8) && below(100)) return;  // not every few steps
    if (id == 123 || id == 124) return;              // pressed again they open the system's own choosers
    post(GetAncestor(window, GA_ROOT), WM_COMMAND, MAKEWPARAM(id, 0), 0);
}

static void key(HWND window)
{
    static const WORD keys[] = {VK_LEFT, VK_RIGHT, VK_UP,  VK_DOWN,     VK_RETURN, VK_ESCAPE, VK_SPACE, VK_BACK,
                                VK_HOME, VK_END,   VK_TAB, VK_SUBTRACT, VK_ADD,    '0',       '1',      'Z'};
    const WORD which = keys[below(16)];
    post(window, below(3) ? WM_KEYDOWN : WM_KEYUP, which, 1);
    if (below(2)) post(window, WM_CHAR, 32 + below(224), 1);
}

static void scroll(HWND window)
{
    post(GetAncestor(window, GA_ROOT), below(2) ? WM_HSCROLL : WM_VSCROLL, MAKEWPARAM(below(9), below(300)),
         (LPARAM)window);
}

static void resize(HWND window)
{
    const HWND root = GetAncestor(window, GA_ROOT);
    SetWindowPos(root, nullptr, (int)below(900), (int)below(600), 20 + (int)below(700), 20 + (int)below(600),
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_ASYNCWINDOWPOS);
}

static void odd(HWND window)
{
    static const UINT messages[] = {WM_CAPTURECHANGED, WM_CANCELMODE, WM_KILLFOCUS,  WM_SETFOCUS,   WM_PAINT,
                                    WM_SIZE,           WM_TIMER,      1025,          1026,          WM_LBUTTONUP,
                                    WM_LBUTTONDOWN,    WM_MOUSEMOVE,  WM_ENABLE,     WM_SETCURSOR,  WM_SYSCOLORCHANGE,
                                    WM_DISPLAYCHANGE,  WM_ACTIVATE,   WM_NCACTIVATE, WM_MOUSELEAVE, WM_QUERYNEWPALETTE};
    const UINT message = messages[below(20)];
    const LPARAM parameter = MAKELPARAM(below(400), below(400));
    // A timer's is a function to call: Windows looks whether there is such a timer, Wine calls it, wherever it may
    // lead.
    post(window, message, below(4), message == WM_TIMER ? 0 : parameter);
}

static void closeSomething(HWND window)
{
    if (below(40) == 0) post(GetAncestor(window, GA_ROOT), WM_CLOSE, 0, 0);
}

static void step(const Windows& windows)
{
    static void (*const deeds[])(HWND) = {movesAndPresses,
                                          movesAndPresses,
                                          movesAndPresses,
                                          movesAndPresses,
                                          wheel,
                                          command,
                                          command,
                                          key,
                                          scroll,
                                          resize,
                                          odd,
                                          closeSomething};
    if (windows.all.empty()) return;
    deeds[below(sizeof deeds / sizeof deeds[0])](windows.all[below((unsigned)windows.all.size())]);
    ++steps;
}

static void restoreImage()
{
    memcpy(GlobalLock(photo.block), original.data(), original.size());
    GlobalUnlock(photo.block);
}

static void expectOriginal()
{
    const std::vector<uint8_t> now = snapshot(photo);
    size_t other = 0;
    for (size_t i = 0; i < original.size(); ++i)
        other += now[i] != original[i];
    const std::string bytes = std::to_string(other) + " of " + std::to_string(original.size()) + " bytes";
    if (other > 0) found(("0 returned with a changed image: " + bytes).c_str());
}

static void playSession(unsigned seed)
{
    printf("SESSION %u after %llu\n", seed, steps);
    fflush(stdout);
    InterlockedExchange(&sessionStarted, (LONG)GetTickCount());
    dice.seed(seed);
    mayAdjust = below(4) == 0;
    adjusted = false;
    restoreImage();
    if (!openSession(&host)) {
        found("a session does not open");
        return;
    }
    const unsigned length = 100 + below(2000);
    Windows windows;
    for (unsigned i = 0; i < length && host.running; ++i) {
        if (i % 10 == 0) {
            windows = windowsOfSession();
            settle(&host);
        }
        step(windows);
    }
    for (const PointerButton button : {LEFT_BUTTON, MIDDLE_BUTTON, RIGHT_BUTTON})
        postButton(host.threadId, button, false);
    leaveSession(&host, 2);
    if (host.running) {
        found("a session does not end");
        ExitProcess(96);
    }
    if (host.windowsLeft || host.classLeft || host.disabledLeft) found("something stays behind");
    if (host.result == 0 && !adjusted) expectOriginal();
}

static long books[KIND_COUNT];

static void noteBooks()
{
    for (int kind = 0; kind < KIND_COUNT; ++kind)
        books[kind] = outstanding(kind);
}

// `made`: so many memory blocks had been made before the session.
static void compareBooks(unsigned made)
{
    for (int kind = 0; kind < KIND_COUNT; ++kind) {
        if (outstanding(kind) <= books[kind]) continue;
        std::string left = "left: " + std::to_string(outstanding(kind) - books[kind]) + " " + kindName(kind);
        if (kind == MEMORY_BLOCKS)
            for (const SIZE_T size : sizesLeft(made))
                left += ", of " + std::to_string(size) + " bytes";
        found(left.c_str());
        books[kind] = outstanding(kind);
    }
}

static DWORD WINAPI watchForHangs(void*)
{
    for (;;) {
        Sleep(1000);
        if (sessionStarted && (LONG)GetTickCount() - sessionStarted > 180000) {
            printf("HANG\n");
            fflush(stdout);
            TerminateProcess(GetCurrentProcess(), 98);
        }
    }
}

static LONG WINAPI onCrash(EXCEPTION_POINTERS* exception)
{
    printf("CRASH at library+%lx\n",
           (unsigned long)((const BYTE*)exception->ExceptionRecord->ExceptionAddress - (const BYTE*)host.library));
    fflush(stdout);
    TerminateProcess(GetCurrentProcess(), 97);
    return EXCEPTION_EXECUTE_HANDLER;
}

int main(int count, char** words)
{
    const DWORD seconds = count > 1 ? (DWORD)atoi(words[1]) : 60;
    unsigned seed = count > 2 ? (unsigned)atoi(words[2]) : 1;
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter(onCrash);
    startFaultHost(&host);
    CloseHandle(CreateThread(nullptr, 0, watchForHangs, nullptr, 0, nullptr));
    photo = makePhoto(PHOTO_WIDTH, PHOTO_HEIGHT, 7);
    host.image = photo.block;
    original = snapshot(photo);
    startCounting({});
    const DWORD start = GetTickCount();
    for (int session = 0; GetTickCount() - start < seconds * 1000; ++session) {
        const unsigned made = blocksMade();
        playSession(seed++);
        if (session == 4) noteBooks();  // what is made once is there by then
        if (session > 4) compareBooks(made);
    }
    printf("MONKEY %llu steps, %u findings\n", steps, findings);
    return findings ? 1 : 0;
}
