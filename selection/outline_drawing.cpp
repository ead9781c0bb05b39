#include "selection/outline_drawing.h"

#include "canvas/view/canvas_coordinates.h"
#include "image/packed_bitmap.h"
#include "selection/clear_selection.h"
#include "selection/dotted_outline.h"
#include "selection/selection_drawing.h"
#include "selection/selection_frame.h"
#include "selection/selection_state.h"
#include "selection/working_outline.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

RECT canvasArea(HWND canvas)
{
    if (isZoomed(sessionExtras.canvas.view))
        return {0, 0, sessionExtras.canvas.view.image.width, sessionExtras.canvas.view.image.height};
    RECT area;
    GetClientRect(canvas, &area);
    const POINT corner = imagePointOf(canvas, {area.right, area.bottom});
    return {0, 0, corner.x, corner.y};
}

bool drawingRuns()
{
    return session->rowCrossings && !session->selectionActive;
}

void startDrawing(HWND canvas, POINT at)
{
    clearSelection();
    session->rowCount = bitmapHeight(editedImage());
    const PixelPoint first = clampToCanvas({(int)at.x, (int)at.y}, pixelRectOf(canvasArea(canvas)));
    Outline outline = {};
    if (session->rowCount < 1 || !startOutline(outline, session->rowCount, first)) return;
    putOutline(outline);
    session->selectionRect = {first.x, first.y, first.x, first.y};
}

void continueDrawing(HWND canvas, POINT at)
{
    const PixelPoint point = clampOutlinePoint({(int)at.x, (int)at.y}, pixelRectOf(canvasArea(canvas)));
    Outline outline = workingOutline();
    if (point.x == outline.last.x && point.y == outline.last.y) return;
    const int last = outline.pointCount - 1;
    extendOutline(outline, point);
    putOutline(outline);
    noteOutlinePainted(last);
    showNewDots(canvas);
}

bool floatOutline()
{
    Outline outline = takeWorkingOutline();
    FloatingSelection lifted;
    if (!liftFloating(outline, {0, 0}, editedImage(), lifted)) return false;
    setSelectionColours(neutralColourValues());
    return changeSelection(lifted, RENEW_A | RENEW_B, 0);
}

void finishDrawing(HWND canvas, POINT at)
{
    Outline outline = workingOutline();
    if (at.x != outline.start.x || at.y != outline.start.y) {
        closeOutline(outline, clampOutlinePoint({(int)at.x, (int)at.y}, pixelRectOf(canvasArea(canvas))));
    }
    putOutline(outline);
    if (!floatOutline()) return clearSelection();
    redrawSelection();
}
