#include "canvas/wheel.h"

#include <windowsx.h>

#include "canvas/view/canvas_coordinates.h"
#include "canvas/view_change.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

static int wholeNotches(int& rest, int delta)
{
    if ((rest < 0) != (delta < 0)) rest = 0;
    rest += delta;
    const int notches = rest / WHEEL_DELTA;
    rest %= WHEEL_DELTA;
    return notches;
}

// A tenth of the canvas for a notch, and for finer turns as much less.
static void panSideways(HWND canvas, int delta)
{
    int& tilted = sessionExtras.canvas.wheel.tilted;
    if ((tilted < 0) != (delta < 0)) tilted = 0;
    const int tenth = sessionExtras.canvas.view.client.width / 10;
    const int before = tilted * tenth / WHEEL_DELTA;
    tilted += delta;
    const int dx = tilted * tenth / WHEEL_DELTA - before;
    tilted %= WHEEL_DELTA;
    showView(canvas, pannedView(sessionExtras.canvas.view, dx, 0));
}

static void zoomAt(HWND canvas, int notches, POINT client)
{
    CanvasView view = sessionExtras.canvas.view;
    for (; notches > 0; --notches)
        view = steppedView(view, 1, {(int)client.x, (int)client.y});
    for (; notches < 0; ++notches)
        view = steppedView(view, -1, {(int)client.x, (int)client.y});
    showView(canvas, view);
}

// Only over the canvas itself, wherever the message went; and not during a press, whose points would jump.
static bool isForCanvas(HWND canvas, POINT screen)
{
    return WindowFromPoint(screen) == canvas && !session->pressActive;
}

void turnWheel(HWND canvas, WPARAM wParam, LPARAM lParam)
{
    POINT at = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    if (!isForCanvas(canvas, at)) return;
    const int delta = GET_WHEEL_DELTA_WPARAM(wParam);
    if (GET_KEYSTATE_WPARAM(wParam) & MK_SHIFT) return panSideways(canvas, -delta);
    ScreenToClient(canvas, &at);
    zoomAt(canvas, wholeNotches(sessionExtras.canvas.wheel.turned, delta), at);
}

// Of tilts some systems tell the client point: the pointer's place goes for all.
void tiltWheel(HWND canvas, WPARAM wParam)
{
    const DWORD place = GetMessagePos();
    const POINT at = {GET_X_LPARAM(place), GET_Y_LPARAM(place)};
    if (isForCanvas(canvas, at)) panSideways(canvas, GET_WHEEL_DELTA_WPARAM(wParam));
}
