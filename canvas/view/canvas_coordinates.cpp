#include "canvas/view/canvas_coordinates.h"

CanvasView canvasView;

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
    const PixelPoint point = imagePointAt(canvasView, {(int)client.x, (int)client.y});
    return {point.x, point.y};
}

RECT deviceRectOf(HWND, const RECT& image)
{
    return rectFrom(deviceRectAt(canvasView, pixelRectFrom(image)));
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

POINT pointerIn(HWND window)
{
    POINT at;
    GetCursorPos(&at);
    MapWindowPoints(nullptr, window, &at, 1);
    return at;
}

void invalidateImageRect(HWND canvas, const RECT& image, int margin)
{
    RECT device = rectFrom(deviceCover(canvasView, pixelRectFrom(image)));
    InflateRect(&device, margin, margin);
    InvalidateRect(canvas, &device, FALSE);
}
