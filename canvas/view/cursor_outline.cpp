#include "canvas/view/cursor_outline.h"

#include "canvas/view/canvas_coordinates.h"
#include "image/bitmap_display.h"
#include "session/ground/session_record.h"
#include "tools/brush/brush_mask.h"
#include "tools/brush/brush_preview.h"

namespace {

// A memory device context with a bitmap selected into it; closed by closeMemory.
struct MemoryPicture {
    HDC dc;
    HGDIOBJ oldBitmap;
};

MemoryPicture openMemory(HDC like, HBITMAP bitmap)
{
    MemoryPicture memory = {bitmap ? CreateCompatibleDC(like) : nullptr, nullptr};
    if (memory.dc) memory.oldBitmap = SelectObject(memory.dc, bitmap);
    return memory;
}

void closeMemory(const MemoryPicture& memory)
{
    if (!memory.dc) return;
    SelectObject(memory.dc, memory.oldBitmap);
    DeleteDC(memory.dc);
}

void dropBitmap(HBITMAP& bitmap)
{
    if (bitmap) DeleteObject(bitmap);
    bitmap = nullptr;
}

// The size that the current brush has on the screen, at least one pixel.
SIZE brushSizeOnScreen()
{
    const RECT brush = {0, 0, (LONG)session->brushWidth, (LONG)session->brushHeight};
    const RECT device = deviceRectOf(session->canvasWindow, brush);
    return {device.right > 1 ? device.right : 1, device.bottom > 1 ? device.bottom : 1};
}

// The size of a bitmap that was made earlier, for a brush or scale that may have changed since.
SIZE sizeOf(HBITMAP bitmap)
{
    BITMAP info = {};
    GetObjectA(bitmap, sizeof info, &info);
    return {info.bmWidth, info.bmHeight};
}

bool visible()
{
    return session->overlayHideCount > 0 && session->overlayEnabled;
}

// Where the picture's corner lies when it is centred on the pointer, host dialog client coordinates.
POINT cornerAtPointer(SIZE size)
{
    const POINT pointer = pointerIn(session->hostDialog);
    return {pointer.x - size.cx / 2, pointer.y - size.cy / 2};
}

void createPicture(HWND canvas)
{
    const SIZE size = brushSizeOnScreen();
    const RECT whole = {0, 0, size.cx, size.cy};
    const HDC canvasDC = GetDC(canvas);
    session->outlineBitmap = CreateCompatibleBitmap(canvasDC, size.cx, size.cy);
    const MemoryPicture memory = openMemory(canvasDC, session->outlineBitmap);
    if (memory.dc) {
        if (session->currentTool == TOOL_STAMP && session->maskCache) {
            drawBitmap(memory.dc, session->maskCache, &whole, SRCCOPY);
        } else {
            drawBrushPreview(memory.dc, whole, size.cx, size.cy, 0);
        }
    }
    closeMemory(memory);
    ReleaseDC(canvas, canvasDC);
}

void restoreSaveUnder()
{
    if (!session->saveUnderBitmap) return;
    const SIZE size = sizeOf(session->saveUnderBitmap);
    const HDC dc = GetDC(session->hostDialog);
    const MemoryPicture saved = openMemory(dc, session->saveUnderBitmap);
    if (saved.dc) {
        BitBlt(dc, session->outlinePos.x, session->outlinePos.y, size.cx, size.cy, saved.dc, 0, 0, SRCCOPY);
    }
    closeMemory(saved);
    ReleaseDC(session->hostDialog, dc);
}

void takeSaveUnder()
{
    const SIZE size = sizeOf(session->outlineBitmap);
    session->outlinePos = cornerAtPointer(size);
    const HDC dc = GetDC(session->hostDialog);
    if (!session->saveUnderBitmap) session->saveUnderBitmap = CreateCompatibleBitmap(dc, size.cx, size.cy);
    const MemoryPicture saved = openMemory(dc, session->saveUnderBitmap);
    if (saved.dc) {
        BitBlt(saved.dc, 0, 0, size.cx, size.cy, dc, session->outlinePos.x, session->outlinePos.y, SRCCOPY);
    }
    closeMemory(saved);
    ReleaseDC(session->hostDialog, dc);
}

// Copies the picture; its pixels in the key colour stay transparent.
void drawPictureOn(HDC target, POINT at)
{
    const SIZE size = sizeOf(session->outlineBitmap);
    const MemoryPicture picture = openMemory(target, session->outlineBitmap);
    if (picture.dc) {
        GdiTransparentBlt(target, at.x, at.y, size.cx, size.cy, picture.dc, 0, 0, size.cx, size.cy,
                          session->previewBackground);
    }
    closeMemory(picture);
}

void drawPicture()
{
    const HDC dc = GetDC(session->hostDialog);
    drawPictureOn(dc, session->outlinePos);
    ReleaseDC(session->hostDialog, dc);
}

// Old and new place overlap: everything is composed off screen and shown with one copy.
void moveOverlapping(const RECT& from, const RECT& to, SIZE size)
{
    RECT all;
    UnionRect(&all, &from, &to);
    const int width = all.right - all.left, height = all.bottom - all.top;
    const HDC dc = GetDC(session->hostDialog);
    const HBITMAP workBitmap = CreateCompatibleBitmap(dc, width, height);
    const MemoryPicture work = openMemory(dc, workBitmap);
    const MemoryPicture saved = openMemory(dc, session->saveUnderBitmap);
    if (work.dc && saved.dc) {
        session->outlinePos = {to.left, to.top};
        BitBlt(work.dc, 0, 0, width, height, dc, all.left, all.top, SRCCOPY);
        BitBlt(work.dc, from.left - all.left, from.top - all.top, size.cx, size.cy, saved.dc, 0, 0, SRCCOPY);
        BitBlt(saved.dc, 0, 0, size.cx, size.cy, work.dc, to.left - all.left, to.top - all.top, SRCCOPY);
        drawPictureOn(work.dc, {to.left - all.left, to.top - all.top});
        BitBlt(dc, all.left, all.top, width, height, work.dc, 0, 0, SRCCOPY);
    }
    closeMemory(saved);
    closeMemory(work);
    if (workBitmap) DeleteObject(workBitmap);
    ReleaseDC(session->hostDialog, dc);
}

RECT rectAt(POINT corner, SIZE size)
{
    return {corner.x, corner.y, corner.x + size.cx, corner.y + size.cy};
}

}  // namespace

void rebuildOutline(HWND canvas, int dropBrushCache)
{
    if (dropBrushCache && session->maskCache) {
        GlobalFree(session->maskCache);
        session->maskCache = nullptr;
    }
    buildBrushMask((int)session->brushWidth, (int)session->brushHeight);
    if (session->overlayHideCount > 0) restoreSaveUnder();
    dropBitmap(session->saveUnderBitmap);
    dropBitmap(session->outlineBitmap);
    createPicture(canvas);
    if (visible()) takeSaveUnder();
}

void hideOutline(HWND)
{
    --session->overlayHideCount;
    restoreSaveUnder();
    dropBitmap(session->saveUnderBitmap);
}

void showOutline(HWND)
{
    if (session->overlayHideCount < 1) ++session->overlayHideCount;
    if (!visible()) return;
    restoreSaveUnder();  // shown already: its own picture must not get into the new save-under
    takeSaveUnder();
    if (session->mouseInside) drawPicture();
}

void trackOutline(HWND)
{
    if (!visible()) return;
    const SIZE size = sizeOf(session->outlineBitmap);
    const RECT from = rectAt(session->outlinePos, size);
    const RECT to = rectAt(cornerAtPointer(size), size);
    RECT overlap;
    if (session->saveUnderBitmap && IntersectRect(&overlap, &from, &to)) {
        moveOverlapping(from, to, size);
    } else {
        restoreSaveUnder();
        takeSaveUnder();
        drawPicture();
    }
}

void freeOutline()
{
    dropBitmap(session->saveUnderBitmap);
    dropBitmap(session->outlineBitmap);
    session->overlayHideCount = 0;
    session->overlayEnabled = 0;
}
