#include "canvas/view/canvas_coordinates.h"

#include <cstdint>

#include "image/packed_bitmap.h"
#include "session/ground/window_props.h"

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

static RECT coveringRect(const RECT& rect, SIZE from, SIZE to)
{
    if (from.cx < 1 || from.cy < 1) return {0, 0, 0, 0};
    return {scaledDown(rect.left, from.cx, to.cx), scaledDown(rect.top, from.cy, to.cy),
            scaledUp(rect.right, from.cx, to.cx), scaledUp(rect.bottom, from.cy, to.cy)};
}

RECT coveringImageRect(const RECT& device, SIZE client, SIZE image)
{
    return coveringRect(device, client, image);
}

RECT coveringDeviceRect(const RECT& image, SIZE imageSize, SIZE client)
{
    return coveringRect(image, imageSize, client);
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
    RECT client;
    int width, height;
    GetClientRect(canvas, &client);
    if (!lockBitmapInfo(editedImage(), &width, &height, nullptr)) return;
    RECT device = coveringDeviceRect(image, {width, height}, {client.right, client.bottom});
    InflateRect(&device, margin, margin);
    InvalidateRect(canvas, &device, FALSE);
}
