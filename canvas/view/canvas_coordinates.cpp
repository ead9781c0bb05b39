#include "canvas/view/canvas_coordinates.h"

#include <cstdint>

POINT imagePointOf(HWND canvas, POINT client)
{
    const HDC dc = GetDC(canvas);
    DPtoLP(dc, &client, 1);
    ReleaseDC(canvas, dc);
    return client;
}

RECT deviceRectOf(HWND canvas, const RECT& image)
{
    RECT device = image;
    const HDC dc = GetDC(canvas);
    LPtoDP(dc, (POINT*)&device, 2);
    ReleaseDC(canvas, dc);
    return device;
}

static LONG scaledDown(LONG value, LONG from, LONG to)
{
    const int64_t product = (int64_t)value * to;
    return (LONG)(product >= 0 ? product / from : -((-product + from - 1) / from));
}

static LONG scaledUp(LONG value, LONG from, LONG to)
{
    return -scaledDown(-value, from, to);
}

RECT coveringImageRect(const RECT& device, SIZE client, SIZE image)
{
    if (client.cx < 1 || client.cy < 1) return {0, 0, 0, 0};
    return {scaledDown(device.left, client.cx, image.cx), scaledDown(device.top, client.cy, image.cy),
            scaledUp(device.right, client.cx, image.cx), scaledUp(device.bottom, client.cy, image.cy)};
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
    RECT device = deviceRectOf(canvas, image);
    InflateRect(&device, margin, margin);
    InvalidateRect(canvas, &device, FALSE);
}
