#include "canvas/pan.h"

#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/cursor_outline.h"
#include "canvas/view_change.h"
#include "resources/resource_ids.h"
#include "selection/selection.h"
#include "selection/selection_view.h"
#include "session/ground/module_state.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

constexpr UINT BORDER_INTERVAL = 40;  // milliseconds between two moves at the border
constexpr int BORDER_STEP = 8;        // client pixels of one move
constexpr int BORDER_WIDTH = 4;       // client pixels that count as the border

static PanDrag& drag = sessionExtras.canvas.pan;

static void runBorderTimer(HWND canvas, bool run)
{
    if (run == sessionExtras.canvas.borderTimerRuns) return;
    if (!run) KillTimer(canvas, BORDER_TIMER);
    sessionExtras.canvas.borderTimerRuns = run && SetTimer(canvas, BORDER_TIMER, BORDER_INTERVAL, nullptr) != 0;
}

static bool spaceIsHeld(HWND canvas)
{
    return GetFocus() == canvas && !session->textBuffer && (GetKeyState(VK_SPACE) & 0x8000) != 0;
}

static HCURSOR hand()
{
    return LoadCursorA(moduleInstance, MAKEINTRESOURCEA(CURSOR_DRAG_DIALOG));
}

static void stopDrag(HWND canvas)
{
    drag.runs = false;
    showOutline(canvas);
}

static int borderStep(LONG at, LONG length)
{
    return at < BORDER_WIDTH ? -BORDER_STEP : at >= length - BORDER_WIDTH ? BORDER_STEP : 0;
}

static CanvasView viewBeyondBorder()
{
    const CanvasView& view = sessionExtras.canvas.view;
    return pannedView(view, borderStep(sessionExtras.canvas.pointer.x, view.client.width),
                      borderStep(sessionExtras.canvas.pointer.y, view.client.height));
}

// A drag pulls at what it holds from inside the canvas.
static POINT insideCanvas(POINT at)
{
    const LONG right = sessionExtras.canvas.view.client.width - 1, bottom = sessionExtras.canvas.view.client.height - 1;
    return {at.x < 0 ? 0 : at.x > right ? right : at.x, at.y < 0 ? 0 : at.y > bottom ? bottom : at.y};
}

bool beginPan(HWND canvas, POINT at, bool middle)
{
    if (drag.runs) {
        drag.pressSwallowed = drag.pressSwallowed || !middle;
        return true;
    }
    if (!isZoomed(sessionExtras.canvas.view) || session->pressActive || (!middle && !spaceIsHeld(canvas))) return false;
    hideOutline(canvas);
    drag = {true, middle, false, at, sessionExtras.canvas.view};
    SetCapture(canvas);
    SetCursor(hand());
    return true;
}

bool followPan(HWND canvas, POINT at)
{
    if (!drag.runs) return false;
    const CanvasView start = resizedView(drag.start, sessionExtras.canvas.view.client, sessionExtras.canvas.view.image);
    showView(canvas, pannedView(start, (int)(drag.grab.x - at.x), (int)(drag.grab.y - at.y)));
    return true;
}

bool endPan(HWND canvas, bool middle)
{
    if (drag.runs && drag.byMiddle == middle) {
        stopDrag(canvas);
        if (GetCapture() == canvas) ReleaseCapture();
        return true;
    }
    const bool swallowed = !middle && drag.pressSwallowed;
    if (!middle) drag.pressSwallowed = false;
    return swallowed || drag.runs;
}

bool panRuns()
{
    return drag.runs;
}

void losePan(HWND canvas)
{
    if (drag.runs) stopDrag(canvas);
}

bool cancelPan(HWND canvas)
{
    if (!drag.runs) return false;
    showView(canvas, resizedView(drag.start, sessionExtras.canvas.view.client, sessionExtras.canvas.view.image));
    drag.pressSwallowed = !drag.byMiddle;  // the left button is still down, and its release is nothing else
    stopDrag(canvas);
    if (GetCapture() == canvas) ReleaseCapture();
    return true;
}

bool setPanCursor(HWND canvas)
{
    if (!drag.runs && !(isZoomed(sessionExtras.canvas.view) && !session->pressActive && spaceIsHeld(canvas)))
        return false;
    SetCursor(hand());
    return true;
}

void watchBorder(HWND canvas, POINT at)
{
    const bool atBorder = borderStep(at.x, sessionExtras.canvas.view.client.width) ||
                          borderStep(at.y, sessionExtras.canvas.view.client.height);
    runBorderTimer(canvas, atBorder && isZoomed(sessionExtras.canvas.view) && selectionDragRuns());
}

void moveAtBorder(HWND canvas)
{
    if (!selectionDragRuns()) return runBorderTimer(canvas, false);
    showView(canvas, viewBeyondBorder());
    moveSelectionPointer(canvas, imagePointOf(canvas, insideCanvas(sessionExtras.canvas.pointer)));
}
