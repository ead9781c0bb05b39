#include "image/bitmap_display.h"

#include "image/bitmap_locks.h"
#include "image/packed_bitmap.h"

// GDI takes the colour table from behind the header, where the rows are: both must be inside the block.
static bool isDrawable(const BitmapBlock& block)
{
    const uint32_t headerBytes = block.header->biSize;
    return block.header->biCompression == BI_RGB && rowsFit(block, headerBytes, block.bitCount) &&
           headerBytes + colourTableBytes(block) <= block.size;
}

void drawBitmap(HDC dc, HGLOBAL image, const RECT* destination, DWORD rop)
{
    const LockedBitmap locked(image);
    const BitmapBlock& block = locked.block;
    if (!destination || !locked || !isDrawable(block)) return;
    const int oldMode = SetStretchBltMode(dc, COLORONCOLOR);
    StretchDIBits(dc, destination->left, destination->top, destination->right - destination->left,
                  destination->bottom - destination->top, 0, 0, block.width, block.height,
                  (const BYTE*)block.header + block.header->biSize, (const BITMAPINFO*)block.header, DIB_RGB_COLORS,
                  rop);
    if (oldMode) SetStretchBltMode(dc, oldMode);
}

// A bitmap of the part's rows is told to the system, in the middle of the image's: so it does not matter from which end
// a system counts the rows of a part.
void drawBitmapPart(HDC dc, HGLOBAL image, const RECT& part, const RECT& destination, DWORD rop)
{
    const LockedPixels locked(image);
    if (!locked) return;
    const int width = (int)(part.right - part.left), height = (int)(part.bottom - part.top);
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, locked.view.width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    const int oldMode = SetStretchBltMode(dc, COLORONCOLOR);
    StretchDIBits(dc, destination.left, destination.top, destination.right - destination.left,
                  destination.bottom - destination.top, part.left, 0, width, height,
                  rowOf(locked.view, (int)part.bottom - 1), &info, DIB_RGB_COLORS, rop);
    if (oldMode) SetStretchBltMode(dc, oldMode);
}

// Draws the image as the canvas shows it, black where it has no pixels; the memory DC's corner stands for
// `corner` on the canvas. It is the whole image that is stretched, and the bitmap that clips it: so a pixel of
// the screen takes the same image pixel however small the repainted part is, and no repaint leaves a seam.
static void drawImageUnder(HDC memory, HDC canvas, HGLOBAL image, POINT corner, SIZE size)
{
    PatBlt(memory, 0, 0, size.cx, size.cy, BLACKNESS);
    int width, height;
    DWORD bitCount;
    if (!lockBitmapInfo(image, &width, &height, &bitCount) || bitCount != 24) return;
    RECT whole = {0, 0, width, height};
    LPtoDP(canvas, (POINT*)&whole, 2);
    OffsetRect(&whole, -corner.x, -corner.y);
    drawBitmap(memory, image, &whole, SRCCOPY);
}

// Gives the memory DC, whose corner stands for `corner` on the canvas, the canvas's mapping.
static void mapLikeCanvas(HDC memory, HDC canvas, POINT corner)
{
    SIZE window = {}, viewport = {};
    POINT windowOrigin = {}, viewportOrigin = {};
    GetWindowExtEx(canvas, &window);
    GetViewportExtEx(canvas, &viewport);
    GetWindowOrgEx(canvas, &windowOrigin);
    GetViewportOrgEx(canvas, &viewportOrigin);
    SetMapMode(memory, GetMapMode(canvas));
    SetWindowExtEx(memory, window.cx, window.cy, nullptr);
    SetViewportExtEx(memory, viewport.cx, viewport.cy, nullptr);
    SetWindowOrgEx(memory, windowOrigin.x, windowOrigin.y, nullptr);
    SetViewportOrgEx(memory, viewportOrigin.x - corner.x, viewportOrigin.y - corner.y, nullptr);
}

static void drawOverlay(HDC memory, HDC canvas, const RECT& device, OverlayPainter overlay)
{
    const int saved = SaveDC(memory);
    mapLikeCanvas(memory, canvas, {device.left, device.top});
    overlay(memory);
    RestoreDC(memory, saved);
}

// The system stretches an image without converting all of it first when the target has the image's own format.
// Colours are the same on screens of 24 bits and more; on others a bitmap like the screen is taken.
static HBITMAP createTarget(HDC screen, LONG width, LONG height)
{
    if (width <= 0 || height <= 0) return nullptr;
    if (GetDeviceCaps(screen, BITSPIXEL) < 24) return CreateCompatibleBitmap(screen, width, height);
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    void* bits;
    return CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
}

static void paintThroughMemory(HDC target, HDC canvas, HGLOBAL image, const RECT& device, OverlayPainter overlay)
{
    const LONG width = device.right - device.left;
    const LONG height = device.bottom - device.top;
    HDC memory = CreateCompatibleDC(target);
    HBITMAP bitmap = createTarget(target, width, height);
    if (memory && bitmap) {
        HGDIOBJ oldBitmap = SelectObject(memory, bitmap);
        drawImageUnder(memory, canvas, image, {device.left, device.top}, {width, height});
        if (overlay) drawOverlay(memory, canvas, device, overlay);
        StretchBlt(target, device.left, device.top, width, height, memory, 0, 0, width, height, SRCCOPY);
        SelectObject(memory, oldBitmap);
    }
    if (bitmap) DeleteObject(bitmap);
    if (memory) DeleteDC(memory);
}

// On the canvas, and no larger than the dialog that it fills: a mapping that could not be set would ask for any size.
static RECT deviceRect(HWND hostDialog, HDC canvas, RECT rect)
{
    RECT client;
    LPtoDP(canvas, (POINT*)&rect, 2);
    if (GetClientRect(hostDialog, &client)) IntersectRect(&rect, &rect, &client);
    return rect;
}

void paintImageRect(HWND hostDialog, HDC canvasPaintDC, HGLOBAL image, const RECT* rect, OverlayPainter overlay)
{
    const LockedBitmap locked(image);
    if (!rect || !locked) return;
    const int oldMode = SetStretchBltMode(canvasPaintDC, COLORONCOLOR);
    HDC target = GetDC(hostDialog);
    if (target) {
        paintThroughMemory(target, canvasPaintDC, image, deviceRect(hostDialog, canvasPaintDC, *rect), overlay);
        ReleaseDC(hostDialog, target);
    }
    if (oldMode) SetStretchBltMode(canvasPaintDC, oldMode);
}
