#include "selection/stored_selection.h"

#include "image/packed_bitmap.h"
#include "selection/clear_selection.h"
#include "selection/selection_drawing.h"
#include "selection/selection_state.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

// The origin on one axis: the far clamp comes last, so a selection larger than the image starts before it.
static int originOnAxis(int at, int size, int imageSize)
{
    if (at < size / 2 + 1) at = size / 2 + 1;
    if (at > imageSize - size / 2 - 1) at = imageSize - size / 2 - 1;
    return at - size / 2;
}

bool placeStoredSelection(POINT at, HGLOBAL image, HGLOBAL mask)
{
    clearSelection();
    int imageWidth = 0, imageHeight = 0;
    lockBitmapInfo(editedImage(), &imageWidth, &imageHeight, nullptr);
    session->rowCount = imageHeight;
    const int width = bitmapWidth(mask), height = bitmapHeight(mask);
    const PixelPoint corner = {originOnAxis((int)at.x, width, imageWidth),
                               originOnAxis((int)at.y, height, imageHeight)};
    FloatingSelection stored = {nullptr, 0, nullptr, image, mask, {0, 0, 0, 0}};
    if (imageHeight < 1) {
        freeFloating(stored);
        return false;
    }
    if (!traceFloating(image, mask, corner, stored)) return false;
    setSelectionColours(neutralColourValues());
    if (!changeSelection(stored, RENEW_A | RENEW_B, 0)) return false;
    redrawSelection();
    return true;
}
