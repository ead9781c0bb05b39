#include "canvas/canvas.h"

#include <windowsx.h>

#include <climits>

#include "canvas/keys.h"
#include "canvas/overview_map.h"
#include "canvas/pan.h"
#include "canvas/painting_input.h"
#include "canvas/pointer_input.h"
#include "canvas/session_defaults.h"
#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/cursor_outline.h"
#include "canvas/view_change.h"
#include "canvas/wheel.h"
#include "canvas/zoom_title.h"
#include "canvas/zoomed_painting.h"
#include "image/bitmap_display.h"
#include "image/packed_bitmap.h"
#include "selection/frame_tips.h"
#include "selection/clear_selection.h"
#include "selection/selection.h"
#include "selection/selection_aside.h"
#include "selection/selection_drawing.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "text/text_tool.h"
#include "tools/brush/picked_patch.h"
#include "tools/painting/undo_history.h"

static HGLOBAL imageOf(HWND canvas)
{
    return (HGLOBAL)windowProp(GetParent(canvas), PROP_IMAGE);
}

static LRESULT onCreate(HWND canvas)
{
    writeSessionDefaults();
    session->canvasWindow = canvas;
    rebuildOutline(canvas, 1);
    freeUndoHistory();
    return 0;
}

static void onDestroy(HWND canvas)
{
    clearSelection();
    forgetSelectionAside();
    endText(canvas);
    forgetPatchAside();
    freeOutline();
    freeOverviewMap();
    forgetTitle();
    sessionExtras.canvas.view = {};
}

static void onSize(HWND canvas)
{
    mapCanvas(canvas);
    rebuildOutline(canvas, 0);
}

// The invalid part of the client area. Taken as a region, because it is in device units on every
// system, whatever the mapping of the canvas's own device context is. All of the area when there is no telling: what
// is validated has to be painted.
static RECT updateBox(HWND canvas)
{
    RECT box = {0, 0, 0, 0};
    GetClientRect(canvas, &box);
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    if (!region) return box;
    if (GetUpdateRgn(canvas, region, FALSE) != ERROR) GetRgnBox(region, &box);
    DeleteObject(region);
    return box;
}

static void paintOverlays(HDC dc)
{
    drawSelection(dc);
    paintTextOverlay(session->canvasWindow, dc);
}

static void drawImagePart(HWND canvas, HDC dc, HGLOBAL image, RECT box)
{
    RECT client = {0, 0, 0, 0};
    GetClientRect(canvas, &client);
    if (isZoomed(sessionExtras.canvas.view)) return paintZoomed(dc, box);
    // At an odd scale a changed image pixel may show one screen pixel outside of its own, rounded place.
    InflateRect(&box, 1, 1);
    IntersectRect(&box, &box, &client);
    int width, height;
    if (!lockBitmapInfo(image, &width, &height, nullptr)) return;
    const RECT part = coveringImageRect(box, {client.right, client.bottom}, {width, height});
    paintImageRect(GetParent(canvas), dc, image, &part, paintOverlays);
}

static LRESULT onPaint(HWND canvas)
{
    hideOutline(canvas);
    if (!sessionExtras.canvas.mapped) mapDeviceContext(canvas);
    const RECT box = updateBox(canvas);
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(canvas, &paint);
    const HGLOBAL image = imageOf(canvas);
    if (dc && image && !IsRectEmpty(&box)) drawImagePart(canvas, dc, image, box);
    EndPaint(canvas, &paint);
    showOutline(canvas);
    return 0;
}

static LRESULT onEraseBackground(HWND canvas, WPARAM wParam, LPARAM lParam)
{
    if (imageOf(canvas)) return 0;  // the image covers everything: nothing to erase, no flicker
    hideOutline(canvas);
    const LRESULT result = DefWindowProcA(canvas, WM_ERASEBKGND, wParam, lParam);
    showOutline(canvas);
    return result;
}

static LRESULT onTimer(HWND canvas, WPARAM id)
{
    if (id == SPRAY_TIMER) spray(canvas);
    if (id == BORDER_TIMER) moveAtBorder(canvas);
    return 0;
}

static bool isInput(UINT message)
{
    return message == WM_KEYDOWN || message == WM_CHAR || message == WM_TIMER || message == WM_LBUTTONDOWN ||
           message == WM_MOUSEMOVE || message == WM_LBUTTONUP || message == WM_CAPTURECHANGED ||
           message == WM_MBUTTONDOWN || message == WM_MBUTTONUP || message == WM_MOUSEWHEEL ||
           message == WM_MOUSEHWHEEL;
}

// A click into the canvas gives it the keys, with any tool or none.
static LRESULT onLeftDown(HWND canvas, POINT at)
{
    sessionExtras.canvas.pointer = at;
    if (GetFocus() != canvas) SetFocus(canvas);
    if (!beginPan(canvas, at, false)) pressButton(canvas, imagePointOf(canvas, at));
    return 0;
}

static LRESULT onMove(HWND canvas, POINT at, bool leftDown)
{
    sessionExtras.canvas.pointer = at;
    moveMapFrom(canvas, at);
    if (followPan(canvas, at)) return 0;
    watchBorder(canvas, at);
    movePointer(canvas, imagePointOf(canvas, at), leftDown);
    return 0;
}

static LRESULT onLeftUp(HWND canvas, POINT at)
{
    sessionExtras.canvas.pointer = at;
    if (endPan(canvas, false)) return 0;
    releaseButton(canvas, imagePointOf(canvas, at));
    repaintOverviewMap(canvas);
    return 0;
}

// An open line of text has all the keys.
static LRESULT onKeyDown(HWND canvas, UINT key)
{
    if (session->textBuffer) {
        textKeyDown(canvas, key);
    } else {
        pressKey(canvas, key);
    }
    return 0;
}

static LRESULT onChar(HWND canvas, UINT character)
{
    if (session->textBuffer) {
        textChar(canvas, character);
    } else {
        typeKey(canvas, character);
    }
    return 0;
}

static void onCaptureChanged(HWND canvas, HWND newOwner)
{
    if (newOwner != canvas) losePan(canvas);
    losePress(canvas, newOwner);
}

static void onPointerLeft(HWND canvas)
{
    moveMapFrom(canvas, {LONG_MIN / 2, LONG_MIN / 2});
    hideOutline(canvas);
}

static LRESULT CALLBACK canvasProc(HWND canvas, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!session) return DefWindowProcA(canvas, message, wParam, lParam);
    if (sessionExtras.leaving != LEAVING_UNDECIDED && isInput(message)) return 0;
    // Signed on purpose: with the mouse captured, points left of and above the client are negative.
    const POINT at = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    if (message == WM_MOUSEMOVE || message == WM_LBUTTONDOWN) followFrameTip(canvas, message, wParam, lParam);
    switch (message) {
    case WM_CREATE: return onCreate(canvas);
    case WM_DESTROY: onDestroy(canvas); break;
    case WM_SIZE: onSize(canvas); break;
    case WM_PAINT: return onPaint(canvas);
    case WM_ERASEBKGND: return onEraseBackground(canvas, wParam, lParam);
    case WM_SETCURSOR:
        if (setPanCursor(canvas) || setSelectionCursor(canvas)) return 0;
        break;
    case WM_SETFOCUS: takeTextFocus(canvas); break;
    case WM_KILLFOCUS: loseTextFocus(canvas); break;
    case WM_KEYDOWN: return onKeyDown(canvas, (UINT)wParam);
    case WM_KEYUP: letGoOfKey(canvas, (UINT)wParam); break;
    case WM_CHAR: return onChar(canvas, (UINT)wParam);
    case WM_TIMER: return onTimer(canvas, wParam);
    case WM_LBUTTONDOWN: return onLeftDown(canvas, at);
    case WM_MOUSEMOVE: return onMove(canvas, at, (wParam & MK_LBUTTON) != 0);
    case WM_LBUTTONUP: return onLeftUp(canvas, at);
    case WM_MBUTTONDOWN: beginPan(canvas, at, true); break;
    case WM_MBUTTONUP: endPan(canvas, true); break;
    case WM_MOUSEWHEEL: turnWheel(canvas, wParam, lParam); return 0;
    case WM_MOUSEHWHEEL: tiltWheel(canvas, wParam); return 0;
    case WM_CANCELMODE: onCaptureChanged(canvas, nullptr); break;
    case WM_CAPTURECHANGED: onCaptureChanged(canvas, (HWND)lParam); break;
    case CANVAS_POINTER_ENTERED: showOutline(canvas); return 0;
    case CANVAS_POINTER_LEFT: onPointerLeft(canvas); return 0;
    }
    return DefWindowProcA(canvas, message, wParam, lParam);
}

int registerCanvasClass(HINSTANCE instance)
{
    WNDCLASSA canvasClass = {};
    canvasClass.style = CS_OWNDC | CS_BYTEALIGNCLIENT;  // the mapping set at WM_SIZE persists
    canvasClass.lpfnWndProc = canvasProc;
    canvasClass.hInstance = instance;
    canvasClass.hCursor = LoadCursorA(nullptr, (LPCSTR)IDC_ARROW);
    canvasClass.lpszClassName = CANVAS_CLASS;
    return RegisterClassA(&canvasClass);
}

void unregisterCanvasClass(HINSTANCE instance)
{
    UnregisterClassA(CANVAS_CLASS, instance);
}

void mapCanvas(HWND canvas)
{
    RECT client;
    if (!GetClientRect(canvas, &client) || client.right < 1 || client.bottom < 1) return;
    int width = client.right, height = client.bottom;
    lockBitmapInfo(imageOf(canvas), &width, &height, nullptr);
    const CanvasView before = sessionExtras.canvas.view;
    sessionExtras.canvas.view = resizedView(before, {(int)client.right, (int)client.bottom}, {width, height});
    followView(canvas, before);
}
