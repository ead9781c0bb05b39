#include "session/host_dialog.h"

#include <initializer_list>

#include "canvas/canvas.h"
#include "image/original_image.h"
#include "image/packed_bitmap.h"
#include "resources/resource_ids.h"
#include "session/aspect_ratio.h"
#include "session/dialogs/dialog_face.h"
#include "session/frame.h"
#include "session/ground/language.h"
#include "session/ground/module_state.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "session/quit_message.h"
#include "tools/palette/palette.h"
#include "tools/settings/settings_file.h"

constexpr int CAPTION_SIZE = 256;

static SIZE clientSizeFor(const RECT& dialogRect, HGLOBAL image)
{
    const int frameX = 2 * GetSystemMetrics(SM_CXFRAME);
    const int frameY = 2 * GetSystemMetrics(SM_CYFRAME) + GetSystemMetrics(SM_CYCAPTION);
    const SIZE client = {dialogRect.right - dialogRect.left - frameX, dialogRect.bottom - dialogRect.top - frameY};
    if (client.cx >= 1 && client.cy >= 1) return client;
    return {bitmapWidth(image), bitmapHeight(image)};
}

static void fitCanvas(HWND dialog)
{
    const HWND canvas = (HWND)windowProp(dialog, PROP_CANVAS);
    if (!IsWindow(canvas)) return;
    RECT client;
    if (!GetClientRect(dialog, &client)) return;
    SetWindowPos(canvas, nullptr, client.left, client.top, client.right - client.left, client.bottom - client.top,
                 SWP_NOZORDER);
}

static void placeDialog(HWND dialog, const RECT& dialogRect, SIZE client)
{
    SetWindowPos(dialog, nullptr, dialogRect.left, dialogRect.top, client.cx + 2 * GetSystemMetrics(SM_CXFRAME),
                 client.cy + 2 * GetSystemMetrics(SM_CYFRAME) + GetSystemMetrics(SM_CYCAPTION), SWP_NOZORDER);
    fitCanvas(dialog);
    mapCanvas((HWND)windowProp(dialog, PROP_CANVAS));  // the image is new even when the size is not
}

static bool openPalette(HWND dialog, const POINT& at)
{
    readLocaleLanguage();
    session->paletteDialog = openLocalDialog(moduleInstance, PALETTE_TEMPLATE, dialog, paletteDialogProc, 0);
    if (!session->paletteDialog) return false;
    SetWindowPos(session->paletteDialog, nullptr, at.x, at.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_SHOWWINDOW);
    return true;
}

// False when the session cannot start.
static bool prepareSession(HWND dialog, const SessionArguments& arguments)
{
    if (!arguments.dialogRect || !arguments.palettePos || !isSoundBitmap(arguments.image)) return false;
    session->hostDialog = dialog;
    setWindowProp(dialog, PROP_CANVAS, GetDlgItem(dialog, CONTROL_CANVAS));
    const SIZE client = clientSizeFor(*arguments.dialogRect, arguments.image);
    setWindowProp(dialog, PROP_IMAGE, arguments.image);
    setWindowProp(dialog, PROP_ASPECT_WIDTH, (HANDLE)(INT_PTR)client.cx);
    setWindowProp(dialog, PROP_ASPECT_HEIGHT, (HANDLE)(INT_PTR)client.cy);
    if (!keepOriginal(arguments.image)) return false;  // without it Close could not keep its promise
    placeDialog(dialog, *arguments.dialogRect, client);
    return openPalette(dialog, *arguments.palettePos);
}

// The host names its picture in its own title. Read without asking the window, which may belong to another thread.
static void takeCaptionOfOwner(HWND dialog)
{
    WCHAR caption[CAPTION_SIZE];
    const HWND owner = GetWindow(dialog, GW_OWNER);
    if (owner && InternalGetWindowText(owner, caption, CAPTION_SIZE) > 0) SetWindowTextW(dialog, caption);
}

static INT_PTR onInitDialog(HWND dialog, WPARAM, LPARAM lParam)
{
    takeCaptionOfOwner(dialog);
    setWindowProp(dialog, PROP_FORWARD_TARGET, nullptr);
    if (!prepareSession(dialog, *(const SessionArguments*)lParam)) {
        session->hostDialog = nullptr;
        leaveToolSettings();
    }
    return 1;
}

static INT_PTR onSize(HWND dialog, WPARAM, LPARAM)
{
    fitCanvas(dialog);
    if (session->canvasWindow) InvalidateRect(session->canvasWindow, nullptr, TRUE);
    return 0;
}

static AspectRatio aspectOf(HWND dialog, WindowSize& current)
{
    RECT window = {}, client = {};
    GetWindowRect(dialog, &window);
    GetClientRect(dialog, &client);
    current = {(uint32_t)(window.right - window.left), (uint32_t)(window.bottom - window.top)};
    return {(uint32_t)(UINT_PTR)windowProp(dialog, PROP_ASPECT_WIDTH),
            (uint32_t)(UINT_PTR)windowProp(dialog, PROP_ASPECT_HEIGHT), current.width - (uint32_t)client.right,
            current.height - (uint32_t)client.bottom};
}

static INT_PTR onSizing(HWND dialog, WPARAM, LPARAM lParam)
{
    RECT& rect = *(RECT*)lParam;
    WindowSize current;
    const AspectRatio ratio = aspectOf(dialog, current);
    const WindowSize proposed = {(uint32_t)(rect.right - rect.left), (uint32_t)(rect.bottom - rect.top)};
    const WindowSize kept = keepAspect(ratio, current, proposed, session->frameSizing != 0);
    rect.right = rect.left + (LONG)kept.width;
    rect.bottom = rect.top + (LONG)kept.height;
    return 1;
}

static INT_PTR onWindowPosChanging(HWND dialog, WPARAM, LPARAM lParam)
{
    WINDOWPOS& pos = *(WINDOWPOS*)lParam;
    WindowSize current;
    const AspectRatio ratio = aspectOf(dialog, current);
    const WindowSize proposed = {(uint32_t)pos.cx, (uint32_t)pos.cy};
    WindowSize size = keepAspect(ratio, current, proposed, session->frameSizing != 0);
    size = cutToScreen(ratio, size, (uint32_t)GetSystemMetrics(SM_CXSCREEN), (uint32_t)GetSystemMetrics(SM_CYSCREEN));
    pos.cx = (int)size.width;
    pos.cy = (int)size.height;
    return 0;
}

static INT_PTR onNcButtonDown(HWND, WPARAM hitCode, LPARAM)
{
    session->frameSizing = hitCode >= HTTOP && hitCode <= HTBOTTOMRIGHT;
    return 0;
}

static INT_PTR onNcPaint(HWND dialog, WPARAM, LPARAM)
{
    paintFrame(dialog);
    return 1;
}

static INT_PTR onNcActivate(HWND dialog, WPARAM active, LPARAM)
{
    activateFrame(dialog, active);
    SetWindowLongPtrA(dialog, DWLP_MSGRESULT, TRUE);
    return 1;
}

static INT_PTR onPaint(HWND dialog, WPARAM, LPARAM)
{
    paintFrame(dialog);
    return 0;
}

static INT_PTR onEraseBackground(HWND dialog, WPARAM wParam, LPARAM)
{
    RECT clip = {};
    GetClipBox((HDC)wParam, &clip);
    if (!windowProp(dialog, PROP_IMAGE) || !session->canvasWindow) {
        FillRect((HDC)wParam, &clip, (HBRUSH)GetStockObject(BLACK_BRUSH));
    } else {
        InflateRect(&clip, 1, 1);
        InvalidateRect(session->canvasWindow, &clip, FALSE);
    }
    return 1;
}

// The palette, not this dialog, carries the commands: the target stays null, so what is posted here
// reaches no window.
static INT_PTR onCommand(HWND dialog, WPARAM wParam, LPARAM lParam)
{
    const HWND target = (HWND)windowProp(dialog, PROP_FORWARD_TARGET);
    if (LOWORD(wParam) == IDCANCEL) {
        PostMessageA(target, WM_CLOSE, 0, 0);
        EndDialog(dialog, 0);
        PostMessageA(dialog, WM_CLOSE, 0, 0);  // ending a modeless dialog only hides it; the host must not stay frozen
    } else {
        PostMessageA(target, WM_COMMAND, wParam, lParam);
    }
    return 1;
}

static INT_PTR onClose(HWND dialog, WPARAM, LPARAM)
{
    EnableWindow(sessionExtras.parent, TRUE);  // so that it can become active when this window goes
    DestroyWindow(dialog);
    return 1;
}

// Every way out but Save gives the host its original back, Close once more: this is the last moment.
static void leaveAsCloseUnlessSaved()
{
    if (sessionExtras.leaving != LEAVING_SAVED) {
        sessionResult = 0;
        giveBackOriginal();
    }
    releaseOriginal();
}

static void tearDown(HWND dialog)
{
    if (sessionExtras.leaving == LEAVING_UNDECIDED) sessionExtras.leaving = LEAVING_CLOSED;
    if (IsWindow(session->paletteDialog)) DestroyWindow(session->paletteDialog);
    for (int key : {PROP_ASPECT_WIDTH, PROP_ASPECT_HEIGHT, PROP_IMAGE, PROP_FORWARD_TARGET, PROP_CANVAS}) {
        removeWindowProp(dialog, key);
    }
    session->canvasWindow = nullptr;
    if (IsWindow(session->libraryDialog)) DestroyWindow(session->libraryDialog);
    session->libraryDialog = nullptr;
    leaveAsCloseUnlessSaved();
}

static INT_PTR onDestroy(HWND dialog, WPARAM, LPARAM)
{
    const bool started = session->hostDialog != nullptr;
    tearDown(dialog);
    if (started) postSessionQuit();
    return 1;
}

static INT_PTR onEndSession(HWND dialog, WPARAM ending, LPARAM)
{
    if (ending) DestroyWindow(dialog);  // the system is going down: leave as by Close
    return 1;
}

static INT_PTR forwardPaletteMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!session->canvasWindow) return 0;
    SendMessageA(session->canvasWindow, message, wParam, lParam);
    SetWindowLongPtrA(dialog, DWLP_MSGRESULT, 1);
    return 1;
}

static const DialogRoute routes[] = {
    {WM_INITDIALOG, onInitDialog},
    {WM_SIZE, onSize},
    {WM_SIZING, onSizing},
    {WM_WINDOWPOSCHANGING, onWindowPosChanging},
    {WM_NCLBUTTONDOWN, onNcButtonDown},
    {WM_NCPAINT, onNcPaint},
    {WM_NCACTIVATE, onNcActivate},
    {WM_PAINT, onPaint},
    {WM_ERASEBKGND, onEraseBackground},
    {WM_COMMAND, onCommand},
    {WM_CLOSE, onClose},
    {WM_DESTROY, onDestroy},
    {WM_ENDSESSION, onEndSession},
};

INT_PTR CALLBACK hostDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!session) return 0;
    if (message == WM_QUERYNEWPALETTE || message == WM_PALETTECHANGED) {
        return forwardPaletteMessage(dialog, message, wParam, lParam);
    }
    return dispatchDialogMessage(routes, dialog, message, wParam, lParam);
}
