#include "selection/geometry/rubber_band.h"

#include <gtest/gtest.h>

#include "tests/unit/pure/pixel_points.h"

static void expectRect(PixelRect expected, PixelRect actual)
{
    EXPECT_EQ(expected.left, actual.left);
    EXPECT_EQ(expected.top, actual.top);
    EXPECT_EQ(expected.right, actual.right);
    EXPECT_EQ(expected.bottom, actual.bottom);
}

static const FrameMetrics metrics = {3, 5};  // margins 7 and 11
static const PixelRect client = {0, 0, 600, 400};

static void expectMoved(int left, int top, int x, int y)
{
    expectRect(PixelRect{left, top, left + 100, top + 50},
               moveBand(PixelRect{200, 100, 300, 150}, PixelPoint{10, 20}, PixelPoint{x, y}, client, metrics));
}

TEST(RubberBand, MovedBandStopsAtTheMargins)
{
    expectMoved(190, 130, 200, 150);
    expectMoved(489, 130, 900, 150);  // 600 - 100 - 11
    expectMoved(190, 339, 200, 900);  // 400 - 50 - 11
    expectMoved(190, 11, 200, -80);
}

// Tested with the height of the system's frame, set with its width.
TEST(RubberBand, LeftMarginThatIsSetDiffersFromTheOneThatIsTested)
{
    expectMoved(11, 130, 21, 150);
    expectMoved(7, 130, 20, 150);
    expectMoved(7, 130, -500, 150);
}

static void expectResized(PixelRect expected, int hit, int x, int y)
{
    expectRect(expected, resizeBand(PixelRect{200, 100, 300, 180}, BandResize{hit, 24, 34}, PixelPoint{2, 1},
                                    PixelPoint{x, y}, client, metrics));
}

TEST(RubberBand, ResizingMovesTheDraggedSides)
{
    expectResized({150, 100, 300, 180}, HIT_LEFT_EDGE, 152, 999);
    expectResized({200, 100, 350, 180}, HIT_RIGHT_EDGE, 352, 999);
    expectResized({200, 50, 300, 180}, HIT_TOP_EDGE, 999, 51);
    expectResized({200, 100, 300, 220}, HIT_BOTTOM_EDGE, 999, 221);
    expectResized({150, 50, 300, 180}, HIT_TOP_LEFT, 152, 51);
    expectResized({200, 50, 350, 180}, HIT_TOP_RIGHT, 352, 51);
    expectResized({150, 100, 300, 220}, HIT_BOTTOM_LEFT, 152, 221);
    expectResized({200, 100, 350, 220}, HIT_BOTTOM_RIGHT, 352, 221);
    expectResized({200, 100, 300, 180}, HIT_NONE, 352, 221);
}

TEST(RubberBand, ResizedBandNeverTurnsInsideOut)
{
    expectResized({270, 100, 300, 180}, HIT_LEFT_EDGE, 900, 0);
    expectResized({200, 100, 230, 180}, HIT_RIGHT_EDGE, -900, 0);
    expectResized({200, 140, 300, 180}, HIT_TOP_EDGE, 0, 900);
    expectResized({200, 100, 300, 140}, HIT_BOTTOM_EDGE, 0, -900);
}

TEST(RubberBand, ResizedBandStopsAtTheMargins)
{
    expectResized({7, 11, 300, 180}, HIT_TOP_LEFT, -50, -50);
    expectResized({11, 100, 300, 180}, HIT_LEFT_EDGE, 13, 0);
    expectResized({7, 100, 300, 180}, HIT_LEFT_EDGE, 12, 0);
    expectResized({200, 100, 589, 389}, HIT_BOTTOM_RIGHT, 5000, 5000);
}

TEST(RubberBand, GrabOffsetsAreFromTheDraggedSides)
{
    const PixelRect band = {200, 100, 300, 180};
    const PixelPoint at = {210, 130};
    expectPoint(10, 30, bandGrabOffset(band, HIT_INSIDE, at));
    expectPoint(10, 0, bandGrabOffset(band, HIT_LEFT_EDGE, at));
    expectPoint(-90, 0, bandGrabOffset(band, HIT_RIGHT_EDGE, at));
    expectPoint(0, 30, bandGrabOffset(band, HIT_TOP_EDGE, at));
    expectPoint(0, -50, bandGrabOffset(band, HIT_BOTTOM_EDGE, at));
    expectPoint(10, 30, bandGrabOffset(band, HIT_TOP_LEFT, at));
    expectPoint(-90, 30, bandGrabOffset(band, HIT_TOP_RIGHT, at));
    expectPoint(10, -50, bandGrabOffset(band, HIT_BOTTOM_LEFT, at));
    expectPoint(-90, -50, bandGrabOffset(band, HIT_BOTTOM_RIGHT, at));
}
