#include "canvas/zoomed_painting.h"

#include "canvas/overview_map.h"
#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/view_pixels.h"
#include "image/bitmap_locks.h"
#include "selection/selection_drawing.h"
#include "selection/selection_view.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "text/text_tool.h"

// A picture that code and the system draw into alike.
struct OffScreen {
    HDC dc;
    HBITMAP bitmap;
    HGDIOBJ oldBitmap;
    ViewPicture picture;
};

static bool openOffScreen(HDC like, const RECT& box, OffScreen& screen)
{
    const int width = (int)(box.right - box.left), height = (int)(box.bottom - box.top);
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    screen.bitmap = CreateDIBSection(like, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    screen.dc = screen.bitmap ? CreateCompatibleDC(like) : nullptr;
    screen.oldBitmap = screen.dc ? SelectObject(screen.dc, screen.bitmap) : nullptr;
    screen.picture = {{(uint8_t*)bits, (ptrdiff_t)rowStride(width, 24), width, height}, {(int)box.left, (int)box.top}};
    return screen.oldBitmap != nullptr;
}

static void closeOffScreen(const OffScreen& screen)
{
    if (screen.oldBitmap) SelectObject(screen.dc, screen.oldBitmap);
    if (screen.dc) DeleteDC(screen.dc);
    if (screen.bitmap) DeleteObject(screen.bitmap);
}

// A new section is black, and stays so where the image has no pixels to show.
static void showImage(const ViewPicture& picture)
{
    const LockedPixels image(editedImage());
    if (image) showPixels(picture, sessionExtras.canvas.view, image.view, {0, 0});
}

static void drawOverlays(const OffScreen& screen)
{
    SetViewportOrgEx(screen.dc, -screen.picture.corner.x, -screen.picture.corner.y, nullptr);
    drawSelection(screen.dc);
    drawOverviewMap(screen.dc);
    SetViewportOrgEx(screen.dc, 0, 0, nullptr);
}

void paintZoomed(HDC dc, const RECT& box)
{
    OffScreen screen = {};
    if (openOffScreen(dc, box, screen)) {
        showImage(screen.picture);
        showFloatingPixels(screen.picture);
        showTextLine(session->canvasWindow, screen.picture);
        drawOverlays(screen);
        BitBlt(dc, box.left, box.top, box.right - box.left, box.bottom - box.top, screen.dc, 0, 0, SRCCOPY);
    }
    closeOffScreen(screen);
}
