#include "selection/tracking_picture.h"

#include <initializer_list>

#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/cursor_outline.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

// ---- rubber band: three nested focus rectangles

static void drawBand(HDC dc, RECT band)
{
    for (int i = 0; i < 3; ++i) {
        DrawFocusRect(dc, &band);
        InflateRect(&band, -1, -1);
    }
}

// The point of the canvas that the corner of `dc` stands for.
static POINT cornerOf(HDC dc)
{
    POINT origin = {}, canvasOrigin = {};
    GetViewportOrgEx(dc, &origin);
    const HDC canvas = GetDC(session->canvasWindow);
    GetViewportOrgEx(canvas, &canvasOrigin);
    ReleaseDC(session->canvasWindow, canvas);
    return {canvasOrigin.x - origin.x, canvasOrigin.y - origin.y};
}

// The band on another device context: pixel for pixel where it is on the host dialog's own.
static void drawBandOn(HDC dc)
{
    const POINT corner = cornerOf(dc);
    RECT band = session->trackRect;
    MapWindowPoints(session->hostDialog, session->canvasWindow, (POINT*)&band, 2);
    OffsetRect(&band, -corner.x, -corner.y);
    SetMapMode(dc, MM_TEXT);
    SetWindowOrgEx(dc, 0, 0, nullptr);
    SetViewportOrgEx(dc, 0, 0, nullptr);
    SetBrushOrgEx(dc, -corner.x, -corner.y, nullptr);  // where the dots come from a brush
    drawBand(dc, band);
}

void invertBand()
{
    const HDC dc = GetDC(session->hostDialog);
    drawBand(dc, session->trackRect);
    ReleaseDC(session->hostDialog, dc);
}

// ---- turning: the frame of the unturned state, turned, in exclusive-or

// Where an image point is drawn: in client pixels while the canvas is zoomed.
static POINT drawnPoint(POINT image)
{
    if (!isZoomed(sessionExtras.canvas.view)) return image;
    const RECT at = deviceRectOf(session->canvasWindow, {image.x, image.y, image.x, image.y});
    return {at.left, at.top};
}

static void drawRotatedFrame(HDC dc)
{
    SetROP2(dc, R2_NOT);
    SelectObject(dc, GetStockObject(WHITE_PEN));
    POINT corners[5];
    for (int i = 0; i < 5; ++i)
        corners[i] = drawnPoint(sessionExtras.selection.rotatedFrame[i]);
    Polyline(dc, corners, 5);
}

void invertRotatedFrame(HWND canvas)
{
    const HDC dc = GetDC(canvas);
    const int saved = SaveDC(dc);
    drawRotatedFrame(dc);
    RestoreDC(dc, saved);
    ReleaseDC(canvas, dc);
}

// ---- either of them

bool trackingRuns()
{
    return session->rotatingSelection || session->trackingSelection;
}

void cancelTracking(HWND canvas)
{
    if (session->rotatingSelection) {
        invertRotatedFrame(canvas);
    } else {
        invertBand();
        SetCursor(LoadCursorA(nullptr, (LPCSTR)IDC_ARROW));
        showOutline(canvas);
    }
    session->rotatingSelection = session->trackingSelection = 0;
}

void shiftTracking(POINT by)
{
    const int dx = (int)by.x, dy = (int)by.y;
    for (RECT* rect : {&session->trackRect, &sessionExtras.selection.bandStart})
        OffsetRect(rect, dx, dy);
    for (PixelPoint* point : {&sessionExtras.selection.pressed, &sessionExtras.selection.angle.centre})
        *point = {point->x + dx, point->y + dy};
    session->rotationCentre = {session->rotationCentre.x + dx, session->rotationCentre.y + dy};
}

void drawTracking(HDC dc)
{
    if (!trackingRuns()) return;
    const int saved = SaveDC(dc);
    if (session->rotatingSelection) {
        drawRotatedFrame(dc);
    } else {
        drawBandOn(dc);
    }
    RestoreDC(dc, saved);
}
