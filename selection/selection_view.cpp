#include "selection/selection_view.h"

#include <algorithm>

#include "canvas/view/canvas_coordinates.h"
#include "image/bitmap_locks.h"
#include "selection/clear_selection.h"
#include "selection/outline_drawing.h"
#include "selection/selection_drawing.h"
#include "selection/selection_operations.h"
#include "selection/selection_frame.h"
#include "selection/tracking_picture.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

void showFloatingPixels(const ViewPicture& picture)
{
    const LockedPixels pixels(session->selectionImage), mask(session->selectionMask);
    if (!pixels || !mask || !session->selectionActive) return;
    showMaskedPixels(picture, sessionExtras.canvas.view, pixels.view, mask.view,
                     {(int)session->selectionRect.left, (int)session->selectionRect.top});
}

// How far the picture of the image has moved on the canvas.
static POINT shiftSince(const CanvasView& before)
{
    const PixelRect from = deviceRectAt(before, {0, 0, 0, 0}),
                    to = deviceRectAt(sessionExtras.canvas.view, {0, 0, 0, 0});
    return {to.left - from.left, to.top - from.top};
}

void followViewWithSelection(const CanvasView& before)
{
    if (!IsRectEmpty(&session->frameInnerRect)) setSelectionRect(pixelRectOf(session->selectionRect));
    if (trackingRuns()) shiftTracking(shiftSince(before));
    noteSelectionPainted();
}

bool selectionDragRuns()
{
    return session->pressActive && session->currentTool == TOOL_SELECTION && (trackingRuns() || drawingRuns());
}

bool cancelSelectionDrag(HWND canvas)
{
    if (!selectionDragRuns()) return false;
    if (trackingRuns()) {
        cancelTracking(canvas);
    } else {
        clearSelection();
    }
    session->selectionHitCode = 0;
    return true;
}

// The step, less what would carry the side further out of 1..last.
static int stepWithin(int nearSide, int farSide, int step, int last)
{
    const int lowest = std::min(0, 1 - nearSide), highest = std::max(0, last - farSide);
    return std::max(lowest, std::min(step, highest));
}

void nudgeSelection(int dx, int dy)
{
    if (!session->selectionActive) return;
    const RECT& rect = session->selectionRect;
    const int x = stepWithin((int)rect.left, (int)rect.right, dx, sessionExtras.canvas.view.image.width - 1);
    const int y = stepWithin((int)rect.top, (int)rect.bottom, dy, sessionExtras.canvas.view.image.height - 1);
    if (x || y) moveSelectionBy(x, y);
}

void applyFloatingSelection(HWND canvas)
{
    if (session->selectionActive) runSelectionOperation(canvas, HIT_APPLY);
}

void closeSelection()
{
    if (session->selectionActive) clearSelection();
}
