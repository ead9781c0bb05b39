#include "tests/session/screen_part.h"

#include <algorithm>
#include <string>

reference::StoredPicture screenPartNow(const RECT& part)
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

reference::StoredPicture screenPart(const RECT& part)
{
    letScreenFollow();
    return screenPartNow(part);
}

reference::StoredPicture shownBy(HWND window)
{
    RECT client;
    GetClientRect(window, &client);
    MapWindowPoints(window, nullptr, (POINT*)&client, 2);
    return screenPart(client);
}

// Where two pictures of one size differ, in words.
static std::string placeOfDifferences(const reference::StoredPicture& one, const reference::StoredPicture& other)
{
    RECT box = {one.width, one.height, -1, -1};
    int count = 0;
    for (int y = 0; y < one.height; ++y) {
        const size_t row = (size_t)(one.height - 1 - y) * (size_t)reference::strideOf(one.width);
        for (int x = 0; x < one.width; ++x) {
            if (std::equal(&one.bytes[row + (size_t)x * 3], &one.bytes[row + (size_t)x * 3] + 3,
                           &other.bytes[row + (size_t)x * 3]))
                continue;
            box = {std::min<LONG>(box.left, x), std::min<LONG>(box.top, y), std::max<LONG>(box.right, x),
                   std::max<LONG>(box.bottom, y)};
            ++count;
        }
    }
    return std::to_string(count) + " pixels from " + std::to_string(box.left) + ", " + std::to_string(box.top) +
           " to " + std::to_string(box.right) + ", " + std::to_string(box.bottom);
}

testing::AssertionResult showsWhatAFullRepaintShows(Host* host)
{
    const reference::StoredPicture shown = shownBy(host->canvas);
    runOnHost(host, [&] {
        InvalidateRect(host->canvas, nullptr, FALSE);
        UpdateWindow(host->canvas);
    });
    settle(host);
    const reference::StoredPicture repainted = shownBy(host->canvas);
    if (shown.bytes == repainted.bytes) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "a repaint changes " << placeOfDifferences(shown, repainted);
}
