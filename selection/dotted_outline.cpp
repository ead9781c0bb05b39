#include "selection/dotted_outline.h"

#include "canvas/view/view.h"
#include "selection/geometry/outline.h"
#include "selection/geometry/screen_path.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

// Where the outline's points from one on lie on the canvas. The caller frees them.
static PixelPoint* pointsOnScreen(int first, int count)
{
    PixelPoint* const points = copyOutlinePoints(session->outlinePoints + first, count);
    if (points) devicePointsAt(sessionExtras.canvas.view, points, count);
    return points;
}

// What of the canvas is seen through a context whose units are client pixels.
static PixelRect seenThrough(HDC dc)
{
    RECT box = {0, 0, 0, 0};
    GetClipBox(dc, &box);
    return {(int)box.left - 1, (int)box.top - 1, (int)box.right + 1, (int)box.bottom + 1};
}

static void drawPieces(HDC dc, const PixelPoint* points, int count)
{
    static_assert(sizeof(PixelPoint) == sizeof(POINT), "outline points are drawn as they are");
    PathWalk walk = {points, count, seenThrough(dc), 0};
    for (PathPiece piece; nextPiece(walk, piece);)
        Polyline(dc, (const POINT*)points + piece.first, piece.end - piece.first);
}

// Points on the canvas; they are changed.
static void drawDots(HDC dc, PixelPoint* points, int count)
{
    const HPEN pen = CreatePen(PS_DOT, 0, RGB(255, 255, 255));
    if (!pen) return;
    const int saved = SaveDC(dc);
    SetMapMode(dc, MM_TEXT);  // the origins stay
    SelectObject(dc, pen);
    SetBkColor(dc, RGB(0, 0, 0));
    SetBkMode(dc, OPAQUE);
    drawPieces(dc, points, dropRepeats(points, count));
    RestoreDC(dc, saved);
    DeleteObject(pen);
}

void drawDottedOutline(HDC dc)
{
    PixelPoint* const points = pointsOnScreen(0, session->outlinePointCount);
    if (points) drawDots(dc, points, session->outlinePointCount);
    freeOutlinePoints(points);
}

// ---- what is new of an outline being drawn

// The same while the image lies on the screen as it does.
static RECT placeOfImage()
{
    const PixelRect place = deviceRectAt(sessionExtras.canvas.view, {0, 0, 4096, 4096});
    return {place.left, place.top, place.right, place.bottom};
}

// Goes along the line from the last point that is drawn; `points` are those from there, on the canvas.
static void followDots(OutlineDots& dots, const PixelPoint* points, int count)
{
    const int first = dots.end;
    for (int i = 1; i < count; ++i) {
        dots.length += pixelsBetween(points[i - 1], points[i]);
        if (dots.length % DOT_PERIOD == 0) dots.start = first + i;
    }
    dots.end = first + count - 1;
}

// False when the new points lie on the same pixel of the screen as the last one: then there is nothing to draw.
static bool advanceDots(OutlineDots& dots)
{
    const int count = session->outlinePointCount - dots.end, before = dots.length;
    PixelPoint* const points = pointsOnScreen(dots.end, count);
    if (!points) return false;
    followDots(dots, points, count);
    freeOutlinePoints(points);
    return dots.length != before;
}

static void drawDotsFrom(HDC dc, int first)
{
    const int count = session->outlinePointCount - first;
    PixelPoint* const points = pointsOnScreen(first, count);
    if (points) drawDots(dc, points, count);
    freeOutlinePoints(points);
}

void showNewDots(HWND canvas)
{
    OutlineDots& dots = sessionExtras.selection.dots;
    const RECT place = placeOfImage();
    if (!EqualRect(&place, &dots.place)) dots = {place, 0, 0, 0};
    const int first = dots.start;
    if (!advanceDots(dots)) return;
    const HDC dc = GetDC(canvas);
    drawDotsFrom(dc, first);
    ReleaseDC(canvas, dc);
}
