#include "tests/faults/fault_host.h"

#include <cstdio>

#include "tests/faults/fallible.h"
#include "tests/faults/fault_counts.h"
#include "tests/faults/posted_pointer.h"
#include "tests/session/control_ids.h"

constexpr UINT RUN_CALL = WM_APP + 1, LOOK_AT_QUEUE = WM_APP + 2;
constexpr DWORD START_LIMIT = 15000, SETTLE_LIMIT = 5000;

static FaultHost* current;
static HANDLE settled;
static LONG ticket;              // of the wait that goes on; what an earlier one has left in the queue does not end it
static volatile LONG waitedFor;  // the ticket of a wait that ends with the session's call

static bool waitFor(DWORD limit, bool (*holds)(FaultHost*), FaultHost* host)
{
    const DWORD start = GetTickCount();
    while (!holds(host)) {
        if (GetTickCount() - start > limit) return false;
        Sleep(1);
    }
    return true;
}

static BOOL CALLBACK countLeft(HWND window, LPARAM count)
{
    char name[16] = "";
    GetClassNameA(window, name, sizeof name);
    if (window != current->parent && lstrcmpiA(name, "IME") != 0) ++*(int*)count;
    return TRUE;
}

static BOOL CALLBACK paintNow(HWND window, LPARAM)
{
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    return TRUE;
}

static void endWait(LPARAM number)
{
    if (number == ticket) SetEvent(settled);
}

// What is posted behind this message is handled first; then the windows are painted, as they would be when nothing else
// is left. Painting once is enough: while it fails its messages come back for ever. A quit message comes out only when
// the queue is empty, so it is left alone: the call's end is waited for then.
static void lookAtQueue(WPARAM turn, LPARAM number)
{
    MSG next;
    const bool more = PeekMessageA(&next, nullptr, 0, 0, PM_NOREMOVE | PM_QS_POSTMESSAGE);
    if (more && next.message == WM_QUIT && current->running) {
        waitedFor = number;
    } else if (more && turn < 50) {
        PostMessageA(current->control, LOOK_AT_QUEUE, turn + 1, number);
    } else {
        EnumThreadWindows(GetCurrentThreadId(), paintNow, 0);
        endWait(number);
    }
}

static void runCall(FaultHost* host)
{
    RECT dialog = {60, 40, 60 + PHOTO_WIDTH + 2 * GetSystemMetrics(SM_CXFRAME),
                   40 + PHOTO_HEIGHT + 2 * GetSystemMetrics(SM_CYFRAME) + GetSystemMetrics(SM_CYCAPTION)};
    POINT palette = {500, 40};
    host->result = host->entry(host->parent, host->image, &dialog, &palette);
    disarm();
    host->windowsLeft = 0;
    EnumThreadWindows(GetCurrentThreadId(), countLeft, (LPARAM)&host->windowsLeft);
    MSG message;
    host->quitLeft = PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    WNDCLASSA found;
    host->classLeft = GetClassInfoA(host->library, "KOVRETOUCH", &found);
    host->disabledLeft = !IsWindowEnabled(host->parent);
    EnableWindow(host->parent, TRUE);
    InterlockedExchange(&host->running, 0);
    endWait(waitedFor);
}

static LRESULT CALLBACK controlProc(HWND window, UINT message, WPARAM wide, LPARAM parameter)
{
    if (message == RUN_CALL) {
        runCall(current);
        return 0;
    }
    if (message == LOOK_AT_QUEUE) {
        lookAtQueue(wide, parameter);
        return 0;
    }
    return DefWindowProcA(window, message, wide, parameter);
}

static DWORD WINAPI hostThread(void* parameter)
{
    FaultHost* host = (FaultHost*)parameter;
    const HINSTANCE program = GetModuleHandleA(nullptr);
    WNDCLASSA control = {};
    control.lpfnWndProc = controlProc;
    control.hInstance = program;
    control.lpszClassName = "FaultControl";
    RegisterClassA(&control);
    WNDCLASSA plain = {};
    plain.lpfnWndProc = DefWindowProcA;
    plain.hInstance = program;
    plain.lpszClassName = "FaultHost";
    RegisterClassA(&plain);
    host->parent = CreateWindowA("FaultHost", "Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 1200, 950, 300, 200, nullptr,
                                 nullptr, program, nullptr);
    host->control = CreateWindowA("FaultControl", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, program, nullptr);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return 0;
}

static std::string programDirectory()
{
    char path[MAX_PATH];
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string name = path;
    return name.substr(0, name.find_last_of('\\') + 1);
}

static void loadLibraries(FaultHost* host)
{
    char temporary[MAX_PATH];
    GetTempPathA(sizeof temporary, temporary);
    host->directory = std::string(temporary) + "retouch-faults-" + std::to_string(GetCurrentProcessId()) + "\\";
    CreateDirectoryA(host->directory.c_str(), nullptr);
    for (const char* name : {"KOVRTCH32.dll", "KOVCTRL32.dll"})
        CopyFileA((programDirectory() + name).c_str(), (host->directory + name).c_str(), FALSE);
    host->library = LoadLibraryExA((host->directory + "KOVRTCH32.dll").c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    host->controls = GetModuleHandleA("KOVCTRL32.dll");
    if (!host->library || !host->controls) {
        fprintf(stderr, "the libraries cannot be loaded: %lu\n", GetLastError());
        ExitProcess(2);
    }
    host->entry = (RetouchEntry)(void*)GetProcAddress(host->library, MAKEINTRESOURCEA(KOVRTCH32_ENTRY_ORDINAL));
    replaceImports(host->library);
    replaceImports(host->controls);
}

static BOOL CALLBACK sortWindow(HWND window, LPARAM parameter)
{
    FaultHost* host = (FaultHost*)parameter;
    if (!IsWindowVisible(window)) return TRUE;
    if (const HWND canvas = FindWindowExA(window, nullptr, "KOVRETOUCH", nullptr)) {
        host->dialog = window;
        host->canvas = canvas;
    } else if (FindWindowExA(window, nullptr, "ListBox", nullptr)) {
        host->shelf = window;
    } else if (GetDlgItem(window, ID_BRUSH)) {
        host->palette = window;
    } else if (GetDlgItem(window, IDYES)) {
        host->question = window;
    } else if (GetDlgItem(window, IDOK)) {
        host->contrast = window;
    }
    return TRUE;
}

void startFaultHost(FaultHost* host)
{
    current = host;
    settled = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    usePostedPointer();
    loadLibraries(host);
    CloseHandle(CreateThread(nullptr, 0, hostThread, host, 0, &host->threadId));
    if (!waitFor(
            START_LIMIT, [](FaultHost* started) { return started->control != nullptr; }, host))
        ExitProcess(2);
    watchThread(host->threadId);
}

// The session's own loop, or the host's after a refusal, looks at the queue.
bool openSession(FaultHost* host)
{
    InterlockedExchange(&host->running, 1);
    PostMessageA(host->control, RUN_CALL, 0, 0);
    settle(host);
    findWindows(host);
    return host->running != 0;
}

// A fault of the session's own thread may be in the way; the last resort is the dialog's own close.
void leaveSession(FaultHost* host, int button)
{
    for (int attempt = 0; attempt < 3 && host->running; ++attempt) {
        findWindows(host);
        if (host->question) click(host, GetDlgItem(host->question, IDNO));
        if (host->contrast) click(host, GetDlgItem(host->contrast, IDCANCEL));
        if (host->palette) click(host, GetDlgItem(host->palette, button));
        settle(host);
    }
    for (int attempt = 0; attempt < 20 && host->running; ++attempt) {
        findWindows(host);
        if (host->dialog) PostMessageA(host->dialog, WM_CLOSE, 0, 0);
        settle(host);
    }
}

void findWindows(FaultHost* host)
{
    host->dialog = host->canvas = host->palette = host->shelf = host->contrast = host->question = nullptr;
    EnumThreadWindows(host->threadId, sortWindow, (LPARAM)host);
}

bool waitForWindow(FaultHost* host, HWND FaultHost::*window, bool present)
{
    for (int attempt = 0; attempt < 3 && host->running; ++attempt) {
        findWindows(host);
        if ((host->*window != nullptr) == present) return true;
        settle(host);
    }
    return false;
}

void settle(FaultHost* host)
{
    InterlockedIncrement(&ticket);
    ResetEvent(settled);
    PostMessageA(host->control, LOOK_AT_QUEUE, 0, ticket);
    WaitForSingleObject(settled, SETTLE_LIMIT);
}

void movePointer(FaultHost* host, HWND window, POINT screen)
{
    postMove(host->threadId, window, screen);
    settle(host);
}

void press(FaultHost* host)
{
    postButton(host->threadId, LEFT_BUTTON, true);
    settle(host);
}

void release(FaultHost* host)
{
    postButton(host->threadId, LEFT_BUTTON, false);
    settle(host);
}

POINT onScreen(const FaultHost& host, int x, int y)
{
    POINT at = {x, y};
    ClientToScreen(host.canvas, &at);
    return at;
}

void drag(FaultHost* host, const std::vector<POINT>& clientPoints)
{
    movePointer(host, host->canvas, onScreen(*host, clientPoints[0].x, clientPoints[0].y));
    press(host);
    for (size_t i = 1; i < clientPoints.size(); ++i)
        movePointer(host, host->canvas, onScreen(*host, clientPoints[i].x, clientPoints[i].y));
    release(host);
}

void click(FaultHost* host, HWND window)
{
    RECT box = {};
    if (!GetWindowRect(window, &box)) return;
    movePointer(host, window, {(box.left + box.right) / 2, (box.top + box.bottom) / 2});
    press(host);
    release(host);
}

void clickTool(FaultHost* host, int id)
{
    click(host, GetDlgItem(host->palette, id));
}

void type(FaultHost* host, const char* text)
{
    for (; *text; ++text)
        PostMessageA(host->canvas, WM_CHAR, (BYTE)*text, 1);
    settle(host);
}
