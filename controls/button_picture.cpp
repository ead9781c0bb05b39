#include "controls/button_picture.h"

#include <stdint.h>

#include "controls/picture_pixels.h"

constexpr COLORREF TRANSPARENT_COLOUR = 0x00C0C0C0, RIM_COLOUR = 0x00F0F0F0;
constexpr int LARGEST_SIDE = 4096;

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

// Only the pixels of a bitmap made from a file surely hold what was stored in their top byte.
static bool bringsAlpha(HBITMAP picture, const uint32_t* pixels, size_t count)
{
    DIBSECTION section;
    return GetObjectW(picture, sizeof section, &section) == sizeof section && section.dsBm.bmBitsPixel == 32 &&
           hasAlpha(pixels, count);
}

static bool facesAreDark()
{
    const COLORREF face = GetSysColor(COLOR_BTNFACE);
    return GetRValue(face) * 77 + GetGValue(face) * 150 + GetBValue(face) * 29 < 128 * 256;
}

// The picture's pixels as they are shown, still at their own size. `workspace` has room for them, too.
static bool preparePixels(HDC dc, HBITMAP picture, PictureSize size, bool greyed, uint32_t* pixels, uint32_t* workspace)
{
    const size_t count = (size_t)size.width * size.height;
    const bool dark = facesAreDark();
    uint32_t* own = dark ? workspace : pixels;
    if (!readPixels(dc, picture, size, own)) return false;
    if (!bringsAlpha(picture, own, count)) keyPixels(own, count, TRANSPARENT_COLOUR);
    if (dark) rimPixels(own, pixels, size.width, size.height, RIM_COLOUR);
    if (greyed) greyPixels(pixels, count);
    return true;
}

static PictureSize sizeOf(const RECT& rect)
{
    return {(int)(rect.right - rect.left), (int)(rect.bottom - rect.top)};
}

void drawPicture(HDC dc, const RECT& client, const RECT& room, HBITMAP picture, bool greyed)
{
    BITMAP description;
    if (!GetObjectW(picture, sizeof description, &description)) return;
    const PictureSize from = {description.bmWidth, description.bmHeight};
    if (from.width < 1 || from.height < 1 || from.width > LARGEST_SIDE || from.height > LARGEST_SIDE) return;
    const PictureSize to = fittedSize(from, sizeOf(client), sizeOf(room));
    if (to.width > LARGEST_SIDE || to.height > LARGEST_SIDE) return;

    const size_t count = (size_t)from.width * from.height;
    uint32_t* source = (uint32_t*)HeapAlloc(GetProcessHeap(), 0, 2 * count * sizeof *source);
    void* bits = nullptr;
    const BITMAPINFO info = pixelFormat(to.width, to.height);
    HBITMAP shown = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (source && shown && preparePixels(dc, picture, from, greyed, source, source + count)) {
        scalePixels(source, from.width, from.height, (uint32_t*)bits, to.width, to.height);
        const POINT at = {(room.left + room.right - to.width) / 2, (room.top + room.bottom - to.height) / 2};
        blendPixels(dc, at, to, shown);
    }
    if (shown) DeleteObject(shown);
    if (source) HeapFree(GetProcessHeap(), 0, source);
}
