// Where the rubber band is while the pointer drags it. No windows: sizes of the system's frames come in as
// numbers. Points and rectangles are client coordinates of the window that the band is drawn on.
#pragma once

#include "image/pixels/bits_view.h"
#include "selection/geometry/frame_layout.h"

// Distance from the pointer to what it drags: the band's corner when it is moved, else the sides that
// the hit code drags.
PixelPoint bandGrabOffset(PixelRect band, int hit, PixelPoint pointer);

// The band with its size, following the pointer within the client rectangle. On systems whose two frame
// sizes differ, the left side is tested with one of them and set with the other:
// it decides where a dragged band stops.
PixelRect moveBand(PixelRect band, PixelPoint grab, PixelPoint pointer, PixelRect client, FrameMetrics metrics);

// The band with the sides that the hit code drags following the pointer. At least 6 more than
// (extraWidth, extraHeight) in size before the client rectangle's margins are applied.
struct BandResize {
    int hit;
    int extraWidth, extraHeight;
};
PixelRect resizeBand(PixelRect band, BandResize resize, PixelPoint grab, PixelPoint pointer, PixelRect client,
                     FrameMetrics metrics);
