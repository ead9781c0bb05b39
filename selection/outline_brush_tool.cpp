#include "selection/outline_brush_tool.h"

#include <initializer_list>

#include "canvas/view/canvas_coordinates.h"
#include "image/packed_bitmap.h"
#include "selection/geometry/outline_brush.h"
#include "selection/geometry/row_crossings.h"
#include "selection/clear_selection.h"
#include "selection/selection_aside.h"
#include "selection/outline_drawing.h"
#include "selection/selection_drawing.h"
#include "selection/selection_frame.h"
#include "selection/selection_operations.h"
#include "selection/selection_state.h"
#include "selection/working_outline.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "tools/kernels/dab_placement.h"

// Centre and radius as the dab engine places any dab: of the rectangle cut to the image, and of the
// width that is visible. A radius of 0 when nothing is.
static BrushDab dabAt(POINT at)
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

static void eraseFrame()
{
    SetRectEmpty(&session->frameInnerRect);
    SetRectEmpty(&session->frameOuterRect);
    redrawSelection();
}

static void showFrameAgain()
{
    setSelectionRect(pixelRectOf(session->selectionRect));
    redrawSelection();
}

// The shown points are kept for a release that fails. A second dab before any release keeps the first ones.
static void takeDabbedOutline(const Outline& outline, PixelPoint origin)
{
    if (session->rowCrossings) {
        Outline earlier = takeWorkingOutline();
        freeOutline(earlier);
    } else {
        sessionExtras.selection.dabbedFrom = session->outlinePoints;
    }
    putOutline(outline);
    sessionExtras.selection.tableOrigin = origin;
    PixelRect bounds;
    if (!computeCrossingBounds(outline.crossings, bounds)) return;
    session->reshapeRect = rectOf(bounds);
    OffsetRect(&session->reshapeRect, origin.x, origin.y);
}

static void redrawDab()
{
    redrawSelection();
    if (session->libraryDialog) UpdateWindow(session->libraryDialog);
}

// The outline as it is by now, whole also where it leaves the image. Its points stay the record's.
static Outline presentOutline()
{
    Outline outline = workingOutline();
    if (!session->rowCrossings) outline.points = session->outlineSnapshot;
    return outline;
}

// A second dab before any release has nothing to keep that the first one found.
static void paintAway()
{
    if (session->rowCrossings) return clearSelection();
    setSelectionAside();
}

// The outline changes at once; the floating pixels follow at the release, from the working table that
// this leaves.
static void dabOutline(HWND canvas, POINT at)
{
    PixelPoint* points;
    int count;
    const Outline present = presentOutline();
    const BrushResult result =
        reshapeOutline(present.points, present.pointCount, dabAt(at), pixelRectOf(canvasArea(canvas)), points, count);
    if (result == BRUSH_CLEARED) return paintAway();
    if (result != BRUSH_RESHAPED) return;
    Outline outline = {};
    PixelPoint origin;
    const bool replayed = replayOutlineAnywhere(outline, origin, points, count);
    freeOutlinePoints(points);
    if (!replayed) return;
    takeDabbedOutline(outline, origin);
    redrawDab();
}

static void forgetDabbedPoints()
{
    freeOutlinePoints(sessionExtras.selection.dabbedFrom);
    sessionExtras.selection.dabbedFrom = nullptr;
}

static void restoreOutline()
{
    session->outlinePoints = sessionExtras.selection.dabbedFrom;
    session->outlinePointCount = session->referencePointCountB;
    sessionExtras.selection.dabbedFrom = nullptr;
    showFrameAgain();
}

void pressOutlineBrush(HWND canvas, POINT at)
{
    if (IsRectEmpty(&session->selectionRect) || !session->selectionActive) return;
    const PixelPoint point = {(int)at.x, (int)at.y};
    if (!rectContains(pixelRectOf(session->selectionOuterRect), point)) return;
    const Outline present = presentOutline();
    session->reshapeFromOutside = !outlineContains(present.points, present.pointCount, point);
    session->reshapeRect = session->selectionRect;
    session->reshapeHomeRect = session->selectionHomeRect;
    eraseFrame();
    dabOutline(canvas, at);
}

void releaseOutlineBrush()
{
    forgetSelectionAside();
    if (IsRectEmpty(&session->selectionRect) || !IsRectEmpty(&session->frameInnerRect)) return;
    if (!session->rowCrossings) return showFrameAgain();  // the dab met no part of the outline
    Outline outline = takeWorkingOutline();
    if (!takeReshapedOutline(outline, sessionExtras.selection.tableOrigin)) return restoreOutline();
    forgetDabbedPoints();
}

void cancelOutlineBrush()
{
    if (takeSelectionBack() || IsRectEmpty(&session->selectionRect) || !IsRectEmpty(&session->frameInnerRect)) return;
    if (!session->rowCrossings) return showFrameAgain();
    Outline dabbed = takeWorkingOutline();
    freeOutline(dabbed);
    restoreOutline();
}
