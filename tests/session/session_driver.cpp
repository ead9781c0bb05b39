#include "tests/session/session_driver.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/session/screen_picture.h"

constexpr UINT RUN_CALL = WM_APP + 1;       // posted to the control window: call the entry
constexpr UINT RUN_FUNCTION = WM_APP + 2;   // sent: lParam is a std::function<void()>*
constexpr UINT LOOK_AT_QUEUE = WM_APP + 3;  // posted: sets queueState
constexpr UINT STOP_THREAD = WM_APP + 4;    // posted

enum QueueState : LONG { QUEUE_UNKNOWN, QUEUE_EMPTY, QUEUE_BUSY };
static volatile LONG queueState;
static volatile LONG waitingInQueue;  // QS_ bits, when it was last looked at

static Host* currentHost;  // one host at a time in the test program

// Files of the library's directory.
static const char* const libraryFiles[] = {"KOVRTCH32.dll", "KOVCTRL32.dll"};

static std::string programDirectory()
{
    char path[MAX_PATH];
    GetModuleFileNameA(nullptr, path, sizeof path);
    std::string directory = path;
    return directory.substr(0, directory.find_last_of('\\') + 1);
}

static bool copyLibraryFiles(const std::string& directory)
{
    CreateDirectoryA(directory.c_str(), nullptr);
    for (const char* file : libraryFiles)
        if (!CopyFileA((programDirectory() + file).c_str(), (directory + file).c_str(), TRUE) &&
            GetLastError() != ERROR_FILE_EXISTS) {
            ADD_FAILURE() << "cannot copy " << file << " to " << directory;
            return false;
        }
    return true;
}

bool loadLibraryIn(Library* library, const std::string& directory)
{
    library->directory = directory;
    if (!copyLibraryFiles(directory)) return false;
    // The altered search path finds the control library in the same directory, not beside the test program.
    library->module =
        LoadLibraryExA((library->directory + libraryFiles[0]).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!library->module) {
        ADD_FAILURE() << "the library cannot be loaded, error " << GetLastError();
        return false;
    }
    library->entry = (RetouchEntry)(void*)GetProcAddress(library->module, MAKEINTRESOURCEA(KOVRTCH32_ENTRY_ORDINAL));
    EXPECT_NE(nullptr, library->entry);
    return library->entry != nullptr;
}

std::string freshDirectory()
{
    static unsigned number;
    char temp[MAX_PATH];
    GetTempPathA(sizeof temp, temp);
    return std::string(temp) + "retouch-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++number) +
           "\\";
}

bool loadLibrary(Library* library)
{
    return loadLibraryIn(library, freshDirectory());
}

void unloadLibrary(Library* library)
{
    if (library->module) FreeLibrary(library->module);
    library->module = nullptr;
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA((library->directory + "*").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do
            DeleteFileA((library->directory + found.cFileName).c_str());
        while (FindNextFileA(search, &found));
        FindClose(search);
    }
    RemoveDirectoryA(library->directory.c_str());
}

std::string classOf(HWND window)
{
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

// The input method's helper window belongs to the system.
static bool isSystemWindow(HWND window)
{
    return lstrcmpiA(classOf(window).c_str(), "IME") == 0;
}

static BOOL CALLBACK countWindow(HWND window, LPARAM lp)
{
    if (window != currentHost->parent && !isSystemWindow(window)) ++*(int*)lp;
    return TRUE;
}

#if defined(__i386__)
struct RawCall {
    const void* arguments[4];
    void* entry;
};

// Calls a four-argument WINAPI function with the stack pointer `offset` bytes below a multiple of 16.
static int callWithStackOffset(const RawCall* call, unsigned offset)
{
    int result;
    asm volatile("movl %%esp, %%ebx\n\t"
                 "andl $-16, %%esp\n\t"
                 "subl %2, %%esp\n\t"
                 "pushl 12(%1)\n\t"
                 "pushl 8(%1)\n\t"
                 "pushl 4(%1)\n\t"
                 "pushl 0(%1)\n\t"
                 "call *16(%1)\n\t"
                 "movl %%ebx, %%esp"
                 : "=a"(result)
                 : "S"(call), "D"(offset)
                 : "ebx", "ecx", "edx", "memory", "cc");
    return result;
}
#endif

static int callEntry(const Host& host)
{
    const CallArguments& with = host.arguments;
#if defined(__i386__)
    if (with.stackOffset) {
        const RawCall call = {{with.parent, with.image, with.dialogRect, with.palettePos}, (void*)host.library->entry};
        return callWithStackOffset(&call, with.stackOffset);
    }
#endif
    return host.library->entry(with.parent, with.image, with.dialogRect, with.palettePos);
}

static void runCall(Host* host)
{
    CallOutcome outcome = {};
    outcome.result = callEntry(*host);
    EnumThreadWindows(GetCurrentThreadId(), countWindow, (LPARAM)&outcome.windowsLeft);
    MSG message;
    outcome.parentActive = GetActiveWindow() == host->parent;
    outcome.quitLeft = PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    if (outcome.quitLeft) outcome.quitCode = (int)message.wParam;
    WNDCLASSA found;
    outcome.classLeft = GetClassInfoA(host->library->module, "KOVRETOUCH", &found);
    outcome.parentDisabled = IsWindow(host->parent) && !IsWindowEnabled(host->parent);
    host->outcome = outcome;
    InterlockedExchange(&host->running, 0);
}

static void lookAtQueue()
{
    const WORD waiting = HIWORD(GetQueueStatus(QS_INPUT | QS_POSTMESSAGE | QS_PAINT));
    InterlockedExchange(&waitingInQueue, waiting);
    InterlockedExchange(&queueState, waiting ? QUEUE_BUSY : QUEUE_EMPTY);
}

static LRESULT CALLBACK controlProc(HWND window, UINT message, WPARAM wp, LPARAM lp)
{
    switch (message) {
    case RUN_CALL: runCall(currentHost); return 0;
    case RUN_FUNCTION: (*(const std::function<void()>*)lp)(); return 0;
    case LOOK_AT_QUEUE: lookAtQueue(); return 0;
    case STOP_THREAD: PostQuitMessage(0); return 0;
    }
    return DefWindowProcA(window, message, wp, lp);
}

static void makeHostWindows(Host* host)
{
    const HINSTANCE program = GetModuleHandleA(nullptr);
    WNDCLASSA control = {};
    control.lpfnWndProc = controlProc;
    control.hInstance = program;
    control.lpszClassName = "RetouchTestControl";
    RegisterClassA(&control);
    WNDCLASSA plain = {};
    plain.lpfnWndProc = DefWindowProcA;
    plain.hInstance = program;
    plain.hbrBackground = (HBRUSH)(COLOR_APPWORKSPACE + 1);
    plain.hCursor = LoadCursorA(nullptr, (LPCSTR)IDC_ARROW);
    plain.lpszClassName = "RetouchTestHost";
    RegisterClassA(&plain);

    host->control = CreateWindowA("RetouchTestControl", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, program, nullptr);
    host->parent = CreateWindowA("RetouchTestHost", "Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 1200, 950, 300, 200,
                                 nullptr, nullptr, program, nullptr);
}

static DWORD WINAPI hostThread(void* parameter)
{
    Host* host = (Host*)parameter;
    makeHostWindows(host);
    hookMessages(GetCurrentThreadId());
    SetEvent(host->ready);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    unhookMessages();
    if (IsWindow(host->parent)) DestroyWindow(host->parent);
    DestroyWindow(host->control);
    return 0;
}

bool startHost(Host* host, Library* library)
{
    *host = {};
    host->library = library;
    currentHost = host;
    clearLog();
    host->ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    host->thread = CreateThread(nullptr, 0, hostThread, host, 0, &host->threadId);
    const bool ok = WaitForSingleObject(host->ready, WAIT_LIMIT_MS) == WAIT_OBJECT_0;
    EXPECT_TRUE(ok) << "the host's thread did not start";
    return ok && settle(host);
}

static BOOL CALLBACK findSessionWindow(HWND window, LPARAM lp)
{
    Host* host = (Host*)lp;
    const HWND canvas = GetDlgItem(window, CANVAS_ID);
    if (canvas && lstrcmpiA(classOf(canvas).c_str(), "KOVRETOUCH") == 0) {
        host->dialog = window;
        host->canvas = canvas;
    } else if (GetDlgItem(window, ID_BRUSH)) {
        host->palette = window;
    }
    return TRUE;
}

bool sessionIsOpen(Host* host)
{
    host->dialog = host->canvas = host->palette = nullptr;
    EnumThreadWindows(host->threadId, findSessionWindow, (LPARAM)host);
    return host->dialog && host->palette && IsWindowVisible(host->dialog) && IsWindowVisible(host->palette);
}

void stopHost(Host* host)
{
    if (!host->thread) return;
    if (host->running) {
        sessionIsOpen(host);
        PostMessageA(host->dialog ? host->dialog : host->control, host->dialog ? WM_CLOSE : WM_NULL, 0, 0);
        if (!waitForReturn(host)) {
            // Later tests cannot run beside a session that does not end.
            fprintf(stderr, "the session does not end; giving up\n");
            TerminateProcess(GetCurrentProcess(), 3);
        }
    }
    PostMessageA(host->control, STOP_THREAD, 0, 0);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(host->thread, WAIT_LIMIT_MS));
    CloseHandle(host->thread);
    CloseHandle(host->ready);
    host->thread = nullptr;
    currentHost = nullptr;
}

void beginCall(Host* host, const CallArguments& arguments)
{
    host->arguments = arguments;
    host->dialog = host->canvas = host->palette = nullptr;
    InterlockedExchange(&host->running, 1);
    PostMessageA(host->control, RUN_CALL, 0, 0);
}

bool waitForReturn(Host* host)
{
    return waitUntil("the entry to return", [&] { return !host->running; });
}

bool callAndReturn(Host* host, const CallArguments& arguments)
{
    beginCall(host, arguments);
    return waitForReturn(host);
}

bool openSession(Host* host, const CallArguments& arguments)
{
    beginCall(host, arguments);
    const bool open = waitUntil("the session's windows to open", [&] { return sessionIsOpen(host) || !host->running; });
    if (open && !host->running) {
        ADD_FAILURE() << "the entry returned " << host->outcome.result << " without opening a session";
        return false;
    }
    // The parent is disabled last, just before the loop starts.
    return open && settle(host) && waitUntil("the loop to start", [&] {
               return !IsWindow(host->arguments.parent) || !IsWindowEnabled(host->arguments.parent);
           });
}

static bool isOwnQuestion(const SeenMessage& seen)
{
    return seen.message == LOOK_AT_QUEUE && seen.window == currentHost->control;
}

static void printNewestMessages()
{
    std::vector<SeenMessage> newest = seenSince(0);
    newest.erase(std::remove_if(newest.begin(), newest.end(), isOwnQuestion), newest.end());
    newest.erase(newest.begin(), newest.end() - (ptrdiff_t)std::min<size_t>(20, newest.size()));
    printf("newest messages of the session's thread, in whose queue waited %lx:\n", waitingInQueue);
    for (const SeenMessage& seen : newest)
        printf("  window %p (%s) message %u at (%d, %d) wParam %u, screen (%ld, %ld)%s\n", (void*)seen.window,
               classOf(seen.window).c_str(), seen.message, (short)LOWORD(seen.lParam), (short)HIWORD(seen.lParam),
               (unsigned)seen.wParam, seen.screen.x, seen.screen.y, seen.sent ? ", sent" : "");
}

struct WantedDialog {
    int control;
    HWND found;
};

static BOOL CALLBACK takeDialogWith(HWND window, LPARAM lParam)
{
    WantedDialog& wanted = *(WantedDialog*)lParam;
    if (!IsWindowVisible(window) || !GetDlgItem(window, wanted.control)) return TRUE;
    wanted.found = window;
    return FALSE;
}

HWND dialogWith(const Host& host, int control)
{
    WantedDialog wanted = {control, nullptr};
    EnumThreadWindows(host.threadId, takeDialogWith, (LPARAM)&wanted);
    return wanted.found;
}

bool waitUntil(const char* what, const std::function<bool()>& condition)
{
    const DWORD start = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - start > WAIT_LIMIT_MS) {
            ADD_FAILURE() << "waited in vain for " << what;
            savePicture(what);
            printNewestMessages();
            return false;
        }
        Sleep(1);
    }
    return true;
}

// The question is posted: a sent one would also be answered in the middle of a handler that itself waits. Posted
// messages come before input and painting, so on a busy machine questions alone could keep a thread from both: after
// many there are pauses.
bool settle(Host* host)
{
    constexpr int MANY = 100;
    constexpr DWORD PAUSE_MS = 20;
    int questions = 0;
    DWORD answered = GetTickCount();
    InterlockedExchange(&queueState, QUEUE_BUSY);
    return waitUntil("the session's queue to be empty", [&] {
        if (queueState == QUEUE_UNKNOWN) {
            answered = GetTickCount();
        } else if (queueState == QUEUE_BUSY && (questions < MANY || GetTickCount() - answered >= PAUSE_MS)) {
            ++questions;
            InterlockedExchange(&queueState, QUEUE_UNKNOWN);
            PostMessageA(host->control, LOOK_AT_QUEUE, 0, 0);
        }
        return queueState == QUEUE_EMPTY;
    });
}

static void sendPaintedToScreen()
{
    MsgWaitForMultipleObjectsEx(0, nullptr, 0, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    const HDC screen = GetDC(nullptr);
    GetPixel(screen, 0, 0);  // comes back after all that was sent before
    ReleaseDC(nullptr, screen);
}

void letScreenFollow()
{
    if (currentHost && currentHost->thread && currentHost->running) runOnHost(currentHost, sendPaintedToScreen);
}

void runOnHost(Host* host, const std::function<void()>& function)
{
    DWORD_PTR ignored;
    EXPECT_NE(0, SendMessageTimeoutA(host->control, RUN_FUNCTION, 0, (LPARAM)&function, SMTO_NORMAL, WAIT_LIMIT_MS,
                                     &ignored));
}
