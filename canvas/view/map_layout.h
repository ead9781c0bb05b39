// The small map of the whole image that a zoomed canvas shows in a lower corner: where it lies, what its frame
// encloses, and its pixels. Client pixels, y downward.
#pragma once

#include "canvas/view/view.h"

// The map with its border of one pixel; all 0 when the canvas has no room for one. It lies on the right, or on
// the left while the pointer is near its place on the right.
PixelRect mapRect(const CanvasView& view, bool onLeft);
bool mapGivesWay(const CanvasView& view, PixelPoint pointer);

// Without the border: where the image is.
PixelRect mapInside(const PixelRect& map);

// What is seen of the image, at least one pixel large, within the map's inside.
PixelRect mapFrame(const CanvasView& view, const PixelRect& inside);

// Makes the pixels of the thumbnail that show a rectangle of the image: each the mean of nine samples.
void renewThumbnail(const BitsView& thumbnail, const BitsView& image, const PixelRect& part);
