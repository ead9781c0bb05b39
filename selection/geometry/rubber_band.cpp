#include "selection/geometry/rubber_band.h"

struct DraggedSides {
    bool left, top, right, bottom;
};

static DraggedSides draggedSides(int hit)
{
    switch (hit) {
    case HIT_LEFT_EDGE: return {true, false, false, false};
    case HIT_RIGHT_EDGE: return {false, false, true, false};
    case HIT_TOP_EDGE: return {false, true, false, false};
    case HIT_BOTTOM_EDGE: return {false, false, false, true};
    case HIT_TOP_LEFT: return {true, true, false, false};
    case HIT_TOP_RIGHT: return {false, true, true, false};
    case HIT_BOTTOM_LEFT: return {true, false, false, true};
    case HIT_BOTTOM_RIGHT: return {false, false, true, true};
    default: return {false, false, false, false};
    }
}

PixelPoint bandGrabOffset(PixelRect band, int hit, PixelPoint pointer)
{
    if (hit == HIT_INSIDE) return PixelPoint{pointer.x - band.left, pointer.y - band.top};
    const DraggedSides sides = draggedSides(hit);
    return PixelPoint{sides.left    ? pointer.x - band.left
                      : sides.right ? pointer.x - band.right
                                    : 0,
                      sides.top      ? pointer.y - band.top
                      : sides.bottom ? pointer.y - band.bottom
                                     : 0};
}

// How far the band stays from the client rectangle's sides.
struct BandMargins {
    int leftTest, leftSet, others;
};

static BandMargins bandMargins(FrameMetrics metrics)
{
    const int byHeight = 2 * metrics.cyFrame + 1, byWidth = 2 * metrics.cxFrame + 1;
    return BandMargins{byHeight, byWidth, byHeight};  // tested with one, set with the other: meant
}

static void keepLeftTop(PixelRect& band, PixelRect client, const BandMargins& margins)
{
    if (band.left - margins.leftTest < client.left) band.left = client.left + margins.leftSet;
    if (band.top - margins.others < client.top) band.top = client.top + margins.others;
}

PixelRect moveBand(PixelRect band, PixelPoint grab, PixelPoint pointer, PixelRect client, FrameMetrics metrics)
{
    const BandMargins margins = bandMargins(metrics);
    const int width = band.right - band.left, height = band.bottom - band.top;
    band.left = pointer.x - grab.x;
    band.top = pointer.y - grab.y;
    keepLeftTop(band, client, margins);
    if (band.left + margins.others + width > client.right) band.left = client.right - width - margins.others;
    if (band.top + margins.others + height > client.bottom) band.top = client.bottom - height - margins.others;
    return PixelRect{band.left, band.top, band.left + width, band.top + height};
}

static int lesser(int a, int b)
{
    return a < b ? a : b;
}

static int greater(int a, int b)
{
    return a > b ? a : b;
}

PixelRect resizeBand(PixelRect band, BandResize resize, PixelPoint grab, PixelPoint pointer, PixelRect client,
                     FrameMetrics metrics)
{
    const DraggedSides sides = draggedSides(resize.hit);
    const BandMargins margins = bandMargins(metrics);
    const int width = resize.extraWidth + 6, height = resize.extraHeight + 6;
    const int x = pointer.x - grab.x, y = pointer.y - grab.y;
    if (sides.left) band.left = lesser(x, band.right - width);
    if (sides.right) band.right = greater(x, band.left + width);
    if (sides.top) band.top = lesser(y, band.bottom - height);
    if (sides.bottom) band.bottom = greater(y, band.top + height);
    keepLeftTop(band, client, margins);
    if (band.right + margins.others > client.right) band.right = client.right - margins.others;
    if (band.bottom + margins.others > client.bottom) band.bottom = client.bottom - margins.others;
    return band;
}
