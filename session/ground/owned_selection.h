// What the record owns of a selection: selection/selection_state.h.
#pragma once

#include <windows.h>

#include "image/pixels/bits_view.h"

struct RowHead;  // selection/geometry/row_crossings.h

// One state; what is done with it is in selection/floating_selection.h. All coordinates are image pixels.
struct FloatingSelection {
    PixelPoint* points;  // the outline, image pixels
    int pointCount;
    RowHead* crossings;   // of the rectangle's rows; rows and columns count from its corner
    HGLOBAL image, mask;  // 24-bit bitmaps of the rectangle's size; colours not adjusted
    PixelRect rect;       // image pixels
};

enum SelectionState { STATE_NOW, STATE_A, STATE_B, SELECTION_STATE_COUNT };

// The states and what is shown of them.
struct OwnedSelection {
    FloatingSelection states[SELECTION_STATE_COUNT];
    PixelPoint* shownPoints;
    HGLOBAL shownImage, shownMask;
};
