#include "image/bitmap_display.h"

#include "image/bitmap_block.h"
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
    BitmapBlock block;
    if (!destination || !lockBlock(image, &block)) return;
    if (isDrawable(block)) {
        const int oldMode = SetStretchBltMode(dc, COLORONCOLOR);
        StretchDIBits(dc, destination->left, destination->top, destination->right - destination->left,
                      destination->bottom - destination->top, 0, 0, block.width, block.height,
                      (const BYTE*)block.header + block.header->biSize, (const BITMAPINFO*)block.header, DIB_RGB_COLORS,
                      rop);
        if (oldMode) SetStretchBltMode(dc, oldMode);
    }
    unlockBlock(block);
}

static bool isWholeImage(HGLOBAL image, const RECT& rect)
{
    int width, height;
    DWORD bitCount;
    return rect.left == 0 && rect.top == 0 && lockBitmapInfo(image, &width, &height, &bitCount) &&
           rect.right == width && rect.bottom == height && bitCount == 24;
}

// The rectangle's pixels, black where it leaves the image, stretched over the whole of the memory DC.
static void drawCut(HDC memory, HGLOBAL image, const RECT& rect, int width, int height)
{
    const RECT whole = {0, 0, width, height};
    // A cut of everything would be the image again: a full repaint of a large photo needs no copy of it.
    if (isWholeImage(image, rect)) {
        drawBitmap(memory, image, &whole, SRCCOPY);
        return;
    }
    if ((int64_t)rect.right - rect.left > INT32_MAX || (int64_t)rect.bottom - rect.top > INT32_MAX) return;
    HGLOBAL cut = cutRect(image, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
    if (!cut) return;
    drawBitmap(memory, cut, &whole, SRCCOPY);
    GlobalFree(cut);
}

// Gives the memory DC, whose corner stands for `corner` on the canvas, the canvas's mapping.
static void mapLikeCanvas(HDC memory, HDC canvas, POINT corner)
{
    SIZE window, viewport;
    POINT windowOrigin, viewportOrigin;
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

static void paintThroughMemory(HDC target, HDC canvas, HGLOBAL image, const RECT& rect, const RECT& device,
                               OverlayPainter overlay)
{
    const LONG width = device.right - device.left;
    const LONG height = device.bottom - device.top;
    HDC memory = CreateCompatibleDC(target);
    HBITMAP bitmap = width > 0 && height > 0 ? CreateCompatibleBitmap(target, width, height) : nullptr;
    if (memory && bitmap) {
        HGDIOBJ oldBitmap = SelectObject(memory, bitmap);
        drawCut(memory, image, rect, width, height);
        if (overlay) drawOverlay(memory, canvas, device, overlay);
        StretchBlt(target, device.left, device.top, width, height, memory, 0, 0, width, height, SRCCOPY);
        SelectObject(memory, oldBitmap);
    }
    if (bitmap) DeleteObject(bitmap);
    if (memory) DeleteDC(memory);
}

void paintImageRect(HWND hostDialog, HDC canvasPaintDC, HGLOBAL image, const RECT* rect, OverlayPainter overlay)
{
    BitmapBlock block;
    if (!rect || !lockBlock(image, &block)) return;
    const int oldMode = SetStretchBltMode(canvasPaintDC, COLORONCOLOR);
    HDC target = GetDC(hostDialog);
    if (target) {
        RECT device = *rect;
        LPtoDP(canvasPaintDC, (POINT*)&device, 2);
        paintThroughMemory(target, canvasPaintDC, image, *rect, device, overlay);
        ReleaseDC(hostDialog, target);
    }
    if (oldMode) SetStretchBltMode(canvasPaintDC, oldMode);
    unlockBlock(block);
}
