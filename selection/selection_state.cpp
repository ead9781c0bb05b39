#include "selection/selection_state.h"

#include <algorithm>
#include <initializer_list>

#include "canvas/view/canvas_coordinates.h"
#include "color/colour_adjustment.h"
#include "image/bitmap_block.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"
#include "image/pixels/pixel_ops.h"
#include "selection/geometry/row_crossings.h"
#include "selection/selection.h"
#include "selection/geometry/selection_images.h"
#include "selection/selection_drawing.h"
#include "selection/selection_progress.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

namespace {

void freeImage(HGLOBAL& image)
{
    releaseBlock(image);
    image = nullptr;
}

void freeTable(RowHead*& table)
{
    freeCrossings(table);
    table = nullptr;
}

void freePoints(PixelPoint*& points)
{
    freeOutlinePoints(points);
    points = nullptr;
}

void freeWorkingOutline()
{
    freeTable(session->rowCrossings);
    freePoints(session->outlinePoints);
    freePoints(session->outlineSnapshot);
    session->outlinePointCount = 0;
    session->outlineIncomplete = 0;
}

void freeImages()
{
    for (HGLOBAL* image : {&session->selectionImage, &session->selectionMask, &session->selectionImageSource,
                           &session->selectionMaskSource}) {
        freeImage(*image);
    }
}

void freeReferences()
{
    freeTable(session->referenceCrossingsA);
    freeTable(session->referenceCrossingsB);
    freeTable(session->homeCrossings);
    freePoints(session->referencePointsA);
    freePoints(session->referencePointsB);
    for (HGLOBAL* image :
         {&session->referenceImageA, &session->referenceMaskA, &session->referenceImageB, &session->referenceMaskB}) {
        freeImage(*image);
    }
}

void dropComposite()
{
    if (session->selectionComposite) DeleteObject(session->selectionComposite);
    session->selectionComposite = nullptr;
}

}  // namespace

bool replacePoints(PixelPoint*& field, const PixelPoint* from, int count)
{
    PixelPoint* const copy = copyOutlinePoints(from, count);
    if (!copy) return false;
    freePoints(field);
    field = copy;
    return true;
}

FrameMetrics frameMetrics()
{
    return {GetSystemMetrics(SM_CXFRAME), GetSystemMetrics(SM_CYFRAME)};
}

static bool fillMask(HGLOBAL mask)
{
    BitmapBlock block;
    BitsView pixels;
    if (!lockPixels(mask, &block, &pixels)) return false;
    fillSelectionMask(pixels, session->rowCrossings, pixelRectOf(session->selectionRect));
    unlockBlock(block);
    return true;
}

static bool cutImage(HGLOBAL image)
{
    BitmapBlock block;
    BitsView pixels;
    if (!lockPixels(image, &block, &pixels)) return false;
    cutSelectionImage(pixels, session->rowCrossings, pixelRectOf(session->selectionRect));
    unlockBlock(block);
    return true;
}

Outline takeOutline()
{
    const Outline outline = {session->rowCrossings,
                             session->outlinePoints,
                             session->outlinePointCount,
                             {(int)session->outlineLastPoint.x, (int)session->outlineLastPoint.y},
                             {(int)session->outlineStartPoint.x, (int)session->outlineStartPoint.y},
                             session->outlineIncomplete != 0};
    return outline;
}

void putOutline(const Outline& outline)
{
    session->rowCrossings = outline.crossings;
    session->outlinePoints = outline.points;
    session->outlinePointCount = outline.pointCount;
    session->outlineLastPoint = {outline.last.x, outline.last.y};
    session->outlineStartPoint = {outline.start.x, outline.start.y};
    session->outlineIncomplete = outline.incomplete;
}

BandUnit frameBand()
{
    POINT band = {2 * GetSystemMetrics(SM_CXFRAME), 2 * GetSystemMetrics(SM_CYFRAME)};
    if (!isZoomed(canvasView)) band = imagePointOf(session->canvasWindow, band);
    return {(int)band.x, (int)band.y};
}

// The record keeps each button under its own name; the layout numbers them.
static RECT SessionRecord::*const buttonFields[FRAME_BUTTON_COUNT] = {
    &SessionRecord::applyButton,        &SessionRecord::flipVerticalButton,   &SessionRecord::flipHorizontalButton,
    &SessionRecord::brighterButton,     &SessionRecord::darkerButton,         &SessionRecord::topLeftHandle,
    &SessionRecord::topRightHandle,     &SessionRecord::bottomRightHandle,    &SessionRecord::bottomLeftHandle,
    &SessionRecord::closeButton,        &SessionRecord::rotateButton,         &SessionRecord::hueDownButton,
    &SessionRecord::hueUpButton,        &SessionRecord::saturationMoreButton, &SessionRecord::saturationLessButton,
    &SessionRecord::contrastMoreButton, &SessionRecord::contrastLessButton,   &SessionRecord::liftUpButton,
    &SessionRecord::liftDownButton,
};

FrameButtons frameButtons()
{
    FrameButtons buttons;
    for (int i = 0; i < FRAME_BUTTON_COUNT; ++i)
        buttons.rects[i] = pixelRectOf(session->*buttonFields[i]);
    return buttons;
}

void layOutFrame()
{
    const FrameButtons buttons = layOutFrameButtons(pixelRectOf(session->frameOuterRect), frameBand());
    for (int i = 0; i < FRAME_BUTTON_COUNT; ++i)
        session->*buttonFields[i] = rectOf(buttons.rects[i]);
}

// What the frame encloses: the selection, or zoomed its place on the canvas, at least a pixel.
static PixelRect framedRect(const PixelRect& rect)
{
    if (!isZoomed(canvasView)) return rect;
    const PixelRect shown = deviceRectAt(canvasView, rect);
    return {shown.left, shown.top, std::max(shown.right, shown.left + 1), std::max(shown.bottom, shown.top + 1)};
}

void setSelectionRect(const PixelRect& rect)
{
    const PixelRect inner = framedRect(rect), outer = frameOuterRectOf(inner, frameMetrics());
    session->selectionRect = rectOf(rect);
    session->selectionOuterRect = rectOf(isZoomed(canvasView) ? imageCover(canvasView, outer) : outer);
    session->frameInnerRect = rectOf(inner);
    session->frameOuterRect = rectOf(outer);
    layOutFrame();
}

bool cutFloatingImages()
{
    const PixelRect rect = pixelRectOf(session->selectionRect);
    freeImage(session->selectionImageSource);
    freeImage(session->selectionMaskSource);
    session->selectionImageSource = createBitmap(rect.right - rect.left, rect.bottom - rect.top, 24);
    session->selectionMaskSource = createBitmap(rect.right - rect.left, rect.bottom - rect.top, 24);
    BitmapBlock imageBlock, targetBlock;
    BitsView image, target;
    bool cut = false;
    if (lockPixels(editedImage(), &imageBlock, &image)) {
        if (lockPixels(session->selectionImageSource, &targetBlock, &target)) {
            cut = true;
            copyFromOffset(target, image, rect.left, rect.top);
            unlockBlock(targetBlock);
        }
        unlockBlock(imageBlock);
    }
    return cut && cutImage(session->selectionImageSource) && fillMask(session->selectionMaskSource);
}

namespace {

// Where the record keeps each value.
struct RecordedColour {
    int ColourValues::*value;
    int32_t SessionRecord::*field;
};
const RecordedColour recordedColours[] = {
    {&ColourValues::brightness, &SessionRecord::selectionBrightness},
    {&ColourValues::contrast, &SessionRecord::selectionContrast},
    {&ColourValues::saturation, &SessionRecord::selectionSaturation},
    {&ColourValues::hue, &SessionRecord::selectionHue},
    {&ColourValues::lift, &SessionRecord::selectionLift},
};

}  // namespace

ColourValues selectionColours()
{
    ColourValues values = neutralColourValues();
    for (const RecordedColour& colour : recordedColours)
        values.*colour.value = session->*colour.field;
    return values;
}

void setSelectionColours(const ColourValues& values)
{
    for (const RecordedColour& colour : recordedColours)
        session->*colour.field = values.*colour.value;
}

void adjustShownImages()
{
    applyColourAdjustment(session->selectionImageSource, session->selectionImage, session->selectionMaskSource,
                          session->selectionMask, selectionColours());
}

bool deriveShownImages()
{
    HGLOBAL image = duplicateBitmap(session->selectionImageSource, 1);
    HGLOBAL mask = duplicateBitmap(session->selectionMaskSource, 1);
    if (!image || !mask) {
        freeImage(image);
        freeImage(mask);
        return false;
    }
    freeImage(session->selectionImage);
    freeImage(session->selectionMask);
    session->selectionImage = image;
    session->selectionMask = mask;
    adjustShownImages();
    return true;
}

namespace {

// The present state, copied whole or not at all: what a reference keeps fits together also when memory is short.
struct StateCopy {
    PixelPoint* points;
    RowHead* crossings;
    HGLOBAL image, mask;
};

void freeStateCopy(StateCopy& copy)
{
    freePoints(copy.points);
    freeTable(copy.crossings);
    freeImage(copy.image);
    freeImage(copy.mask);
}

bool copyState(StateCopy& copy)
{
    copy = {copyOutlinePoints(session->outlinePoints, session->outlinePointCount),
            copyCrossings(session->homeCrossings), duplicateBitmap(session->selectionImageSource, 1),
            duplicateBitmap(session->selectionMaskSource, 1)};
    if (copy.points && copy.crossings && copy.image && copy.mask) return true;
    freeStateCopy(copy);
    return false;
}

// The record's fields of one reference state.
struct ReferenceFields {
    PixelPoint* SessionRecord::*points;
    RowHead* SessionRecord::*crossings;
    HGLOBAL SessionRecord::*image;
    HGLOBAL SessionRecord::*mask;
    int32_t SessionRecord::*pointCount;
    RECT SessionRecord::*rect;
};

const ReferenceFields stateA = {&SessionRecord::referencePointsA,     &SessionRecord::referenceCrossingsA,
                                &SessionRecord::referenceImageA,      &SessionRecord::referenceMaskA,
                                &SessionRecord::referencePointCountA, &SessionRecord::referenceRectA};
const ReferenceFields stateB = {&SessionRecord::referencePointsB,     &SessionRecord::referenceCrossingsB,
                                &SessionRecord::referenceImageB,      &SessionRecord::referenceMaskB,
                                &SessionRecord::referencePointCountB, &SessionRecord::referenceRectB};

bool storeReference(const ReferenceFields& state)
{
    StateCopy copy;
    if (!copyState(copy)) return false;
    StateCopy old = {session->*state.points, session->*state.crossings, session->*state.image, session->*state.mask};
    freeStateCopy(old);
    session->*state.points = copy.points;
    session->*state.crossings = copy.crossings;
    session->*state.image = copy.image;
    session->*state.mask = copy.mask;
    session->*state.pointCount = session->outlinePointCount;
    session->*state.rect = session->selectionRect;
    return true;
}

}  // namespace

bool storeReferenceA()
{
    return storeReference(stateA);
}

bool storeReferenceB()
{
    return storeReference(stateB);
}

bool storeReferences()
{
    if (session->rowCrossings) {
        freeTable(session->homeCrossings);
        session->homeCrossings = session->rowCrossings;
        session->rowCrossings = nullptr;
    }
    session->selectionHomeRect = session->selectionRect;
    session->selectionRotation = 0;
    return replacePoints(session->outlineSnapshot, session->outlinePoints, session->outlinePointCount) &&
           storeReferenceA() && storeReferenceB();
}

bool floatOutline()
{
    PixelRect rect;
    if (session->outlineIncomplete || !computeCrossingBounds(session->rowCrossings, rect)) return false;
    setSelectionRect(rect);
    if (!cutFloatingImages()) return false;
    setSelectionColours(neutralColourValues());
    return deriveShownImages() && storeReferences();
}

void clearSelection()
{
    session->selectionActive = 0;
    session->selectionRotation = 0;
    session->rotatingSelection = 0;
    session->trackingSelection = 0;
    session->selectionHitCode = 0;
    freeWorkingOutline();
    for (RECT* rect :
         {&session->selectionRect, &session->frameInnerRect, &session->selectionOuterRect, &session->frameOuterRect}) {
        SetRectEmpty(rect);
    }
    freeImages();
    dropComposite();
    freeReferences();
    redrawSelection();
    selectionProgress = {};
}
