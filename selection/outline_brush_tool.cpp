// The outline brush on the canvas: one dab at the press, the new selection at the release.
#include "canvas/canvas_coordinates.h"
#include "image/packed_bitmap.h"
#include "selection/outline_brush.h"
#include "selection/selection.h"
#include "selection/selection_operations.h"
#include "selection/selection_state.h"
#include "session/session_record.h"
#include "session/window_props.h"
#include "tools/dab_placement.h"

namespace {

// Centre and radius as the dab engine places any dab: of the rectangle cut to the image, and of the
// width that is visible. A radius of 0 when nothing is.
BrushDab dabAt(POINT at)
{
    int imageWidth, imageHeight;
    if (!lockBitmapInfo(editedImage(), &imageWidth, &imageHeight, nullptr)) return {};
    const int width = (int)session->brushWidth, height = (int)session->brushHeight;
    const DabPlacement place = placeDab(dabRect({(int)at.x, (int)at.y}, width, height, 1), width, height, imageWidth,
                                        imageHeight);
    if (!place.visible) return {};
    const PixelRect& r = place.clamped;
    return {{(r.left + r.right) / 2, (r.top + r.bottom) / 2}, place.ruleWidth / 2, session->reshapeFromOutside == 0};
}

void eraseFrame()
{
    RECT outer = session->frameOuterRect;
    SetRectEmpty(&session->frameInnerRect);
    SetRectEmpty(&session->frameOuterRect);
    InflateRect(&outer, 1, 1);
    redrawSelectionMoved(outer);
}

void showFrameAgain()
{
    setSelectionRect(pixelRectOf(session->selectionRect));
    redrawSelection();
}

void reshapeAt(HWND canvas, POINT at)
{
    PixelPoint* points;
    int count;
    const BrushResult result = reshapeOutline(session->outlinePoints, session->outlinePointCount, dabAt(at),
                                              pixelRectOf(canvasArea(canvas)), points, count);
    if (result == BRUSH_CLEARED) return clearSelection();
    if (result != BRUSH_RESHAPED) return showFrameAgain();
    Outline outline = {};
    const bool replayed = replayOutline(outline, session->rowCount, points, count) && !outline.incomplete;
    freeOutlinePoints(points);
    if (!replayed || !takeReshapedOutline(outline)) {
        freeOutline(outline);
        showFrameAgain();
    }
}

}  // namespace

void pressOutlineBrush(HWND, POINT at)
{
    if (IsRectEmpty(&session->selectionRect) || !session->selectionActive) return;
    const PixelPoint point = {(int)at.x, (int)at.y};
    if (!rectContains(pixelRectOf(session->selectionOuterRect), point)) return;
    session->reshapeFromOutside = !outlineContains(session->outlinePoints, session->outlinePointCount, point);
    session->reshapeRect = session->selectionRect;
    session->reshapeHomeRect = session->selectionHomeRect;
    eraseFrame();
}

void releaseOutlineBrush(HWND canvas)
{
    if (IsRectEmpty(&session->selectionRect) || !IsRectEmpty(&session->frameInnerRect)) return;
    reshapeAt(canvas, session->clickPoints[0]);
}
