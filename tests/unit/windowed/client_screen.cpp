#include "tests/unit/windowed/client_screen.h"

std::vector<uint32_t> clientScreen(HWND window)
{
    RECT client;
    GetClientRect(window, &client);
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, client.right, -client.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    // A device context of its own: the canvas's has the canvas's mapping.
    const HWND parent = GetParent(window);
    const HDC dc = GetDC(parent ? parent : window), memory = CreateCompatibleDC(dc);
    const HBITMAP copy = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ old = SelectObject(memory, copy);
    POINT corner = {0, 0};
    if (parent) MapWindowPoints(window, parent, &corner, 1);
    BitBlt(memory, 0, 0, client.right, client.bottom, dc, corner.x, corner.y, SRCCOPY);
    GdiFlush();
    const uint32_t* pixels = (const uint32_t*)bits;
    std::vector<uint32_t> shown(pixels, pixels + (size_t)client.right * (size_t)client.bottom);
    for (uint32_t& pixel : shown)
        pixel &= 0xFFFFFF;  // the fourth byte shows nothing; what inverts on the screen inverts it too
    SelectObject(memory, old);
    DeleteObject(copy);
    DeleteDC(memory);
    ReleaseDC(parent ? parent : window, dc);
    return shown;
}

bool showsWhatARepaintShows(HWND window)
{
    UpdateWindow(window);
    const std::vector<uint32_t> shown = clientScreen(window);
    InvalidateRect(window, nullptr, FALSE);
    UpdateWindow(window);
    return shown == clientScreen(window);
}
