#include "canvas/overview_map.h"

#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/map_layout.h"
#include "image/bitmap_locks.h"
#include "image/bitmap_display.h"
#include "image/packed_bitmap.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

static OverviewMap& map = sessionExtras.canvas.map;

static RECT rectOfMap()
{
    const PixelRect rect = mapRect(sessionExtras.canvas.view, map.onLeft);
    return {rect.left, rect.top, rect.right, rect.bottom};
}

static bool fillThumbnail(const PixelRect& part)
{
    const LockedPixels image(editedImage()), thumbnail(map.thumbnail);
    if (image && thumbnail) renewThumbnail(thumbnail.view, image.view, part);
    return image && thumbnail;
}

static void freeThumbnail()
{
    if (map.thumbnail) GlobalFree(map.thumbnail);
    map.thumbnail = nullptr;
}

// One that could not be brought up to date is made again at the next painting.
static void renew(const PixelRect& part)
{
    if (!fillThumbnail(part)) freeThumbnail();
}

static void makeThumbnail(int width, int height)
{
    freeThumbnail();
    map.thumbnail = createBitmap(width, height, 24);
    takeChangedImageRect();
    renew({0, 0, sessionExtras.canvas.view.image.width, sessionExtras.canvas.view.image.height});
}

// A stroke that runs shows in the map when it has ended.
static void bringUpToDate(int width, int height)
{
    if (!map.thumbnail || bitmapWidth(map.thumbnail) != width || bitmapHeight(map.thumbnail) != height) {
        makeThumbnail(width, height);
    } else if (!session->pressActive) {
        const PixelRect changed = takeChangedImageRect();
        if (changed.left < changed.right && changed.top < changed.bottom) renew(changed);
    }
}

static void frameRect(HDC dc, RECT rect, int stockBrush)
{
    FrameRect(dc, &rect, (HBRUSH)GetStockObject(stockBrush));
}

// White inside black: visible on any image.
static void drawFrame(HDC dc, const PixelRect& inside)
{
    const PixelRect frame = mapFrame(sessionExtras.canvas.view, inside);
    RECT rect = {frame.left, frame.top, frame.right, frame.bottom};
    frameRect(dc, rect, WHITE_BRUSH);
    InflateRect(&rect, 1, 1);
    frameRect(dc, rect, BLACK_BRUSH);
}

void placeOverviewMap()
{
    map.place = isZoomed(sessionExtras.canvas.view) ? rectOfMap() : RECT{0, 0, 0, 0};
}

void drawOverviewMap(HDC dc)
{
    const PixelRect whole = mapRect(sessionExtras.canvas.view, map.onLeft), inside = mapInside(whole);
    if (whole.left >= whole.right) return;
    bringUpToDate(inside.right - inside.left, inside.bottom - inside.top);
    const RECT place = {inside.left, inside.top, inside.right, inside.bottom};
    drawBitmap(dc, map.thumbnail, &place, SRCCOPY);
    frameRect(dc, {whole.left, whole.top, whole.right, whole.bottom}, BLACK_BRUSH);
    drawFrame(dc, inside);
}

void moveMapFrom(HWND canvas, POINT pointer)
{
    const bool onLeft =
        isZoomed(sessionExtras.canvas.view) && mapGivesWay(sessionExtras.canvas.view, {(int)pointer.x, (int)pointer.y});
    if (onLeft == map.onLeft) return;
    repaintOverviewMap(canvas);
    map.onLeft = onLeft;
    placeOverviewMap();
    repaintOverviewMap(canvas);
}

void repaintOverviewMap(HWND canvas)
{
    if (!IsRectEmpty(&map.place)) InvalidateRect(canvas, &map.place, FALSE);
}

void freeOverviewMap()
{
    freeThumbnail();
    map.onLeft = false;
    SetRectEmpty(&map.place);
}
