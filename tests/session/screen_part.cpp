#include "tests/session/screen_part.h"

reference::StoredPicture screenPart(const RECT& part)
{
    const int width = part.right - part.left, height = part.bottom - part.top;
    reference::StoredPicture shown = {width, height,
                                      std::vector<uint8_t>((size_t)reference::strideOf(width) * (size_t)height)};
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 24;
    letScreenFollow();
    const HDC screen = GetDC(nullptr), copy = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    const HGDIOBJ old = SelectObject(copy, bitmap);
    BitBlt(copy, 0, 0, width, height, screen, part.left, part.top, SRCCOPY);
    SelectObject(copy, old);
    GetDIBits(screen, bitmap, 0, (UINT)height, shown.bytes.data(), (BITMAPINFO*)&header, DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(copy);
    ReleaseDC(nullptr, screen);
    return shown;
}

reference::StoredPicture shownBy(HWND window)
{
    RECT client;
    GetClientRect(window, &client);
    MapWindowPoints(window, nullptr, (POINT*)&client, 2);
    return screenPart(client);
}

bool showsWhatAFullRepaintShows(Host* host)
{
    const std::vector<uint8_t> shown = shownBy(host->canvas).bytes;
    runOnHost(host, [&] {
        InvalidateRect(host->canvas, nullptr, FALSE);
        UpdateWindow(host->canvas);
    });
    settle(host);
    return shown == shownBy(host->canvas).bytes;
}
