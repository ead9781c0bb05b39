#include "selection/selection_tracking.h"

#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/cursor_outline.h"
#include "selection/selection_operations.h"
#include "resources/resource_ids.h"
#include "selection/selection_frame.h"
#include "selection/tracking_picture.h"
#include "selection/geometry/rubber_band.h"
#include "selection/geometry/selection_transform.h"
#include "selection/geometry/turn_angle.h"
#include "session/ground/module_state.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

static PixelPoint hostPointOf(HWND canvas, POINT at)
{
    RECT device = deviceRectOf(canvas, {at.x, at.y, at.x, at.y});
    MapWindowPoints(canvas, session->hostDialog, (POINT*)&device, 1);
    return {(int)device.left, (int)device.top};
}

static RECT hostRectOf(HWND canvas, const RECT& rect)
{
    RECT device = deviceRectOf(canvas, rect);
    MapWindowPoints(canvas, session->hostDialog, (POINT*)&device, 2);
    return device;
}

static RECT imageRectOf(HWND canvas, const RECT& hostRect)
{
    RECT rect = hostRect;
    MapWindowPoints(session->hostDialog, canvas, (POINT*)&rect, 2);
    const POINT corner = imagePointOf(canvas, {rect.left, rect.top});
    const POINT opposite = imagePointOf(canvas, {rect.right, rect.bottom});
    return {corner.x, corner.y, opposite.x, opposite.y};
}

// ---- rubber band

static void beginBand(HWND canvas, POINT at, int hit)
{
    hideOutline(canvas);
    session->trackRect = hostRectOf(canvas, session->selectionRect);
    sessionExtras.selection.bandStart = session->trackRect;
    sessionExtras.selection.pressed = hostPointOf(canvas, at);
    const PixelPoint grab = bandGrabOffset(pixelRectOf(session->trackRect), hit, sessionExtras.selection.pressed);
    session->trackGrabOffset = {grab.x, grab.y};
    session->trackingSelection = 1;
    invertBand();
    if (hit == HIT_INSIDE) SetCursor(LoadCursorA(moduleInstance, MAKEINTRESOURCEA(CURSOR_DRAG_DIALOG)));
}

static bool bandIsAtStart()
{
    return EqualRect(&session->trackRect, &sessionExtras.selection.bandStart) != FALSE;
}

// Windows reports moves to where the pointer is already; a band that hangs over the border stays there then.
static bool isStillPressed(PixelPoint pointer)
{
    return pointer.x == sessionExtras.selection.pressed.x && pointer.y == sessionExtras.selection.pressed.y &&
           bandIsAtStart();
}

// What a band is kept in: all of the image, whether it is seen or not.
static RECT roomForBand(HWND canvas)
{
    RECT client = {};
    GetClientRect(session->hostDialog, &client);
    return isZoomed(sessionExtras.canvas.view) ? hostRectOf(canvas, {0, 0, sessionExtras.canvas.view.image.width,
                                                                     sessionExtras.canvas.view.image.height})
                                               : client;
}

static void dragBand(HWND canvas, POINT at)
{
    const PixelPoint pointer = hostPointOf(canvas, at);
    if (isStillPressed(pointer)) return;
    const RECT client = roomForBand(canvas);
    const FrameMetrics metrics = frameMetrics();
    const PixelRect band = pixelRectOf(session->trackRect);
    const PixelPoint grab = {(int)session->trackGrabOffset.x, (int)session->trackGrabOffset.y};
    const int hit = (int)session->selectionHitCode;
    // A frame is never squeezed below the room that its buttons need.
    const BandResize resize = {hit, (metrics.cxFrame + 1) * 6 + 3, metrics.cyFrame * 4 + 3};
    const PixelRect dragged = hit == HIT_INSIDE ? moveBand(band, grab, pointer, pixelRectOf(client), metrics)
                                                : resizeBand(band, resize, grab, pointer, pixelRectOf(client), metrics);
    invertBand();
    session->trackRect = rectOf(dragged);
    invertBand();
}

// The selection's rectangle where the band is. Zoomed out a band's side stands for several image pixels: only by
// how far it went tells which, and a side that was not dragged stays.
static RECT rectOfBand(HWND canvas)
{
    RECT rect = imageRectOf(canvas, session->trackRect);
    if (!isZoomed(sessionExtras.canvas.view)) return rect;
    const RECT start = imageRectOf(canvas, sessionExtras.selection.bandStart), &old = session->selectionRect;
    rect = {old.left + rect.left - start.left, old.top + rect.top - start.top, old.right + rect.right - start.right,
            old.bottom + rect.bottom - start.bottom};
    return rect;
}

static void endBand(HWND canvas)
{
    invertBand();
    session->trackingSelection = 0;
    SetCursor(LoadCursorA(nullptr, (LPCSTR)IDC_ARROW));
    showOutline(canvas);
    // The way to the screen and back rounds: what stays where it is must not go it.
    if (bandIsAtStart()) return;
    const RECT rect = rectOfBand(canvas);
    if (session->selectionHitCode == HIT_INSIDE) {
        moveSelectionBy(rect.left - session->selectionRect.left, rect.top - session->selectionRect.top);
    } else {
        resizeSelectionTo(rect);
    }
}

// ---- turning

static void layRotatedFrame()
{
    const PixelRect a = pixelRectOf(session->referenceRectA);
    const PixelPoint corners[5] = {
        {a.left, a.top}, {a.right, a.top}, {a.right, a.bottom}, {a.left, a.bottom}, {a.left, a.top}};
    const int degrees = addRotation(session->selectionRotation, trackedDegrees(sessionExtras.selection.angle));
    const Turn turn = turnAbout(boxOfPoints(session->referencePointsA, session->referencePointCountA), degrees % 360);
    PixelPoint turned[5];
    turnPoints(corners, 5, turn, turned);
    for (int i = 0; i < 5; ++i)
        sessionExtras.selection.rotatedFrame[i] = {turned[i].x, turned[i].y};
}

static void beginRotation(HWND canvas, POINT at)
{
    const PointBox box = boxOfPoints(session->referencePointsA, session->referencePointCountA);
    const PixelPoint centre = hostPointOf(canvas, {(box.minX + box.maxX) / 2, (box.minY + box.maxY) / 2});
    session->rotationCentre = {centre.x, centre.y};
    sessionExtras.selection.angle = beginAngle(centre, hostPointOf(canvas, at));
    session->rotationStartAngle = sessionExtras.selection.angle.first;
    layRotatedFrame();
    session->rotatingSelection = 1;
    invertRotatedFrame(canvas);
}

static void dragRotation(HWND canvas, POINT at)
{
    invertRotatedFrame(canvas);
    trackAngle(sessionExtras.selection.angle, hostPointOf(canvas, at));
    layRotatedFrame();
    invertRotatedFrame(canvas);
}

static void endRotation(HWND canvas)
{
    invertRotatedFrame(canvas);
    session->rotatingSelection = 0;
    session->rotationDegrees = trackedDegrees(sessionExtras.selection.angle);
    rotateSelectionBy(session->rotationDegrees);
}

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
