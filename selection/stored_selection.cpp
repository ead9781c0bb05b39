#include "selection/stored_selection.h"

#include "image/bitmap_block.h"
#include "image/packed_bitmap.h"
#include "selection/geometry/mask_trace.h"
#include "selection/geometry/row_crossings.h"
#include "selection/selection.h"
#include "selection/selection_drawing.h"
#include "selection/selection_state.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

namespace {

// The origin on one axis: the far clamp comes last, so a selection larger than the image starts before it.
int originOnAxis(int at, int size, int imageSize)
{
    if (at < size / 2 + 1) at = size / 2 + 1;
    if (at > imageSize - size / 2 - 1) at = imageSize - size / 2 - 1;
    return at - size / 2;
}

bool traceOutline(HGLOBAL mask, PixelPoint origin, Outline& outline)
{
    BitmapBlock block;
    BitsView pixels;
    if (!lockPixels(mask, &block, &pixels)) return false;
    PixelPoint* points = nullptr;
    int count = 0;
    const bool traced = traceMask(pixels, origin, points, count) == TRACE_CLOSED &&
                        replayOutline(outline, session->rowCount, points, count) && !outline.incomplete;
    freeOutlinePoints(points);
    unlockBlock(block);
    return traced;
}

}  // namespace

bool placeStoredSelection(POINT at, HGLOBAL image, HGLOBAL mask)
{
    clearSelection();
    int imageWidth = 0, imageHeight = 0;
    lockBitmapInfo(editedImage(), &imageWidth, &imageHeight, nullptr);
    session->rowCount = imageHeight;
    session->selectionImageSource = image;
    session->selectionMaskSource = mask;
    const int width = bitmapWidth(mask), height = bitmapHeight(mask);
    const PixelPoint origin = {originOnAxis((int)at.x, width, imageWidth),
                               originOnAxis((int)at.y, height, imageHeight)};
    Outline outline = {};
    if (imageHeight < 1 || !image || !traceOutline(mask, origin, outline)) {
        freeOutline(outline);
        clearSelection();
        return false;
    }
    putOutline(outline);
    setSelectionRect({origin.x, origin.y, origin.x + width, origin.y + height});
    setSelectionColours(neutralColourValues());
    if (!deriveShownImages() || !storeReferences()) {
        clearSelection();
        return false;
    }
    session->selectionActive = 1;
    redrawSelection();
    return true;
}
