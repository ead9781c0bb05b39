// The frame around the floating selection, as the record keeps it.
#pragma once

#include <windows.h>

#include "image/pixels/bits_view.h"
#include "selection/geometry/frame_layout.h"

inline PixelRect pixelRectOf(const RECT& rect)
{
    return {(int)rect.left, (int)rect.top, (int)rect.right, (int)rect.bottom};
}

inline RECT rectOf(const PixelRect& rect)
{
    return {rect.left, rect.top, rect.right, rect.bottom};
}

// selectionRect becomes `rect`: the outer rectangle, the frame's rectangles and its buttons follow. The frame is laid
// out in image pixels; on a zoomed canvas in client pixels, so that it keeps its size.
void setSelectionRect(const PixelRect& rect);
void layOutFrame();

// No selection, and so no frame.
void emptySelectionRects();

// The frame's band unit in the frame's pixels, the system's frame sizes (device pixels), and the buttons of the present
// frame.
BandUnit frameBand();
FrameMetrics frameMetrics();
FrameButtons frameButtons();
