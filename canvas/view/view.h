// What the canvas shows of the image: all of it, or a part at a scale of its own. One value holds it, and
// every conversion between the canvas and the image goes through it. Pure numbers: no window, no device
// context. Client points are pixels of the canvas, y downward, and so are image points.
//
// Fitted, the whole image fills the canvas, each axis by itself. Zoomed, one scale holds for both axes, and
// of the image a part as large as the canvas is seen. Zoomed is always larger than fitted.
#pragma once

#include <cstdint>

#include "image/pixels/bits_view.h"
#include "session/ground/canvas_view.h"

// So many screen pixels show so many image pixels.
struct ViewScale {
    int screen, image;
};

constexpr int ZOOM_STEP_COUNT = 14;
constexpr int ZOOM_STEP_100 = 5;

// The scale of a step, 1..ZOOM_STEP_COUNT: 25 % to 3200 %.
ViewScale viewScale(int step);

bool isZoomed(const CanvasView& view);
int viewPercent(const CanvasView& view);  // rounded; 0 when fitted

// ---- conversions

// The image pixel that a client point hits. Zoomed it is the pixel that is shown there; fitted it is the
// nearest one, so that the right and the bottom border give the image's width and height.
PixelPoint imagePointAt(const CanvasView& view, PixelPoint client);

// Where a rectangle of image pixels is shown: zoomed exactly the screen pixels that show one of them, which
// below 100 % may be none; fitted the nearest.
PixelRect deviceRectAt(const CanvasView& view, const PixelRect& image);

// Puts each point where deviceRectAt shows the corner of a rectangle that begins there.
void devicePointsAt(const CanvasView& view, PixelPoint* points, int count);

// Every screen pixel that the rectangle reaches into.
PixelRect deviceCover(const CanvasView& view, const PixelRect& image);

// The image pixels that a part of the canvas shows, whole. Fitted, all that it reaches into.
PixelRect imageCover(const CanvasView& view, const PixelRect& device);

// How a row or a column of screen pixels walks over the image: the pixel of screen position s is
// (s * image + offset) / screen, rounded down.
struct ViewAxis {
    int screen, image;
    int64_t offset;
};

struct ViewAxes {
    ViewAxis x, y;
};

ViewAxes viewAxes(const CanvasView& view);  // zoomed only

// ---- changes; each gives a view that does not leave the image

CanvasView fittedView(const CanvasView& view);

// The canvas or the image has another size: the scale and the centre stay, as long as the scale is larger
// than fitted; fitted stays fitted.
CanvasView resizedView(const CanvasView& view, ViewSize client, ViewSize image);

// One step in (1) or out (-1); below the first step that is larger than fitted lies fitted. The image pixel
// at the client point stays under it, unless the image's border comes first.
CanvasView steppedView(const CanvasView& view, int direction, PixelPoint client);

// The same about the canvas's centre.
CanvasView steppedAboutCentre(const CanvasView& view, int direction);

// 100 % about the canvas's centre; fitted when that is as large.
CanvasView fullSizeView(const CanvasView& view);

// The view moves over the image, to the right and downward, by so many screen pixels.
CanvasView pannedView(const CanvasView& view, int dx, int dy);
