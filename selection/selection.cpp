// Routes from the canvas: drawing an outline, and clicks on the frame.
#include "selection/selection.h"

#include "canvas/view/canvas_coordinates.h"
#include "resources/resource_ids.h"
#include "selection/outline_drawing.h"
#include "selection/selection_frame.h"
#include "selection/selection_operations.h"
#include "selection/selection_tracking.h"
#include "selection/tracking_picture.h"
#include "session/ground/module_state.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

// The point in the frame's pixels: client pixels while the canvas is zoomed.
static int hitTest(POINT image, POINT client)
{
    const POINT at = isZoomed(sessionExtras.canvas.view) ? client : image;
    return hitTestFrame(pixelRectOf(session->frameInnerRect), pixelRectOf(session->frameOuterRect), frameButtons(),
                        frameBand(), {(int)at.x, (int)at.y});
}

// ---- cursors over the frame, and what its buttons are called

struct FrameLook {
    int hit;
    LPCSTR systemCursor;  // or
    int cursorId;         // one of the module's
    UINT nameId;          // string that names the button; 0 for the edges
};

static const FrameLook frameLooks[] = {
    {HIT_LEFT_EDGE, (LPCSTR)IDC_SIZEWE, 0, 0},
    {HIT_RIGHT_EDGE, (LPCSTR)IDC_SIZEWE, 0, 0},
    {HIT_TOP_EDGE, (LPCSTR)IDC_SIZENS, 0, 0},
    {HIT_BOTTOM_EDGE, (LPCSTR)IDC_SIZENS, 0, 0},
    {HIT_TOP_LEFT, (LPCSTR)IDC_SIZENWSE, 0, STRING_FRAME_RESIZE},
    {HIT_BOTTOM_RIGHT, (LPCSTR)IDC_SIZENWSE, 0, STRING_FRAME_RESIZE},
    {HIT_TOP_RIGHT, (LPCSTR)IDC_SIZENESW, 0, STRING_FRAME_RESIZE},
    {HIT_BOTTOM_LEFT, (LPCSTR)IDC_SIZENESW, 0, STRING_FRAME_RESIZE},
    {HIT_APPLY, nullptr, CURSOR_STAMP, STRING_FRAME_APPLY},
    {HIT_FLIP_HORIZONTAL, nullptr, CURSOR_FLIP_HORIZONTAL, STRING_FRAME_FLIP_HORIZONTAL},
    {HIT_FLIP_VERTICAL, nullptr, CURSOR_FLIP_VERTICAL, STRING_FRAME_FLIP_VERTICAL},
    {HIT_DARKER, nullptr, CURSOR_DARKER, STRING_FRAME_DARKER},
    {HIT_BRIGHTER, nullptr, CURSOR_BRIGHTER, STRING_FRAME_BRIGHTER},
    {HIT_ROTATE, nullptr, CURSOR_ROTATE, STRING_FRAME_ROTATE},
    {HIT_HUE_DOWN, nullptr, CURSOR_HUE_DOWN, STRING_FRAME_HUE_DOWN},
    {HIT_HUE_UP, nullptr, CURSOR_HUE_UP, STRING_FRAME_HUE_UP},
    {HIT_SATURATION_MORE, nullptr, CURSOR_SATURATION_MORE, STRING_FRAME_SATURATION_MORE},
    {HIT_SATURATION_LESS, nullptr, CURSOR_SATURATION_LESS, STRING_FRAME_SATURATION_LESS},
    {HIT_CONTRAST_MORE, nullptr, CURSOR_CONTRAST_MORE, STRING_FRAME_CONTRAST_MORE},
    {HIT_CONTRAST_LESS, nullptr, CURSOR_CONTRAST_LESS, STRING_FRAME_CONTRAST_LESS},
    {HIT_LIFT_UP, nullptr, CURSOR_LIFT_UP, STRING_FRAME_LIFT_UP},
    {HIT_CLOSE, nullptr, CURSOR_CLOSE, STRING_FRAME_CLOSE},
    {HIT_LIFT_DOWN, nullptr, CURSOR_LIFT_DOWN, STRING_FRAME_LIFT_DOWN},
};

static HCURSOR cursorOfHit(int hit)
{
    for (const FrameLook& row : frameLooks) {
        if (row.hit != hit) continue;
        return row.systemCursor ? LoadCursorA(nullptr, row.systemCursor)
                                : LoadCursorA(moduleInstance, MAKEINTRESOURCEA(row.cursorId));
    }
    return LoadCursorA(moduleInstance, MAKEINTRESOURCEA(CURSOR_MOVE_SELECTION));
}

void pressSelection(HWND canvas, POINT at)
{
    const int hit = hitTest(at, sessionExtras.canvas.pointer);
    session->trackingSelection = 0;
    session->selectionHitCode = (uint32_t)hit;
    switch (operationOfHit(hit)) {
    case OPERATION_NONE:
        if (!session->selectionActive) startDrawing(canvas, at);
        break;
    case OPERATION_MOVE:
    case OPERATION_RESIZE:
    case OPERATION_ROTATE: beginTracking(canvas, at, hit); break;
    default: runSelectionOperation(canvas, hit); break;
    }
}

void moveSelectionPointer(HWND canvas, POINT at)
{
    if (trackingRuns()) {
        trackPointer(canvas, at);
    } else if (session->selectionHitCode == 0 && drawingRuns()) {
        continueDrawing(canvas, at);
    }
}

void releaseSelection(HWND canvas, POINT at)
{
    if (trackingRuns()) {
        endTracking(canvas, at);
    } else if (session->selectionHitCode == 0 && drawingRuns()) {
        finishDrawing(canvas, at);
    }
    session->selectionHitCode = 0;
}

bool setSelectionCursor(HWND canvas)
{
    if (IsRectEmpty(&session->selectionRect) || session->currentTool == TOOL_OUTLINE_BRUSH) return false;
    const POINT pointer = pointerIn(canvas);
    const int hit = hitTest(imagePointOf(canvas, pointer), pointer);
    if (hit == HIT_NONE) return false;
    SetCursor(cursorOfHit(hit));
    return true;
}

UINT frameNameAt(HWND canvas, POINT client)
{
    if (session->currentTool != TOOL_SELECTION || !session->selectionActive) return 0;
    const int hit = hitTest(imagePointOf(canvas, client), client);
    for (const FrameLook& row : frameLooks)
        if (row.hit == hit) return row.nameId;
    return 0;
}
