#include "canvas/view/canvas_coordinates.h"

#include <windowsx.h>

#include <algorithm>

#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

static PixelRect pixelRectFrom(const RECT& rect)
{
    return {(int)rect.left, (int)rect.top, (int)rect.right, (int)rect.bottom};
}

static RECT rectFrom(const PixelRect& rect)
{
    return {rect.left, rect.top, rect.right, rect.bottom};
}

POINT imagePointOf(HWND, POINT client)
{
    const PixelPoint point = imagePointAt(sessionExtras.canvas.view, {(int)client.x, (int)client.y});
    return {point.x, point.y};
}

RECT deviceRectOf(HWND, const RECT& image)
{
    return rectFrom(deviceRectAt(sessionExtras.canvas.view, pixelRectFrom(image)));
}

static CanvasView fittedViewOf(SIZE client, SIZE image)
{
    return {{(int)client.cx, (int)client.cy}, {(int)image.cx, (int)image.cy}, 0, {0, 0}};
}

RECT coveringImageRect(const RECT& device, SIZE client, SIZE image)
{
    return rectFrom(imageCover(fittedViewOf(client, image), pixelRectFrom(device)));
}

RECT coveringDeviceRect(const RECT& image, SIZE imageSize, SIZE client)
{
    return rectFrom(deviceCover(fittedViewOf(client, imageSize), pixelRectFrom(image)));
}

POINT pointerOnScreen()
{
    POINT at;
    if (GetCursorPos(&at)) return at;
    const DWORD place = GetMessagePos();
    return {GET_X_LPARAM(place), GET_Y_LPARAM(place)};
}

POINT pointerIn(HWND window)
{
    POINT at = pointerOnScreen();
    MapWindowPoints(nullptr, window, &at, 1);
    return at;
}

static bool isEmpty(const PixelRect& rect)
{
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

static void noteChanged(const PixelRect& rect)
{
    PixelRect& all = sessionExtras.canvas.changedImage;
    if (isEmpty(rect)) return;
    all = isEmpty(all) ? rect
                       : PixelRect{std::min(all.left, rect.left), std::min(all.top, rect.top),
                                   std::max(all.right, rect.right), std::max(all.bottom, rect.bottom)};
}

PixelRect takeChangedImageRect()
{
    const PixelRect changed = sessionExtras.canvas.changedImage;
    sessionExtras.canvas.changedImage = {};
    return changed;
}

void noteWholeImageChanged()
{
    noteChanged({0, 0, sessionExtras.canvas.view.image.width, sessionExtras.canvas.view.image.height});
}

void invalidateImageRect(HWND canvas, const RECT& image, int margin)
{
    noteChanged(pixelRectFrom(image));
    RECT device = rectFrom(deviceCover(sessionExtras.canvas.view, pixelRectFrom(image)));
    InflateRect(&device, margin, margin);
    InvalidateRect(canvas, &device, FALSE);
    if (!IsRectEmpty(&sessionExtras.canvas.map.place) && !session->pressActive)
        InvalidateRect(canvas, &sessionExtras.canvas.map.place, FALSE);
}
