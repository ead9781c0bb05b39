// Drawing the floating selection, its dotted outline and its frame of buttons. Logical units of the
// canvas, that is image pixels.
#include <initializer_list>

#include "canvas/view/canvas_coordinates.h"
#include "image/bitmap_block.h"
#include "image/bitmap_display.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"
#include "selection/selection_drawing.h"
#include "selection/geometry/selection_images.h"
#include "selection/selection_frame.h"
#include "selection/selection_progress.h"
#include "selection/selection_tracking.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

namespace {

struct LockedPixels {
    BitmapBlock block;
    BitsView view;
    bool locked;
};

LockedPixels lockImage(HGLOBAL image)
{
    LockedPixels pixels = {};
    pixels.locked = lockPixels(image, &pixels.block, &pixels.view);
    return pixels;
}

void unlockImage(const LockedPixels& pixels)
{
    if (pixels.locked) unlockBlock(pixels.block);
}

// The image with the selection over it, at selectionRect; the caller frees it.
HGLOBAL composite()
{
    const RECT& rect = session->selectionRect;
    const HGLOBAL composed = createBitmap(rect.right - rect.left, rect.bottom - rect.top, 24);
    const LockedPixels target = lockImage(composed), image = lockImage(editedImage());
    const LockedPixels pixels = lockImage(session->selectionImage), mask = lockImage(session->selectionMask);
    const bool ready = target.locked && image.locked && pixels.locked && mask.locked;
    if (ready) composeSelection(target.view, image.view, pixels.view, mask.view, pixelRectOf(rect));
    for (const LockedPixels* locked : {&mask, &pixels, &image, &target})
        unlockImage(*locked);
    if (ready) return composed;
    releaseBlock(composed);
    return nullptr;
}

void drawFloatingPixels(HDC dc)
{
    if (IsRectEmpty(&session->selectionRect) || isZoomed(canvasView)) return;  // zoomed they are there already
    const HGLOBAL composed = composite();
    if (!composed) return;
    drawBitmap(dc, composed, &session->selectionRect, SRCCOPY);
    releaseBlock(composed);
}

// The outline where it is drawn: a copy in client pixels when the canvas is zoomed, else null for the outline itself.
PixelPoint* zoomedOutline()
{
    if (!isZoomed(canvasView)) return nullptr;
    PixelPoint* const points = copyOutlinePoints(session->outlinePoints, session->outlinePointCount);
    for (int i = 0; points && i < session->outlinePointCount; ++i) {
        const PixelRect at = deviceRectAt(canvasView, {points[i].x, points[i].y, points[i].x, points[i].y});
        points[i] = {at.left, at.top};
    }
    return points;
}

// White dots on black: visible on any image.
void drawDottedOutline(HDC dc)
{
    PixelPoint* const zoomed = zoomedOutline();
    if (isZoomed(canvasView) && !zoomed) return;
    const HPEN pen = CreatePen(PS_DOT, 0, RGB(255, 255, 255));
    if (!pen) return freeOutlinePoints(zoomed);
    SelectObject(dc, pen);
    SetBkColor(dc, RGB(0, 0, 0));
    SetBkMode(dc, OPAQUE);
    static_assert(sizeof(PixelPoint) == sizeof(POINT), "outline points are drawn as they are");
    Polyline(dc, (const POINT*)(zoomed ? zoomed : session->outlinePoints), session->outlinePointCount);
    SelectObject(dc, GetStockObject(WHITE_PEN));
    DeleteObject(pen);
    freeOutlinePoints(zoomed);
}

// Inverts what lies under it: drawn twice, it is gone.
void drawInvertedFrame(HDC dc)
{
    const HPEN pen = CreatePen(PS_INSIDEFRAME, 2, RGB(255, 255, 255));
    if (!pen) return;
    SelectObject(dc, pen);
    SelectObject(dc, GetStockObject(NULL_BRUSH));
    SetROP2(dc, R2_NOT);
    const RECT& frame = session->frameInnerRect;
    Rectangle(dc, frame.left, frame.top, frame.right, frame.bottom);
    SetROP2(dc, R2_COPYPEN);
    SelectObject(dc, GetStockObject(WHITE_PEN));
    DeleteObject(pen);
}

void drawCorner(HDC dc, COLORREF colour, const POINT (&points)[3])
{
    const HPEN pen = CreatePen(PS_INSIDEFRAME, 1, colour);
    if (!pen) return;
    SelectObject(dc, pen);
    Polyline(dc, points, 3);
    SelectObject(dc, GetStockObject(WHITE_PEN));
    DeleteObject(pen);
}

// A flat raised face in the system's colours.
void drawFace(HDC dc, const RECT& r)
{
    FillRect(dc, &r, GetSysColorBrush(COLOR_BTNFACE));
    drawCorner(dc, GetSysColor(COLOR_BTNHIGHLIGHT), {{r.left, r.bottom}, {r.left, r.top}, {r.right, r.top}});
    drawCorner(dc, GetSysColor(COLOR_BTNSHADOW), {{r.right, r.top}, {r.right, r.bottom}, {r.left, r.bottom}});
}

void blacken(HDC dc, int left, int top, int right, int bottom)
{
    PatBlt(dc, left, top, right - left, bottom - top, BLACKNESS);
}

// The rectangle of the close button's cross. Turned inside out, and beyond the button, where that is small.
RECT crossRect()
{
    RECT r = session->closeButton;
    InflateRect(&r, -5, -1);
    return r;
}

// The corner cells and the centre of a three-by-three grid: a cross.
void drawCloseButton(HDC dc)
{
    drawFace(dc, session->closeButton);
    const RECT r = crossRect();
    const int w = (r.right - r.left) / 3, h = (r.bottom - r.top) / 3;
    blacken(dc, r.left, r.top, r.left + w, r.top + h);
    blacken(dc, r.right - w, r.top, r.right, r.top + h);
    blacken(dc, r.left + w, r.top + h, r.right - w, r.bottom - h);
    blacken(dc, r.left, r.bottom - h, r.left + w, r.bottom);
    blacken(dc, r.right - w, r.bottom - h, r.right, r.bottom);
}

void drawHandles(HDC dc)
{
    SelectObject(dc, GetStockObject(WHITE_BRUSH));
    for (const RECT* r :
         {&session->topLeftHandle, &session->topRightHandle, &session->bottomRightHandle, &session->bottomLeftHandle}) {
        PatBlt(dc, r->left, r->top, r->right - r->left, r->bottom - r->top, PATCOPY);
    }
}

void drawFaces(HDC dc)
{
    const SessionRecord& s = *session;
    for (const RECT* r :
         {&s.applyButton, &s.flipVerticalButton, &s.flipHorizontalButton, &s.brighterButton, &s.darkerButton,
          &s.rotateButton, &s.hueDownButton, &s.hueUpButton, &s.saturationMoreButton, &s.saturationLessButton,
          &s.contrastMoreButton, &s.contrastLessButton, &s.liftUpButton, &s.liftDownButton}) {
        drawFace(dc, *r);
    }
}

// ---- where all this is

void include(RECT& box, const RECT& part)
{
    box = {part.left < box.left ? part.left : box.left, part.top < box.top ? part.top : box.top,
           part.right > box.right ? part.right : box.right, part.bottom > box.bottom ? part.bottom : box.bottom};
}

// Buttons as deep as a large frame's stick out of a small one.
RECT frameBox()
{
    const RECT cross = crossRect();
    RECT box = session->frameOuterRect;
    include(box, cross);
    include(box, {cross.right, cross.bottom, cross.left, cross.top});
    const FrameButtons buttons = frameButtons();
    for (const PixelRect& button : buttons.rects)
        include(box, rectOf(button));
    InflateRect(&box, 2, 2);  // lines lie on the sides of their rectangles
    return isZoomed(canvasView) ? rectOf(imageCover(canvasView, pixelRectOf(box))) : box;
}

// Everything that drawSelection draws, but for what follows the pointer.
RECT pictureRect()
{
    if (!session->outlinePoints || session->outlinePointCount < 1) return {0, 0, 0, 0};
    const PointBox dots = boxOfPoints(session->outlinePoints, session->outlinePointCount);
    RECT box = {dots.minX, dots.minY, dots.maxX + 1, dots.maxY + 1};
    if (!IsRectEmpty(&session->selectionRect)) include(box, session->selectionRect);
    InflateRect(&box, 2, 2);
    if (!IsRectEmpty(&session->frameInnerRect)) include(box, frameBox());
    return box;
}

}  // namespace

void drawSelection(HDC dc)
{
    if (!session->outlinePoints || session->outlinePointCount < 1) return;
    const int saved = SaveDC(dc);
    drawFloatingPixels(dc);
    drawDottedOutline(dc);
    if (!IsRectEmpty(&session->frameInnerRect)) {  // an outline still being drawn has no frame
        drawInvertedFrame(dc);
        drawCloseButton(dc);
        drawHandles(dc);
        drawFaces(dc);
    }
    RestoreDC(dc, saved);
    drawTracking(dc);
}

void showSelection(HWND canvas)
{
    const HDC dc = GetDC(canvas);
    drawSelection(dc);
    ReleaseDC(canvas, dc);
    noteSelectionPainted();
}

void noteSelectionPainted()
{
    selectionProgress.painted = pictureRect();
}

void redrawSelection()
{
    const RECT before = selectionProgress.painted, now = pictureRect();
    selectionProgress.painted = now;
    if (!session->canvasWindow || (IsRectEmpty(&before) && IsRectEmpty(&now))) return;
    for (const RECT& part : {before, now})
        if (!IsRectEmpty(&part)) invalidateImageRect(session->canvasWindow, part, 1);
    UpdateWindow(session->canvasWindow);
}
