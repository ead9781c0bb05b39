// Drawing the floating selection, its dotted outline and its frame of buttons. Logical units of the
// canvas, that is image pixels.
#include <initializer_list>

#include "canvas/view/canvas_coordinates.h"
#include "image/bitmap_display.h"
#include "image/kept_blocks.h"
#include "image/made_bitmap.h"
#include "image/packed_bitmap.h"
#include "selection/selection_drawing.h"
#include "selection/dotted_outline.h"
#include "selection/geometry/outline.h"
#include "selection/geometry/selection_images.h"
#include "selection/selection_frame.h"
#include "selection/tracking_picture.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

// The image with the selection over it, at selectionRect; the caller releases it.
static HGLOBAL composite()
{
    const LockedPixels image(editedImage()), pixels(session->selectionImage), mask(session->selectionMask);
    if (!image || !pixels || !mask) return nullptr;
    const PixelRect rect = pixelRectOf(session->selectionRect);
    return makeAllPixels(rect.right - rect.left, rect.bottom - rect.top, [&](const LockedPixels& target) {
        composeSelection(target.view, image.view, pixels.view, mask.view, rect);
        return true;
    });
}

static void drawComposite(HDC dc)
{
    const HGLOBAL composed = composite();
    if (!composed) return;
    drawBitmap(dc, composed, &session->selectionRect, SRCCOPY);
    releaseBlock(composed);
}

static bool liesInImage(const RECT& rect)
{
    return rect.left >= 0 && rect.top >= 0 && rect.right <= bitmapWidth(editedImage()) &&
           rect.bottom <= bitmapHeight(editedImage());
}

// What a bitmap of the image with the selection in it would show, without making one: only what is seen of it is
// read. The mask is white outside and black inside, the floating pixels the other way round.
static void drawThroughMask(HDC dc)
{
    const RECT& rect = session->selectionRect;
    drawBitmapPart(dc, editedImage(), rect, rect, SRCCOPY);
    drawBitmap(dc, session->selectionMask, &rect, SRCAND);
    drawBitmap(dc, session->selectionImage, &rect, SRCPAINT);
}

// To stretch a pixel of the screen takes the system about as long as making six pixels of the composite, and there are
// two more pictures to be stretched.
constexpr LONGLONG COMPOSED_PER_STRETCHED = 12;

static LONGLONG areaOf(const RECT& rect)
{
    return (LONGLONG)(rect.right - rect.left) * (rect.bottom - rect.top);
}

// Of the rectangle, on the screen.
static LONGLONG pixelsSeen(HDC dc)
{
    RECT seen;
    GetClipBox(dc, &seen);
    if (!IntersectRect(&seen, &seen, &session->selectionRect)) return 0;
    LPtoDP(dc, (POINT*)&seen, 2);
    return areaOf(seen);
}

static bool compositeCostsMore(HDC dc)
{
    return pixelsSeen(dc) * COMPOSED_PER_STRETCHED < areaOf(session->selectionRect);
}

static void drawFloatingPixels(HDC dc)
{
    if (IsRectEmpty(&session->selectionRect) || isZoomed(sessionExtras.canvas.view))
        return;  // zoomed they are there already
    if (!session->selectionImage || !session->selectionMask) return;
    (liesInImage(session->selectionRect) && compositeCostsMore(dc) ? drawThroughMask : drawComposite)(dc);
}

// Inverts what lies under it: drawn twice, it is gone.
static void drawInvertedFrame(HDC dc)
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

static void drawCorner(HDC dc, COLORREF colour, const POINT (&points)[3])
{
    const HPEN pen = CreatePen(PS_INSIDEFRAME, 1, colour);
    if (!pen) return;
    SelectObject(dc, pen);
    Polyline(dc, points, 3);
    SelectObject(dc, GetStockObject(WHITE_PEN));
    DeleteObject(pen);
}

// A flat raised face in the system's colours.
static void drawFace(HDC dc, const RECT& r)
{
    FillRect(dc, &r, GetSysColorBrush(COLOR_BTNFACE));
    drawCorner(dc, GetSysColor(COLOR_BTNHIGHLIGHT), {{r.left, r.bottom}, {r.left, r.top}, {r.right, r.top}});
    drawCorner(dc, GetSysColor(COLOR_BTNSHADOW), {{r.right, r.top}, {r.right, r.bottom}, {r.left, r.bottom}});
}

static void blacken(HDC dc, int left, int top, int right, int bottom)
{
    PatBlt(dc, left, top, right - left, bottom - top, BLACKNESS);
}

// The rectangle of the close button's cross. Turned inside out, and beyond the button, where that is small.
static RECT crossRect()
{
    RECT r = session->closeButton;
    InflateRect(&r, -5, -1);
    return r;
}

// The corner cells and the centre of a three-by-three grid: a cross.
static void drawCloseButton(HDC dc)
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

static void drawHandles(HDC dc)
{
    SelectObject(dc, GetStockObject(WHITE_BRUSH));
    for (const RECT* r :
         {&session->topLeftHandle, &session->topRightHandle, &session->bottomRightHandle, &session->bottomLeftHandle}) {
        PatBlt(dc, r->left, r->top, r->right - r->left, r->bottom - r->top, PATCOPY);
    }
}

// All but the close button and the handles.
static void drawFaces(HDC dc)
{
    const FrameButtons buttons = frameButtons();
    for (int button = 0; button < FRAME_BUTTON_COUNT; ++button) {
        const FrameOperation operation = operationOfHit(hitOfButton(button));
        if (operation != OPERATION_CLOSE && operation != OPERATION_RESIZE) drawFace(dc, rectOf(buttons.rects[button]));
    }
}

// ---- where all this is

static void include(RECT& box, const RECT& part)
{
    box = {part.left < box.left ? part.left : box.left, part.top < box.top ? part.top : box.top,
           part.right > box.right ? part.right : box.right, part.bottom > box.bottom ? part.bottom : box.bottom};
}

// Buttons as deep as a large frame's stick out of a small one.
static RECT frameBox()
{
    const RECT cross = crossRect();
    RECT box = session->frameOuterRect;
    include(box, cross);
    include(box, {cross.right, cross.bottom, cross.left, cross.top});
    const FrameButtons buttons = frameButtons();
    for (const PixelRect& button : buttons.rects)
        include(box, rectOf(button));
    InflateRect(&box, 2, 2);  // lines lie on the sides of their rectangles
    return isZoomed(sessionExtras.canvas.view) ? rectOf(imageCover(sessionExtras.canvas.view, pixelRectOf(box))) : box;
}

// Everything that drawSelection draws, but for what follows the pointer.
static RECT pictureRect()
{
    if (!session->outlinePoints || session->outlinePointCount < 1) return {0, 0, 0, 0};
    const PointBox dots = boxOfPoints(session->outlinePoints, session->outlinePointCount);
    RECT box = {dots.minX, dots.minY, dots.maxX + 1, dots.maxY + 1};
    if (!IsRectEmpty(&session->selectionRect)) include(box, session->selectionRect);
    InflateRect(&box, 2, 2);
    if (!IsRectEmpty(&session->frameInnerRect)) include(box, frameBox());
    return box;
}

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

void noteOutlinePainted(int first)
{
    const PointBox box = boxOfPoints(session->outlinePoints + first, session->outlinePointCount - first);
    const RECT part = {box.minX - 2, box.minY - 2, box.maxX + 3, box.maxY + 3};
    RECT& painted = sessionExtras.selection.painted;
    if (IsRectEmpty(&painted)) painted = part;
    include(painted, part);
}

void noteSelectionPainted()
{
    sessionExtras.selection.painted = pictureRect();
}

void redrawSelection()
{
    const RECT before = sessionExtras.selection.painted, now = pictureRect();
    sessionExtras.selection.painted = now;
    if (!session->canvasWindow || (IsRectEmpty(&before) && IsRectEmpty(&now))) return;
    for (const RECT& part : {before, now})
        if (!IsRectEmpty(&part)) invalidateImageRect(session->canvasWindow, part, 1);
    UpdateWindow(session->canvasWindow);
}
