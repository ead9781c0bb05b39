#include "canvas/view_change.h"

#include "canvas/overview_map.h"
#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/cursor_outline.h"
#include "canvas/zoom_title.h"
#include "selection/selection_view.h"
#include "session/ground/session_extras.h"
#include "text/text_caret.h"

static bool sameView(const CanvasView& a, const CanvasView& b)
{
    return a.zoomStep == b.zoomStep && a.centre.x == b.centre.x && a.centre.y == b.centre.y &&
           a.client.width == b.client.width && a.client.height == b.client.height && a.image.width == b.image.width &&
           a.image.height == b.image.height;
}

static bool setScale(HDC dc, const CanvasView& view)
{
    if (isZoomed(view)) return SetMapMode(dc, MM_TEXT) != 0;
    return SetMapMode(dc, MM_ANISOTROPIC) && SetWindowExtEx(dc, view.image.width, view.image.height, nullptr) &&
           SetViewportExtEx(dc, view.client.width, view.client.height, nullptr);
}

void mapDeviceContext(HWND canvas)
{
    const HDC dc = GetDC(canvas);
    sessionExtras.canvas.mapped = dc && setScale(dc, sessionExtras.canvas.view) && SetWindowOrgEx(dc, 0, 0, nullptr) &&
                                  SetViewportOrgEx(dc, 0, 0, nullptr);
    if (dc) ReleaseDC(canvas, dc);
}

void followView(HWND canvas, const CanvasView& before)
{
    mapDeviceContext(canvas);
    if (!isZoomed(before) && !isZoomed(sessionExtras.canvas.view)) return;  // fitted, nothing follows but the mapping
    followViewWithSelection(before);
    placeCaretForView(canvas);
    placeOverviewMap();
    showZoomInTitle();
}

void showView(HWND canvas, const CanvasView& view)
{
    if (sameView(view, sessionExtras.canvas.view)) return;
    const CanvasView before = sessionExtras.canvas.view;
    sessionExtras.canvas.view = view;
    followView(canvas, before);
    if (view.zoomStep != before.zoomStep) rebuildOutline(canvas, 0);
    InvalidateRect(canvas, nullptr, FALSE);
    UpdateWindow(canvas);
}
