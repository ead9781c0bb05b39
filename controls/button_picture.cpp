#include "controls/button_picture.h"

#include <stdint.h>

#include "controls/picture_pixels.h"

enum { TRANSPARENT_COLOUR = 0x00C0C0C0, LARGEST_SIDE = 4096 };

static BITMAPINFO pixelFormat(int width, int height)
{
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return info;
}

static bool readPixels(HDC dc, HBITMAP picture, PictureSize size, uint32_t* pixels)
{
    BITMAPINFO info = pixelFormat(size.width, size.height);
    return GetDIBits(dc, picture, 0, (UINT)size.height, pixels, &info, DIB_RGB_COLORS) == size.height;
}

static void blendPixels(HDC dc, POINT at, PictureSize size, HBITMAP pixels)
{
    HDC memory = CreateCompatibleDC(dc);
    if (!memory) return;
    HGDIOBJ before = SelectObject(memory, pixels);
    const BLENDFUNCTION over = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    AlphaBlend(dc, at.x, at.y, size.width, size.height, memory, 0, 0, size.width, size.height, over);
    SelectObject(memory, before);
    DeleteDC(memory);
}

void drawPicture(HDC dc, const RECT& room, HBITMAP picture, bool greyed)
{
    BITMAP description;
    if (!GetObjectW(picture, sizeof description, &description)) return;
    const PictureSize from = {description.bmWidth, description.bmHeight};
    if (from.width < 1 || from.height < 1 || from.width > LARGEST_SIDE || from.height > LARGEST_SIDE) return;
    const PictureSize to = fittedSize(from, {(int)(room.right - room.left), (int)(room.bottom - room.top)});
    if (to.width > LARGEST_SIDE || to.height > LARGEST_SIDE) return;

    const size_t count = (size_t)from.width * from.height;
    uint32_t* source = (uint32_t*)HeapAlloc(GetProcessHeap(), 0, count * sizeof *source);
    void* bits = nullptr;
    const BITMAPINFO info = pixelFormat(to.width, to.height);
    HBITMAP shown = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (source && shown && readPixels(dc, picture, from, source)) {
        keyPixels(source, count, TRANSPARENT_COLOUR);
        if (greyed) greyPixels(source, count);
        scalePixels(source, from.width, from.height, (uint32_t*)bits, to.width, to.height);
        const POINT at = {(room.left + room.right - to.width) / 2, (room.top + room.bottom - to.height) / 2};
        blendPixels(dc, at, to, shown);
    }
    if (shown) DeleteObject(shown);
    if (source) HeapFree(GetProcessHeap(), 0, source);
}
