#include "include/kovrtch32.h"

#include "canvas/canvas.h"
#include "image/kept_blocks.h"
#include "image/original_image.h"
#include "resources/resource_ids.h"
#include "session/host_dialog.h"
#include "session/ground/language.h"
#include "session/ground/module_state.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/quit_message.h"
#include "tools/painting/undo_history.h"

// While the pointer rests on the canvas, its place is looked at this often (milliseconds). A message
// that arrives ends the wait at once.
constexpr DWORD POINTER_POLL_INTERVAL = 40;

static HGLOBAL sessionBlock;
static volatile LONG sessionRunning;

static int startSession(HINSTANCE instance)
{
    sessionBlock = GlobalAlloc(GHND, sizeof(SessionRecord));
    session = sessionBlock ? (SessionRecord*)GlobalLock(sessionBlock) : nullptr;
    if (!session) {
        if (sessionBlock) GlobalFree(sessionBlock);
        return 0;
    }
    sessionExtras = {};
    readProfileLanguage();
    const int registered = registerCanvasClass(instance);
    if (!registered) {
        session = nullptr;
        GlobalFree(sessionBlock);
    }
    return registered;
}

static void freeBlock(HGLOBAL& block)
{
    releaseBlock(block);
    block = nullptr;
}

static void endSession()
{
    releaseOriginal();
    freeUndoHistory();
    freeBlock(session->brushMask);
    freeBlock(session->maskCache);
    freeBlock(session->strokeCoverage);
    freeBlock(session->strokeStartImage);
    freeBlock(session->undoSnapshot);
    session = nullptr;
    releaseKeptBlocks();
    GlobalFree(sessionBlock);
    unregisterCanvasClass(moduleInstance);
}

static LPARAM packedPoint(POINT at)
{
    return (at.x & 0xFFFF) | (LPARAM)((DWORD)at.y << 16);
}

// Until a message arrives, watches whether the canvas still lies under the point of the last message.
// A whole turn waits, instead of burning a core, until something comes or the interval has passed.
static void watchPointer(POINT at)
{
    MSG next;
    while (!PeekMessageA(&next, nullptr, 0, 0, PM_NOREMOVE)) {
        if (WindowFromPoint(at) != session->canvasWindow) {
            session->mouseInside = 0;
            PostMessageA(session->canvasWindow, CANVAS_POINTER_LEFT, 0, packedPoint(at));
            return;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, POINTER_POLL_INTERVAL, QS_ALLINPUT);
    }
}

static void followPointer(const MSG& dispatched)
{
    if (!session->canvasWindow) return;
    if (session->mouseInside) {
        watchPointer(dispatched.pt);
    } else if (dispatched.message == WM_MOUSEMOVE && dispatched.hwnd == session->canvasWindow) {
        session->mouseInside = 1;
        PostMessageA(session->canvasWindow, CANVAS_POINTER_ENTERED, 0, packedPoint(dispatched.pt));
    }
}

// The wheel turns what lies under the pointer, also where the system sends it to the window with the focus.
static void leadWheelToCanvas(MSG& message)
{
    if (message.message != WM_MOUSEWHEEL && message.message != WM_MOUSEHWHEEL) return;
    const bool ours = message.hwnd == session->hostDialog || message.hwnd == session->paletteDialog ||
                      IsChild(session->paletteDialog, message.hwnd);
    if (ours && session->canvasWindow && WindowFromPoint(message.pt) == session->canvasWindow) {
        message.hwnd = session->canvasWindow;
    }
}

static void runLoop()
{
    MSG message = {};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        leadWheelToCanvas(message);
        TranslateMessage(&message);
        DispatchMessageA(&message);
        followPointer(message);
    }
    noteQuit(message);
    // A quit message of the host's own ended the loop: leave as by Close.
    if (IsWindow(session->hostDialog)) DestroyWindow(session->hostDialog);
}

// The system cannot activate a window that is still disabled when the one that it owns goes.
static void activateAgain(HWND parent)
{
    const HWND window = GetAncestor(parent, GA_ROOT);
    if (window && IsWindowVisible(window) && GetActiveWindow() != window) SetActiveWindow(window);
}

static void runSession(HWND parent)
{
    const HWND hostDialog = session->hostDialog;
    ShowWindow(hostDialog, SW_SHOW);
    UpdateWindow(hostDialog);
    sessionExtras.parent = parent;
    EnableWindow(parent, FALSE);
    runLoop();
    EnableWindow(parent, TRUE);
    ShowWindow(hostDialog, SW_HIDE);
    UpdateWindow(parent);
    activateAgain(parent);
    handQuitOn();
}

static int callSession(HWND parent, SessionArguments& arguments)
{
    if (!startSession(moduleInstance)) return 0;
    const HWND dialog =
        CreateDialogParamW(moduleInstance, MAKEINTRESOURCEW(DIALOG_HOST), parent, hostDialogProc, (LPARAM)&arguments);
    const bool started = session->hostDialog && session->canvasWindow;
    if (started) {
        runSession(parent);
    } else if (dialog) {
        DestroyWindow(dialog);  // before its class goes; posts no quit message, as no loop ran
    }
    endSession();
    return started ? sessionResult : 0;  // a failed start does not repeat the Save of an earlier session
}

extern "C" int WINAPI entry(HWND parent, HGLOBAL image, RECT* dialogRect, POINT* palettePos)
{
    // One session at a time: the loop also dispatches the host's messages, which may call again.
    if (InterlockedCompareExchange(&sessionRunning, 1, 0)) return 0;
    SessionArguments arguments = {image, dialogRect, palettePos};
    const int result = callSession(parent, arguments);
    InterlockedExchange(&sessionRunning, 0);
    return result;
}
