// The outline brush on the canvas: one dab reshapes the outline at the press; the release makes the
// floating selection anew from it.
#include <initializer_list>

#include "canvas/view/canvas_coordinates.h"
#include "image/packed_bitmap.h"
#include "selection/geometry/outline_brush.h"
#include "selection/geometry/row_crossings.h"
#include "selection/selection.h"
#include "selection/selection_drawing.h"
#include "selection/selection_operations.h"
#include "selection/selection_state.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "tools/kernels/dab_placement.h"

namespace {

// Centre and radius as the dab engine places any dab: of the rectangle cut to the image, and of the
// width that is visible. A radius of 0 when nothing is.
BrushDab dabAt(POINT at)
{
    int imageWidth, imageHeight;
    if (!lockBitmapInfo(editedImage(), &imageWidth, &imageHeight, nullptr)) return {};
    const int width = (int)session->brushWidth, height = (int)session->brushHeight;
    const DabPlacement place =
        placeDab(dabRect({(int)at.x, (int)at.y}, width, height, 1), width, height, imageWidth, imageHeight);
    if (!place.visible) return {};
    const PixelRect& r = place.clamped;
    return {{(r.left + r.right) / 2, (r.top + r.bottom) / 2}, place.ruleWidth / 2, session->reshapeFromOutside == 0};
}

void eraseFrame()
{
    SetRectEmpty(&session->frameInnerRect);
    SetRectEmpty(&session->frameOuterRect);
    redrawSelection();
}

void showFrameAgain()
{
    setSelectionRect(pixelRectOf(session->selectionRect));
    redrawSelection();
}

// The present outline is kept for a release that fails. A second dab before any release keeps the first one.
bool keepOutline()
{
    return session->rowCrossings ||
           replacePoints(session->outlineSnapshot, session->outlinePoints, session->outlinePointCount);
}

void takeDabbedOutline(const Outline& outline)
{
    freeOutlinePoints(session->outlinePoints);
    freeCrossings(session->rowCrossings);
    putOutline(outline);
    PixelRect bounds;
    if (computeCrossingBounds(outline.crossings, bounds)) session->reshapeRect = rectOf(bounds);
}

void redrawDab()
{
    redrawSelection();
    if (session->libraryDialog) UpdateWindow(session->libraryDialog);
}

// The outline changes at once; the floating pixels follow at the release, from the working table that
// this leaves.
void dabOutline(HWND canvas, POINT at)
{
    PixelPoint* points;
    int count;
    const BrushResult result = reshapeOutline(session->outlinePoints, session->outlinePointCount, dabAt(at),
                                              pixelRectOf(canvasArea(canvas)), points, count);
    if (result == BRUSH_CLEARED) return clearSelection();
    if (result != BRUSH_RESHAPED) return;
    Outline outline = {};
    const bool replayed = replayOutline(outline, session->rowCount, points, count) && !outline.incomplete;
    freeOutlinePoints(points);
    if (!replayed || !keepOutline()) return freeOutline(outline);
    takeDabbedOutline(outline);
    redrawDab();
}

Outline takeWorkingOutline()
{
    const Outline outline = takeOutline();
    session->rowCrossings = nullptr;
    session->outlinePoints = nullptr;
    session->outlinePointCount = 0;
    return outline;
}

void restoreOutline()
{
    session->outlinePointCount = session->referencePointCountB;
    if (!replacePoints(session->outlinePoints, session->outlineSnapshot, session->outlinePointCount)) {
        return clearSelection();
    }
    showFrameAgain();
}

}  // namespace

void pressOutlineBrush(HWND canvas, POINT at)
{
    if (IsRectEmpty(&session->selectionRect) || !session->selectionActive) return;
    const PixelPoint point = {(int)at.x, (int)at.y};
    if (!rectContains(pixelRectOf(session->selectionOuterRect), point)) return;
    session->reshapeFromOutside = !outlineContains(session->outlinePoints, session->outlinePointCount, point);
    session->reshapeRect = session->selectionRect;
    session->reshapeHomeRect = session->selectionHomeRect;
    eraseFrame();
    dabOutline(canvas, at);
}

void releaseOutlineBrush()
{
    if (IsRectEmpty(&session->selectionRect) || !IsRectEmpty(&session->frameInnerRect)) return;
    if (!session->rowCrossings) return showFrameAgain();  // the dab met no part of the outline
    Outline outline = takeWorkingOutline();
    if (!takeReshapedOutline(outline)) restoreOutline();
}
