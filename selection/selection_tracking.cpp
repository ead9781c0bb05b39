#include "selection/selection_tracking.h"

#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/cursor_outline.h"
#include "selection/selection_operations.h"
#include "selection/selection_state.h"
#include "selection/geometry/selection_transform.h"
#include "session/ground/module_state.h"
#include "session/ground/session_record.h"
#include "resources/resource_ids.h"  // last: its names are macros

namespace {

AngleTrack rotationTrack;
POINT rotatedFrame[5];  // the turned frame on the screen, closed, image pixels

PixelPoint hostPointOf(HWND canvas, POINT at)
{
    RECT device = deviceRectOf(canvas, {at.x, at.y, at.x, at.y});
    MapWindowPoints(canvas, session->hostDialog, (POINT*)&device, 1);
    return {(int)device.left, (int)device.top};
}

RECT hostRectOf(HWND canvas, const RECT& rect)
{
    RECT device = deviceRectOf(canvas, rect);
    MapWindowPoints(canvas, session->hostDialog, (POINT*)&device, 2);
    return device;
}

RECT imageRectOf(HWND canvas, const RECT& hostRect)
{
    RECT rect = hostRect;
    MapWindowPoints(session->hostDialog, canvas, (POINT*)&rect, 2);
    const POINT corner = imagePointOf(canvas, {rect.left, rect.top});
    const POINT opposite = imagePointOf(canvas, {rect.right, rect.bottom});
    return {corner.x, corner.y, opposite.x, opposite.y};
}

// ---- rubber band: three nested focus rectangles; drawn twice, they are gone

void invertBand()
{
    const HDC dc = GetDC(session->hostDialog);
    RECT band = session->trackRect;
    for (int i = 0; i < 3; ++i) {
        DrawFocusRect(dc, &band);
        InflateRect(&band, -1, -1);
    }
    ReleaseDC(session->hostDialog, dc);
}

void beginBand(HWND canvas, POINT at, int hit)
{
    session->trackingSelection = 1;
    hideOutline(canvas);
    session->trackRect = hostRectOf(canvas, session->selectionRect);
    const PixelPoint grab = bandGrabOffset(pixelRectOf(session->trackRect), hit, hostPointOf(canvas, at));
    session->trackGrabOffset = {grab.x, grab.y};
    invertBand();
    if (hit == HIT_INSIDE) SetCursor(LoadCursorA(moduleInstance, MAKEINTRESOURCEA(CURSOR_DRAG_DIALOG)));
}

void dragBand(HWND canvas, POINT at)
{
    RECT client;
    GetClientRect(session->hostDialog, &client);
    const FrameMetrics metrics = frameMetrics();
    const PixelRect band = pixelRectOf(session->trackRect);
    const PixelPoint grab = {(int)session->trackGrabOffset.x, (int)session->trackGrabOffset.y};
    const PixelPoint pointer = hostPointOf(canvas, at);
    const int hit = (int)session->selectionHitCode;
    // A frame is never squeezed below the room that its buttons need.
    const BandResize resize = {hit, (metrics.cxFrame + 1) * 6 + 3, metrics.cyFrame * 4 + 3};
    const PixelRect dragged = hit == HIT_INSIDE ? moveBand(band, grab, pointer, pixelRectOf(client), metrics)
                                                : resizeBand(band, resize, grab, pointer, pixelRectOf(client), metrics);
    invertBand();
    session->trackRect = rectOf(dragged);
    invertBand();
}

void endBand(HWND canvas)
{
    invertBand();
    SetCursor(LoadCursorA(nullptr, (LPCSTR)IDC_ARROW));
    showOutline(canvas);
    const RECT rect = imageRectOf(canvas, session->trackRect);
    if (session->selectionHitCode == HIT_INSIDE) {
        moveSelectionBy(rect.left - session->selectionRect.left, rect.top - session->selectionRect.top);
    } else {
        resizeSelectionTo(rect);
    }
}

// ---- turning: the frame of the unturned state, turned, in exclusive-or

void invertRotatedFrame(HWND canvas)
{
    const HDC dc = GetDC(canvas);
    const int saved = SaveDC(dc);
    SetROP2(dc, R2_NOT);
    SelectObject(dc, GetStockObject(WHITE_PEN));
    Polyline(dc, rotatedFrame, 5);
    RestoreDC(dc, saved);
    ReleaseDC(canvas, dc);
}

void layRotatedFrame()
{
    const PixelRect a = pixelRectOf(session->referenceRectA);
    const PixelPoint corners[5] = {
        {a.left, a.top}, {a.right, a.top}, {a.right, a.bottom}, {a.left, a.bottom}, {a.left, a.top}};
    const int degrees = addRotation(session->selectionRotation, trackedDegrees(rotationTrack));
    const Turn turn = turnAbout(boxOfPoints(session->referencePointsA, session->referencePointCountA), degrees % 360);
    PixelPoint turned[5];
    turnPoints(corners, 5, turn, turned);
    for (int i = 0; i < 5; ++i)
        rotatedFrame[i] = {turned[i].x, turned[i].y};
}

void beginRotation(HWND canvas, POINT at)
{
    const PointBox box = boxOfPoints(session->referencePointsA, session->referencePointCountA);
    const PixelPoint centre = hostPointOf(canvas, {(box.minX + box.maxX) / 2, (box.minY + box.maxY) / 2});
    session->rotatingSelection = 1;
    session->rotationCentre = {centre.x, centre.y};
    rotationTrack = beginAngle(centre, hostPointOf(canvas, at));
    session->rotationStartAngle = rotationTrack.first;
    layRotatedFrame();
    invertRotatedFrame(canvas);
}

void dragRotation(HWND canvas, POINT at)
{
    invertRotatedFrame(canvas);
    trackAngle(rotationTrack, hostPointOf(canvas, at));
    layRotatedFrame();
    invertRotatedFrame(canvas);
}

void endRotation(HWND canvas)
{
    invertRotatedFrame(canvas);
    session->rotatingSelection = 0;
    session->rotationDegrees = trackedDegrees(rotationTrack);
    rotateSelectionBy(session->rotationDegrees);
}

}  // namespace

void beginTracking(HWND canvas, POINT at, int hit)
{
    if (hit == HIT_ROTATE) {
        beginRotation(canvas, at);
    } else {
        beginBand(canvas, at, hit);
    }
}

void trackPointer(HWND canvas, POINT at)
{
    if (session->rotatingSelection) {
        dragRotation(canvas, at);
    } else if (session->trackingSelection) {
        dragBand(canvas, at);
    }
}

void endTracking(HWND canvas, POINT)
{
    if (session->rotatingSelection) {
        endRotation(canvas);
    } else if (session->trackingSelection) {
        endBand(canvas);
    }
    session->trackingSelection = 0;
    session->selectionHitCode = 0;
}

bool trackingRuns()
{
    return session->rotatingSelection || session->trackingSelection;
}
