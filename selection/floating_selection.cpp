#include "selection/floating_selection.h"

#include "image/bitmap_locks.h"
#include "image/kept_blocks.h"
#include "image/new_bitmap.h"
#include "image/packed_bitmap.h"
#include "image/pixels/pixel_ops.h"
#include "selection/geometry/mask_trace.h"
#include "selection/geometry/selection_images.h"
#include "selection/geometry/span_rows.h"

static PixelRect atCorner(const PixelRect& rect)
{
    return {0, 0, rect.right - rect.left, rect.bottom - rect.top};
}

// What was begun is kept only when it is complete.
static bool keepIf(bool complete, FloatingSelection& selection)
{
    if (!complete) freeFloating(selection);
    return complete;
}

// The mask is written whole by whoever asks for the images; the image is black.
static bool createImages(FloatingSelection& selection)
{
    const PixelRect size = atCorner(selection.rect);
    selection.image = createBitmap(size.right, size.bottom, 24);
    selection.mask = createUnsetBitmap(size.right, size.bottom);
    return selection.image && selection.mask;
}

// Points, crossings and rectangle of an outline, whose parts the selection takes.
static bool takeOutline(Outline& outline, PixelPoint origin, FloatingSelection& selection)
{
    PixelRect bounds;
    selection = {};
    selection.points = outline.points;
    selection.pointCount = outline.pointCount;
    outline.points = nullptr;
    const bool encloses = !outline.incomplete && outline.crossings && computeCrossingBounds(outline.crossings, bounds);
    if (encloses) {
        selection.rect = {bounds.left + origin.x, bounds.top + origin.y, bounds.right + origin.x,
                          bounds.bottom + origin.y};
        selection.crossings = cropCrossings(outline.crossings, bounds);
    }
    freeOutline(outline);
    return selection.crossings != nullptr;
}

void freeFloating(FloatingSelection& selection)
{
    freeOutlinePoints(selection.points);
    freeCrossings(selection.crossings);
    releaseBlock(selection.image);
    releaseBlock(selection.mask);
    selection = {};
}

bool copyFloating(const FloatingSelection& from, FloatingSelection& copy)
{
    copy = {copyOutlinePoints(from.points, from.pointCount),
            from.pointCount,
            copyCrossings(from.crossings),
            shareBitmap(from.image),
            shareBitmap(from.mask),
            from.rect};
    return keepIf(copy.points && copy.crossings && copy.image && copy.mask, copy);
}

void moveFloating(FloatingSelection& selection, int dx, int dy)
{
    for (int i = 0; i < selection.pointCount; ++i)
        selection.points[i] = {selection.points[i].x + dx, selection.points[i].y + dy};
    PixelRect& r = selection.rect;
    r = {r.left + dx, r.top + dy, r.right + dx, r.bottom + dy};
}

// ---- from an outline

static bool cutOut(const FloatingSelection& selection, HGLOBAL photo)
{
    const LockedPixels from(photo), image(selection.image), mask(selection.mask);
    if (!from || !image || !mask) return false;
    const PixelRect size = atCorner(selection.rect);
    liftSelectionImage(image.view, selection.crossings, from.view, selection.rect.left, selection.rect.top);
    fillSelectionMask(mask.view, selection.crossings, size);
    return true;
}

bool liftFloating(Outline& outline, PixelPoint origin, HGLOBAL photo, FloatingSelection& lifted)
{
    return keepIf(takeOutline(outline, origin, lifted) && createImages(lifted) && cutOut(lifted, photo), lifted);
}

static bool rebuild(const FloatingSelection& selection, const FloatingSelection& old, HGLOBAL photo)
{
    const LockedPixels from(photo), oldImage(old.image), oldMask(old.mask);
    const LockedPixels image(selection.image), mask(selection.mask);
    if (!from || !oldImage || !oldMask || !image || !mask) return false;
    rebuildSelectionImage(image.view, selection.rect, from.view, oldImage.view, oldMask.view, old.rect);
    cutSelectionImage(image.view, selection.crossings, atCorner(selection.rect));
    fillSelectionMask(mask.view, selection.crossings, atCorner(selection.rect));
    return true;
}

bool reshapeFloating(const FloatingSelection& from, Outline& outline, PixelPoint origin, HGLOBAL photo,
                     FloatingSelection& reshaped)
{
    return keepIf(takeOutline(outline, origin, reshaped) && createImages(reshaped) && rebuild(reshaped, from, photo),
                  reshaped);
}

// ---- from a mask

static bool traceOutline(HGLOBAL mask, Outline& outline)
{
    const LockedPixels pixels(mask);
    PixelPoint* points = nullptr;
    int count = 0;
    const bool traced = pixels && traceMask(pixels.view, {0, 0}, points, count) == TRACE_CLOSED &&
                        replayOutline(outline, pixels.view.height, points, count);
    freeOutlinePoints(points);
    return traced;
}

bool traceFloating(HGLOBAL image, HGLOBAL mask, PixelPoint corner, FloatingSelection& traced)
{
    Outline outline = {};
    const bool closed = traceOutline(mask, outline);
    traced = {outline.points, outline.pointCount, outline.crossings, image, mask, {0, 0, 0, 0}};
    traced.rect = {0, 0, bitmapWidth(mask), bitmapHeight(mask)};
    const bool fits = bitmapWidth(image) == traced.rect.right && bitmapHeight(image) == traced.rect.bottom;
    if (!keepIf(closed && fits, traced)) return false;
    moveFloating(traced, corner.x, corner.y);
    return true;
}

// ---- flip

// A line of one pixel has no mirror image of its own.
static bool flipBitmap(HGLOBAL bitmap, bool vertically)
{
    if (bitmapWidth(bitmap) == 1 || bitmapHeight(bitmap) == 1) return true;
    return (vertically ? flipVertical(bitmap) : flipHorizontal(bitmap)) != 0;
}

bool flipFloating(const FloatingSelection& from, bool vertically, FloatingSelection& flipped)
{
    const auto mirrored = vertically ? mirrorCrossingsVertically : mirrorCrossingsHorizontally;
    flipped = {copyOutlinePoints(from.points, from.pointCount),
               from.pointCount,
               mirrored(from.crossings, atCorner(from.rect)),
               duplicateBitmap(from.image, 1),
               duplicateBitmap(from.mask, 1),
               from.rect};
    const bool made = flipped.points && flipped.crossings && flipped.image && flipped.mask &&
                      flipBitmap(flipped.image, vertically) && flipBitmap(flipped.mask, vertically);
    if (!keepIf(made, flipped)) return false;
    (vertically ? flipPointsVertically : flipPointsHorizontally)(flipped.points, flipped.pointCount);
    return true;
}

// ---- resize

static bool stretchPixels(const FloatingSelection& from, const FloatingSelection& resized)
{
    SpanOutline source = {}, target = {};
    const LockedPixels image(from.image), mask(from.mask), newImage(resized.image), newMask(resized.mask);
    const bool ready = image && mask && newImage && newMask && makeSpanOutline(from.crossings, from.rect, source) &&
                       makeSpanOutline(resized.crossings, resized.rect, target);
    if (ready) reshapeSelectionSpans({image.view, mask.view}, {newImage.view, newMask.view}, source, target);
    freeSpanOutline(target);
    freeSpanOutline(source);
    return ready;
}

bool resizeFloating(const FloatingSelection& from, PixelRect rect, FloatingSelection& resized)
{
    resized = {};
    resized.rect = rect;
    resized.pointCount = from.pointCount;
    resized.points = copyOutlinePoints(from.points, from.pointCount);
    if (!resized.points) return keepIf(false, resized);
    scalePoints(from.points, from.pointCount, from.rect, rect, resized.points);
    resized.crossings =
        crossingsOfPoints(rect.bottom - rect.top, resized.points, resized.pointCount, {rect.left, rect.top});
    return keepIf(resized.crossings && createImages(resized) && stretchPixels(from, resized), resized);
}

// ---- turn

static bool turnBits(const FloatingSelection& from, const Turn& turn, const FloatingSelection& turned)
{
    const LockedPixels image(from.image), mask(from.mask), newImage(turned.image), newMask(turned.mask);
    if (!image || !mask || !newImage || !newMask) return false;
    fillSelectionMask(newMask.view, turned.crossings, atCorner(turned.rect));
    turnPixels({newImage.view, newMask.view, turned.rect}, {image.view, mask.view, from.rect}, turn);
    return true;
}

static bool turnOutline(const FloatingSelection& from, const Turn& turn, const TurnLimits& limits, Outline& outline)
{
    PixelPoint* const points = copyOutlinePoints(from.points, from.pointCount);
    if (!points) return false;
    turnPoints(from.points, from.pointCount, turn, points);
    for (int i = 0; i < from.pointCount; ++i)
        points[i] = clampOutlinePoint(points[i], limits.canvas);
    const bool replayed = replayOutline(outline, limits.rowCount, points, from.pointCount);
    freeOutlinePoints(points);
    return replayed;
}

bool turnFloating(const FloatingSelection& from, int degrees, const TurnLimits& limits, FloatingSelection& turned)
{
    turned = {};
    const Turn turn = turnAbout(boxOfPoints(from.points, from.pointCount), degrees);
    Outline outline = {};
    if (!turnOutline(from, turn, limits, outline)) return false;
    return keepIf(takeOutline(outline, {0, 0}, turned) && createImages(turned) && turnBits(from, turn, turned), turned);
}
