#include "selection/selection_operations.h"

#include <initializer_list>

#include "canvas/view/canvas_coordinates.h"
#include "image/bitmap_block.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"
#include "selection/geometry/row_crossings.h"
#include "selection/selection.h"
#include "selection/geometry/selection_images.h"
#include "selection/selection_drawing.h"
#include "selection/selection_state.h"
#include "selection/geometry/selection_transform.h"
#include "selection/geometry/span_rows.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

namespace {

// ---- new shapes

// An outline with its unadjusted pixels, made complete before it takes the place of the present one.
struct Shape {
    PixelPoint* points;
    int pointCount;
    RowHead* crossings;
    PixelRect rect;
    HGLOBAL image, mask;
    HGLOBAL shownImage, shownMask;  // copies, to be adjusted in colour
};

void freeShape(Shape& shape)
{
    freeOutlinePoints(shape.points);
    freeCrossings(shape.crossings);
    for (HGLOBAL image : {shape.image, shape.mask, shape.shownImage, shape.shownMask}) {
        releaseBlock(image);
    }
    shape = {};
}

bool createImages(Shape& shape)
{
    const int width = shape.rect.right - shape.rect.left, height = shape.rect.bottom - shape.rect.top;
    shape.image = createBitmap(width, height, 24);
    shape.mask = createBitmap(width, height, 24);
    return shape.image && shape.mask;
}

// The last of what a shape needs: after this, taking it cannot fail.
bool copyShownImages(Shape& shape)
{
    shape.shownImage = duplicateBitmap(shape.image, 1);
    shape.shownMask = duplicateBitmap(shape.mask, 1);
    return shape.shownImage && shape.shownMask;
}

void takeShape(Shape& shape)
{
    freeOutlinePoints(session->outlinePoints);
    freeCrossings(session->homeCrossings);
    for (HGLOBAL image : {session->selectionImageSource, session->selectionMaskSource, session->selectionImage,
                          session->selectionMask}) {
        releaseBlock(image);
    }
    session->outlinePoints = shape.points;
    session->outlinePointCount = shape.pointCount;
    session->homeCrossings = shape.crossings;
    session->selectionImageSource = shape.image;
    session->selectionMaskSource = shape.mask;
    session->selectionImage = shape.shownImage;
    session->selectionMask = shape.shownMask;
    setSelectionRect(shape.rect);
    session->selectionHomeRect = session->selectionRect;
    adjustShownImages();
}

// ---- pixels with their mask, locked

struct LockedPair {
    BitmapBlock imageBlock, maskBlock;
    BitsView image, mask;
    bool locked;
};

LockedPair lockPair(HGLOBAL image, HGLOBAL mask)
{
    LockedPair pair = {};
    if (!lockPixels(image, &pair.imageBlock, &pair.image)) return pair;
    pair.locked = lockPixels(mask, &pair.maskBlock, &pair.mask);
    if (!pair.locked) unlockBlock(pair.imageBlock);
    return pair;
}

void unlockPair(const LockedPair& pair)
{
    if (!pair.locked) return;
    unlockBlock(pair.maskBlock);
    unlockBlock(pair.imageBlock);
}

// ---- apply, flip, colours

void apply(HWND, int)
{
    const LockedPair pair = lockPair(session->selectionImage, session->selectionMask);
    BitmapBlock block;
    BitsView image;
    if (pair.locked && lockPixels(editedImage(), &block, &image)) {
        applySelection(image, pair.image, pair.mask, session->selectionRect.left, session->selectionRect.top);
        unlockBlock(block);
    }
    unlockPair(pair);
    redrawSelection();
}

void flip(HWND, int hit)
{
    if (!session->selectionImage || !session->selectionImageSource || !session->selectionMask ||
        !session->selectionMaskSource) {
        return;
    }
    const bool vertical = hit == HIT_FLIP_VERTICAL;
    const auto mirrored = vertical ? mirrorCrossingsVertically : mirrorCrossingsHorizontally;
    RowHead* const crossings = mirrored(session->homeCrossings, pixelRectOf(session->selectionHomeRect));
    if (!crossings) return;
    const auto flipImage = vertical ? flipVertical : flipHorizontal;
    for (HGLOBAL image : {session->selectionImage, session->selectionImageSource, session->selectionMask,
                          session->selectionMaskSource}) {
        flipImage(image);
    }
    const auto flipPoints = vertical ? flipPointsVertically : flipPointsHorizontally;
    flipPoints(session->outlinePoints, session->outlinePointCount);
    freeCrossings(session->rowCrossings);
    session->rowCrossings = crossings;
    storeReferences();
    deriveShownImages();
    redrawSelection();
}

void close(HWND, int)
{
    clearSelection();
}

void stepColour(HWND, int hit)
{
    ColourValues values = selectionColours();
    stepColourOfHit(values, hit);
    setSelectionColours(values);
    deriveShownImages();
    redrawSelection();
}

struct Operation {
    FrameOperation operation;
    void (*run)(HWND canvas, int hit);
};

const Operation operations[] = {
    {OPERATION_CLOSE, close},          {OPERATION_APPLY, apply},       {OPERATION_FLIP_VERTICAL, flip},
    {OPERATION_FLIP_HORIZONTAL, flip}, {OPERATION_COLOUR, stepColour},
};

// ---- resize

bool reshapePixels(const Shape& shape)
{
    SpanTable from = {}, to = {};
    const bool listed = makeSpanRows(session->referenceCrossingsB, from) && makeSpanRows(shape.crossings, to);
    const LockedPair source = lockPair(session->referenceImageB, session->referenceMaskB);
    const LockedPair target = lockPair(shape.image, shape.mask);
    const bool ready = listed && source.locked && target.locked;
    if (ready) {
        reshapeSelectionSpans({source.image, source.mask}, {target.image, target.mask},
                              {from, pixelRectOf(session->referenceRectB)}, {to, shape.rect});
    }
    unlockPair(target);
    unlockPair(source);
    freeSpanRows(to);
    freeSpanRows(from);
    return ready;
}

bool makeResized(const PixelRect& rect, Shape& shape)
{
    shape.rect = rect;
    shape.pointCount = session->referencePointCountB;
    shape.points = copyOutlinePoints(session->referencePointsB, shape.pointCount);
    if (!shape.points) return false;
    scalePoints(session->referencePointsB, shape.pointCount, pixelRectOf(session->referenceRectB), rect, shape.points);
    shape.crossings = crossingsOfPoints(session->rowCount, shape.points, shape.pointCount);
    return shape.crossings && createImages(shape) && reshapePixels(shape);
}

// ---- reshape

// The image where the old and the new selection lie, over it the old floating pixels, cut to the new outline.
bool rebuildPixels(const Shape& shape)
{
    const LockedPair old = lockPair(session->selectionImageSource, session->selectionMaskSource);
    const LockedPair target = lockPair(shape.image, shape.mask);
    BitmapBlock block;
    BitsView image;
    const bool ready = old.locked && target.locked && lockPixels(editedImage(), &block, &image);
    if (ready) {
        rebuildSelectionImage(target.image, shape.crossings, shape.rect, image, old.image, old.mask,
                              pixelRectOf(session->selectionRect));
        fillSelectionMask(target.mask, shape.crossings, shape.rect);
        unlockBlock(block);
    }
    unlockPair(target);
    unlockPair(old);
    return ready;
}

// ---- turn

bool turnedPixels(const Shape& shape, const Turn& turn)
{
    const LockedPair source = lockPair(session->referenceImageA, session->referenceMaskA);
    const LockedPair target = lockPair(shape.image, shape.mask);
    const bool ready = source.locked && target.locked;
    if (ready) {
        fillSelectionMask(target.mask, shape.crossings, shape.rect);
        turnPixels({target.image, target.mask, shape.rect},
                   {source.image, source.mask, pixelRectOf(session->referenceRectA)}, turn);
    }
    unlockPair(target);
    unlockPair(source);
    return ready;
}

// The turned points of state A, clamped as pointer positions are, replayed as an outline.
bool makeTurned(const Turn& turn, Shape& shape)
{
    const int count = session->referencePointCountA;
    PixelPoint* const points = copyOutlinePoints(session->referencePointsA, count);
    if (!points) return false;
    turnPoints(session->referencePointsA, count, turn, points);
    const PixelRect area = pixelRectOf(canvasArea(session->canvasWindow));
    for (int i = 0; i < count; ++i)
        points[i] = clampOutlinePoint(points[i], area);
    Outline outline = {};
    const bool replayed = replayOutline(outline, session->rowCount, points, count) && !outline.incomplete;
    freeOutlinePoints(points);
    shape.points = outline.points;
    shape.pointCount = outline.pointCount;
    shape.crossings = outline.crossings;
    return replayed && computeCrossingBounds(shape.crossings, shape.rect) && createImages(shape) &&
           turnedPixels(shape, turn);
}

bool makeUnturned(Shape& shape)
{
    shape.rect = pixelRectOf(session->referenceRectA);
    shape.pointCount = session->referencePointCountA;
    shape.points = copyOutlinePoints(session->referencePointsA, shape.pointCount);
    shape.crossings = copyCrossings(session->referenceCrossingsA);
    shape.image = duplicateBitmap(session->referenceImageA, 1);
    shape.mask = duplicateBitmap(session->referenceMaskA, 1);
    return shape.points && shape.crossings && shape.image && shape.mask;
}

bool makeRotated(int rotation, Shape& shape)
{
    const int degrees = rotation % 360;
    if (degrees == 0) return makeUnturned(shape);
    return makeTurned(turnAbout(boxOfPoints(session->referencePointsA, session->referencePointCountA), degrees), shape);
}

}  // namespace

void runSelectionOperation(HWND canvas, int hit)
{
    const FrameOperation wanted = operationOfHit(hit);
    for (const Operation& row : operations) {
        if (row.operation == wanted) return row.run(canvas, hit);
    }
}

// State A goes along, so that a later turn happens at the new place. State B stays where it was: a
// resize maps from its own rectangle to the new one, wherever that is.
void moveSelectionBy(int dx, int dy)
{
    RowHead* const moved = moveCrossings(session->homeCrossings, dx, dy);
    RowHead* const movedA = moveCrossings(session->referenceCrossingsA, dx, dy);
    if (!moved || !movedA) {
        freeCrossings(moved);
        freeCrossings(movedA);
        return;
    }
    movePoints(session->outlinePoints, session->outlinePointCount, dx, dy);
    for (int i = 0; i < session->referencePointCountA; ++i) {  // unclipped: turning out and back loses nothing
        session->referencePointsA[i].x += dx;
        session->referencePointsA[i].y += dy;
    }
    OffsetRect(&session->referenceRectA, dx, dy);
    freeCrossings(session->referenceCrossingsA);
    session->referenceCrossingsA = movedA;
    freeCrossings(session->homeCrossings);
    session->homeCrossings = moved;
    RECT rect = session->selectionRect;
    OffsetRect(&rect, dx, dy);
    setSelectionRect(pixelRectOf(rect));
    session->selectionHomeRect = session->selectionRect;
    redrawSelection();
}

void resizeSelectionTo(const RECT& rect)
{
    if (EqualRect(&rect, &session->selectionRect) || IsRectEmpty(&rect)) return;
    Shape shape = {};
    if (!makeResized(pixelRectOf(rect), shape) || !copyShownImages(shape)) return freeShape(shape);
    takeShape(shape);
    session->selectionRotation = 0;
    storeReferenceA();
    redrawSelection();
}

void rotateSelectionBy(int degrees)
{
    if (degrees == 0) return;
    const int rotation = addRotation(session->selectionRotation, degrees);
    Shape shape = {};
    // An empty result keeps state and angle.
    if (!makeRotated(rotation, shape) || !copyShownImages(shape)) return freeShape(shape);
    takeShape(shape);
    session->selectionRotation = rotation;
    storeReferenceB();
    redrawSelection();
}

bool takeReshapedOutline(Outline& outline)
{
    Shape shape = {outline.points, outline.pointCount, outline.crossings, {}, nullptr, nullptr, nullptr, nullptr};
    outline = {};
    if (!computeCrossingBounds(shape.crossings, shape.rect) || !createImages(shape) || !rebuildPixels(shape) ||
        !copyShownImages(shape)) {
        freeShape(shape);
        return false;
    }
    const RECT home = session->selectionHomeRect;
    takeShape(shape);
    session->selectionReshaped = !EqualRect(&home, &session->selectionRect);
    storeReferences();
    session->selectionActive = 1;
    redrawSelection();
    return true;
}

RECT canvasArea(HWND canvas)
{
    if (isZoomed(canvasView)) return {0, 0, canvasView.image.width, canvasView.image.height};
    RECT area;
    GetClientRect(canvas, &area);
    const POINT corner = imagePointOf(canvas, {area.right, area.bottom});
    return {0, 0, corner.x, corner.y};
}
