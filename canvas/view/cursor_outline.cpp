#include "canvas/view/cursor_outline.h"

#include <algorithm>

#include "canvas/view/canvas_coordinates.h"
#include "image/bitmap_display.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "tools/brush/brush_mask.h"
#include "tools/brush/brush_preview.h"
#include "tools/brush/picked_patch.h"

// A memory device context with a bitmap selected into it; closed by closeMemory.
struct MemoryPicture {
    HDC dc;
    HGDIOBJ oldBitmap;
};

static MemoryPicture openMemory(HDC like, HBITMAP bitmap)
{
    MemoryPicture memory = {bitmap ? CreateCompatibleDC(like) : nullptr, nullptr};
    if (memory.dc) memory.oldBitmap = SelectObject(memory.dc, bitmap);
    return memory;
}

static void closeMemory(const MemoryPicture& memory)
{
    if (!memory.dc) return;
    SelectObject(memory.dc, memory.oldBitmap);
    DeleteDC(memory.dc);
}

static void dropBitmap(HBITMAP& bitmap)
{
    if (bitmap) DeleteObject(bitmap);
    bitmap = nullptr;
}

// The size that the current brush has on the screen, at least one pixel.
static SIZE brushSizeOnScreen()
{
    const RECT brush = {0, 0, (LONG)session->brushWidth, (LONG)session->brushHeight};
    const RECT device = deviceRectOf(session->canvasWindow, brush);
    return {std::max(device.right - device.left, 1L), std::max(device.bottom - device.top, 1L)};
}

static bool visible()
{
    return session->overlayHideCount > 0 && session->overlayEnabled;
}

// Where the whole picture's corner lies when it is centred on the pointer, host dialog client coordinates.
static POINT cornerAtPointer()
{
    const POINT pointer = pointerIn(session->hostDialog);
    const SIZE whole = sessionExtras.outline.whole;
    return {pointer.x - whole.cx / 2, pointer.y - whole.cy / 2};
}

static LONG partOffset(LONG corner, LONG whole, LONG part)
{
    return std::min(std::max(-corner, 0L), whole - part);
}

// Which part of the picture is in the client area, or next to it, when the picture's corner lies there.
static POINT offsetAt(POINT corner)
{
    const OutlinePicture& picture = sessionExtras.outline;
    return {partOffset(corner.x, picture.whole.cx, picture.part.cx),
            partOffset(corner.y, picture.whole.cy, picture.part.cy)};
}

// Where that part lies, host dialog client coordinates.
static RECT partAt(POINT corner)
{
    const SIZE part = sessionExtras.outline.part;
    const POINT offset = offsetAt(corner);
    const POINT at = {corner.x + offset.x, corner.y + offset.y};
    return {at.x, at.y, at.x + part.cx, at.y + part.cy};
}

static void drawPart(HDC memory, POINT offset)
{
    OutlinePicture& picture = sessionExtras.outline;
    const RECT whole = {-offset.x, -offset.y, picture.whole.cx - offset.x, picture.whole.cy - offset.y};
    const Tool* const tool = findTool(session->currentTool);
    if (tool && tool->showsPatch && session->maskCache) {
        drawBitmap(memory, session->maskCache, &whole, SRCCOPY);
    } else {
        drawBrushPreview(memory, whole, picture.whole.cx, picture.whole.cy, 0);
    }
    picture.offset = offset;
}

// Neither picture nor save-under exceeds what can lie inside the client area: of an image of few pixels, a brush
// would be thousands of pixels large.
static void measurePicture()
{
    OutlinePicture& picture = sessionExtras.outline;
    RECT client = {0, 0, 0, 0};
    GetClientRect(session->hostDialog, &client);
    picture.whole = brushSizeOnScreen();
    picture.part = {std::min(picture.whole.cx, std::max(client.right, 1L)),
                    std::min(picture.whole.cy, std::max(client.bottom, 1L))};
}

static void createPicture(HWND canvas)
{
    measurePicture();
    const SIZE part = sessionExtras.outline.part;
    const HDC canvasDC = GetDC(canvas);
    session->outlineBitmap = CreateCompatibleBitmap(canvasDC, part.cx, part.cy);
    const MemoryPicture memory = openMemory(canvasDC, session->outlineBitmap);
    if (memory.dc) drawPart(memory.dc, offsetAt(cornerAtPointer()));
    closeMemory(memory);
    ReleaseDC(canvas, canvasDC);
}

static void restoreSaveUnder()
{
    if (!session->saveUnderBitmap) return;
    const RECT at = partAt(session->outlinePos);
    const HDC dc = GetDC(session->hostDialog);
    const MemoryPicture saved = openMemory(dc, session->saveUnderBitmap);
    if (saved.dc) {
        BitBlt(dc, at.left, at.top, at.right - at.left, at.bottom - at.top, saved.dc, 0, 0, SRCCOPY);
    }
    closeMemory(saved);
    ReleaseDC(session->hostDialog, dc);
}

static void takeSaveUnder()
{
    const SIZE part = sessionExtras.outline.part;
    session->outlinePos = cornerAtPointer();
    const RECT at = partAt(session->outlinePos);
    const HDC dc = GetDC(session->hostDialog);
    if (!session->saveUnderBitmap) session->saveUnderBitmap = CreateCompatibleBitmap(dc, part.cx, part.cy);
    const MemoryPicture saved = openMemory(dc, session->saveUnderBitmap);
    if (saved.dc) BitBlt(saved.dc, 0, 0, part.cx, part.cy, dc, at.left, at.top, SRCCOPY);
    closeMemory(saved);
    ReleaseDC(session->hostDialog, dc);
}

// Copies what is seen of the picture at outlinePos; its pixels in the key colour stay transparent. The target's
// corner stands for `corner` of the client area.
static void drawPictureOn(HDC target, POINT corner)
{
    const SIZE part = sessionExtras.outline.part;
    const POINT offset = offsetAt(session->outlinePos), drawn = sessionExtras.outline.offset;
    const RECT at = partAt(session->outlinePos);
    const MemoryPicture picture = openMemory(target, session->outlineBitmap);
    if (picture.dc) {
        if (offset.x != drawn.x || offset.y != drawn.y) drawPart(picture.dc, offset);
        GdiTransparentBlt(target, at.left - corner.x, at.top - corner.y, part.cx, part.cy, picture.dc, 0, 0, part.cx,
                          part.cy, session->previewBackground);
    }
    closeMemory(picture);
}

static void drawPicture()
{
    const HDC dc = GetDC(session->hostDialog);
    drawPictureOn(dc, {0, 0});
    ReleaseDC(session->hostDialog, dc);
}

// Old and new place overlap: everything is composed off screen and shown with one copy.
static void moveOverlapping(const RECT& all, const RECT& from, POINT newCorner)
{
    const SIZE size = sessionExtras.outline.part;
    const RECT to = partAt(newCorner);
    const int width = all.right - all.left, height = all.bottom - all.top;
    const HDC dc = GetDC(session->hostDialog);
    const HBITMAP workBitmap = CreateCompatibleBitmap(dc, width, height);
    const MemoryPicture work = openMemory(dc, workBitmap);
    const MemoryPicture saved = openMemory(dc, session->saveUnderBitmap);
    if (work.dc && saved.dc) {
        session->outlinePos = newCorner;
        BitBlt(work.dc, 0, 0, width, height, dc, all.left, all.top, SRCCOPY);
        BitBlt(work.dc, from.left - all.left, from.top - all.top, size.cx, size.cy, saved.dc, 0, 0, SRCCOPY);
        BitBlt(saved.dc, 0, 0, size.cx, size.cy, work.dc, to.left - all.left, to.top - all.top, SRCCOPY);
        drawPictureOn(work.dc, {all.left, all.top});
        BitBlt(dc, all.left, all.top, width, height, work.dc, 0, 0, SRCCOPY);
    }
    closeMemory(saved);
    closeMemory(work);
    if (workBitmap) DeleteObject(workBitmap);
    ReleaseDC(session->hostDialog, dc);
}

// What two places of the picture cover of the client area; false when that is nothing.
static bool seenOf(const RECT& from, const RECT& to, RECT* seen)
{
    RECT all, client = {};
    UnionRect(&all, &from, &to);
    GetClientRect(session->hostDialog, &client);
    return IntersectRect(seen, &all, &client) != 0;
}

void rebuildOutline(HWND canvas, int dropBrushCache)
{
    if (dropBrushCache) dropPickedPatch();
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
    const POINT newCorner = cornerAtPointer();
    const RECT from = partAt(session->outlinePos), to = partAt(newCorner);
    RECT overlap, seen;
    if (session->saveUnderBitmap && IntersectRect(&overlap, &from, &to) && seenOf(from, to, &seen)) {
        moveOverlapping(seen, from, newCorner);
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
