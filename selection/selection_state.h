// The floating selection's state in the session record, and how it changes. All coordinates are image
// pixels.
//
// Shown are selectionImage and selectionMask; they are always derived from selectionImageSource and
// selectionMaskSource, which hold unadjusted pixels, with the five colour parameters applied once. Two
// reference states are kept besides:
//   A  the outline and pixels before any turn; every turn starts from it with the accumulated angle
//   B  the state at the last close, flip, turn or reshape; every resize starts from it
// so that nothing compounds.
#pragma once

#include <windows.h>

#include "image/pixels/bits_view.h"
#include "selection/geometry/frame_layout.h"
#include "selection/geometry/outline.h"

inline PixelRect pixelRectOf(const RECT& rect)
{
    return {(int)rect.left, (int)rect.top, (int)rect.right, (int)rect.bottom};
}

inline RECT rectOf(const PixelRect& rect)
{
    return {rect.left, rect.top, rect.right, rect.bottom};
}

// The outline that is being drawn lives in the record's fields; between these two calls it is a value.
Outline takeOutline();
void putOutline(const Outline& outline);

// selectionRect becomes `rect`: the outer rectangle, the frame's rectangles and its buttons follow. The frame is laid
// out in image pixels; on a zoomed canvas in client pixels, so that it keeps its size.
void setSelectionRect(const PixelRect& rect);
void layOutFrame();

// Makes the source images for the present selectionRect and rowCrossings from the edited image. False
// when memory is short.
bool cutFloatingImages();

// The selection's colour values, as the record keeps them.
ColourValues selectionColours();
void setSelectionColours(const ColourValues& values);

// The shown images again from the sources, with the colour parameters. False, and nothing changed, when
// memory is short.
bool deriveShownImages();
void adjustShownImages();  // the same where they are of the sources' size already

// The present state becomes both reference states, and its crossings homeCrossings; the angle is 0.
// Frees the working crossing table. False when memory is short: then a state stays as it was.
bool storeReferences();
bool storeReferenceA();
bool storeReferenceB();

// Makes the working outline the floating selection: bounds, images, reference states. False when it
// encloses nothing or memory is short: then nothing is left of it.
bool floatOutline();

// A copy of `from` takes the field's place; on failure the field keeps what it has.
bool replacePoints(PixelPoint*& field, const PixelPoint* from, int count);

// The frame's band unit in the frame's pixels, the system's frame sizes, and the buttons of the present frame.
BandUnit frameBand();
FrameMetrics frameMetrics();
FrameButtons frameButtons();
