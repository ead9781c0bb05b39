#include <gtest/gtest.h>

#include <set>

#include "selection/geometry/frame_layout.h"

static const PixelRect inner = {40, 60, 300, 220};
static const BandUnit band = {10, 7};

static void expectRect(PixelRect expected, PixelRect actual)
{
    EXPECT_EQ(expected.left, actual.left);
    EXPECT_EQ(expected.top, actual.top);
    EXPECT_EQ(expected.right, actual.right);
    EXPECT_EQ(expected.bottom, actual.bottom);
}

TEST(FrameLayout, OuterRectangleTakesDevicePixelsUnconverted)
{
    expectRect(PixelRect{31, 49, 309, 231}, frameOuterRectOf(inner, FrameMetrics{4, 5}));
}

// Written out side by side, with their uneven gaps.
TEST(FrameLayout, NineteenButtonsLieWhereTheyShould)
{
    const int L = 31, T = 49, R = 309, B = 231, dx = 10, dy = 7;
    const FrameButtons buttons = layOutFrameButtons(PixelRect{L, T, R, B}, BandUnit{dx, dy});
    const PixelRect* r = buttons.rects;
    expectRect({L, T, L + dx, T + dy}, r[FRAME_HANDLE_TOP_LEFT]);
    expectRect({L + dx + 2, T, L + 3 * dx + 2, T + dy}, r[FRAME_BUTTON_CLOSE]);
    expectRect({L + 3 * dx + 4, T, L + 5 * dx + 4, T + dy}, r[FRAME_BUTTON_APPLY]);
    expectRect({R - 5 * dx - 3, T, R - 3 * dx - 3, T + dy}, r[FRAME_BUTTON_FLIP_HORIZONTAL]);
    expectRect({R - 3 * dx - 2, T, R - dx - 2, T + dy}, r[FRAME_BUTTON_FLIP_VERTICAL]);
    expectRect({R - dx - 1, T, R - 1, T + dy}, r[FRAME_HANDLE_TOP_RIGHT]);
    expectRect({L, T + dy + 1, L + dx, T + 3 * dy + 1}, r[FRAME_BUTTON_BRIGHTER]);
    expectRect({L, T + 3 * dy + 2, L + dx, T + 5 * dy + 2}, r[FRAME_BUTTON_DARKER]);
    expectRect({R - dx - 1, T + dy + 1, R - 1, T + 3 * dy + 1}, r[FRAME_BUTTON_ROTATE]);
    expectRect({L, B - 5 * dy - 2, L + dx, B - 3 * dy - 2}, r[FRAME_BUTTON_HUE_UP]);
    expectRect({L, B - 3 * dy - 1, L + dx, B - dy - 1}, r[FRAME_BUTTON_HUE_DOWN]);
    expectRect({R - dx - 1, B - 5 * dy - 3, R - 1, B - 3 * dy - 3}, r[FRAME_BUTTON_CONTRAST_MORE]);
    expectRect({R - dx - 1, B - 3 * dy - 2, R - 1, B - dy - 2}, r[FRAME_BUTTON_CONTRAST_LESS]);
    expectRect({L, B - dy, L + dx, B}, r[FRAME_HANDLE_BOTTOM_LEFT]);
    expectRect({L + dx + 1, B - dy - 1, L + 3 * dx + 1, B - 1}, r[FRAME_BUTTON_SATURATION_MORE]);
    expectRect({L + 3 * dx + 2, B - dy - 1, L + 5 * dx + 2, B - 1}, r[FRAME_BUTTON_SATURATION_LESS]);
    expectRect({R - 5 * dx - 2, B - dy - 1, R - 3 * dx - 2, B - 1}, r[FRAME_BUTTON_LIFT_DOWN]);
    expectRect({R - 3 * dx - 2, B - dy - 1, R - dx - 2, B - 1}, r[FRAME_BUTTON_LIFT_UP]);
    expectRect({R - dx - 1, B - dy, R - 1, B}, r[FRAME_HANDLE_BOTTOM_RIGHT]);
}

static int hitAt(int x, int y)
{
    const PixelRect outer = frameOuterRectOf(inner, FrameMetrics{4, 5});
    return hitTestFrame(inner, outer, layOutFrameButtons(outer, band), band, PixelPoint{x, y});
}

TEST(FrameLayout, EveryButtonIsHitAtItsCorners)
{
    const PixelRect outer = frameOuterRectOf(inner, FrameMetrics{4, 5});
    const FrameButtons buttons = layOutFrameButtons(outer, band);
    std::set<int> hits;
    for (int n = 0; n < FRAME_BUTTON_COUNT; ++n) {
        const PixelRect r = buttons.rects[n];
        EXPECT_EQ(hitOfButton(n), hitAt(r.left, r.top)) << n;
        EXPECT_EQ(hitOfButton(n), hitAt(r.right - 1, r.bottom - 1)) << n;
        EXPECT_NE(hitOfButton(n), hitAt(r.right, r.bottom)) << n;
        hits.insert(hitOfButton(n));
    }
    EXPECT_EQ((std::set<int>{3, 6, 7, 8, 9, 13, 14, 16, 17, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110}), hits);
    EXPECT_EQ(HIT_NONE, hitOfButton(-1));
    EXPECT_EQ(HIT_NONE, hitOfButton(FRAME_BUTTON_COUNT));
}

TEST(FrameLayout, ButtonsMeanTheirOwnOperations)
{
    EXPECT_EQ(3, hitOfButton(FRAME_BUTTON_APPLY));
    EXPECT_EQ(7, hitOfButton(FRAME_BUTTON_FLIP_VERTICAL));
    EXPECT_EQ(6, hitOfButton(FRAME_BUTTON_FLIP_HORIZONTAL));
    EXPECT_EQ(9, hitOfButton(FRAME_BUTTON_BRIGHTER));
    EXPECT_EQ(8, hitOfButton(FRAME_BUTTON_DARKER));
    EXPECT_EQ(109, hitOfButton(FRAME_BUTTON_CLOSE));
    EXPECT_EQ(108, hitOfButton(FRAME_BUTTON_LIFT_UP));
    EXPECT_EQ(110, hitOfButton(FRAME_BUTTON_LIFT_DOWN));
    EXPECT_EQ(OPERATION_MOVE, operationOfHit(1));
    EXPECT_EQ(OPERATION_APPLY, operationOfHit(3));
    EXPECT_EQ(OPERATION_FLIP_HORIZONTAL, operationOfHit(6));
    EXPECT_EQ(OPERATION_FLIP_VERTICAL, operationOfHit(7));
    for (int hit : {8, 9, 102, 103, 104, 105, 106, 107, 108, 110})
        EXPECT_EQ(OPERATION_COLOUR, operationOfHit(hit));
    for (int hit = 10; hit <= 17; ++hit)
        EXPECT_EQ(OPERATION_RESIZE, operationOfHit(hit));
    EXPECT_EQ(OPERATION_ROTATE, operationOfHit(101));
    EXPECT_EQ(OPERATION_CLOSE, operationOfHit(109));
    for (int hit : {-1, 0, 2, 4, 5, 18, 100, 111})
        EXPECT_EQ(OPERATION_NONE, operationOfHit(hit));
}

TEST(FrameLayout, RightAndBottomLineOfTheFrameAreOutside)
{
    EXPECT_EQ(HIT_TOP_EDGE, hitAt(150, 49));
    EXPECT_EQ(HIT_NONE, hitAt(150, 48));
    EXPECT_EQ(HIT_BOTTOM_EDGE, hitAt(150, 230));
    EXPECT_EQ(HIT_NONE, hitAt(150, 231));
    EXPECT_EQ(HIT_LEFT_EDGE, hitAt(31, 140));
    EXPECT_EQ(HIT_NONE, hitAt(30, 140));
    EXPECT_EQ(HIT_RIGHT_EDGE, hitAt(308, 140));
    EXPECT_EQ(HIT_NONE, hitAt(309, 140));
}

TEST(FrameLayout, BandBelongsToTheEdgesAndSidesWinInTheCorners)
{
    EXPECT_EQ(HIT_LEFT_EDGE, hitAt(50, 140));
    EXPECT_EQ(HIT_INSIDE, hitAt(51, 140));
    EXPECT_EQ(HIT_INSIDE, hitAt(289, 140));
    EXPECT_EQ(HIT_RIGHT_EDGE, hitAt(290, 140));
    EXPECT_EQ(HIT_TOP_EDGE, hitAt(150, 67));
    EXPECT_EQ(HIT_INSIDE, hitAt(150, 68));
    EXPECT_EQ(HIT_INSIDE, hitAt(150, 212));
    EXPECT_EQ(HIT_BOTTOM_EDGE, hitAt(150, 213));
    EXPECT_EQ(HIT_LEFT_EDGE, hitAt(50, 60));
    EXPECT_EQ(HIT_RIGHT_EDGE, hitAt(290, 60));
}

TEST(FrameLayout, NoFrameIsHitWithoutRectangles)
{
    const PixelRect outer = frameOuterRectOf(inner, FrameMetrics{4, 5});
    const FrameButtons buttons = layOutFrameButtons(outer, band);
    EXPECT_EQ(HIT_NONE, hitTestFrame(PixelRect{}, outer, buttons, band, PixelPoint{150, 140}));
    EXPECT_EQ(HIT_NONE, hitTestFrame(inner, PixelRect{}, buttons, band, PixelPoint{150, 140}));
}

static ColourValues stepped(ColourValues adjust, int hit, int times)
{
    for (int n = 0; n < times; ++n)
        EXPECT_TRUE(stepColourOfHit(adjust, hit));
    return adjust;
}

TEST(FrameLayout, ColourStepsStopAtTheirLimits)
{
    EXPECT_EQ(-5, stepped(neutralColourValues(), HIT_BRIGHTER, 1).brightness);
    EXPECT_EQ(-100, stepped(neutralColourValues(), HIT_BRIGHTER, 50).brightness);
    EXPECT_EQ(100, stepped(neutralColourValues(), HIT_DARKER, 50).brightness);
    EXPECT_EQ(-127, stepped(neutralColourValues(), HIT_HUE_DOWN, 50).hue);
    EXPECT_EQ(126, stepped(neutralColourValues(), HIT_HUE_UP, 42).hue);
    EXPECT_EQ(127, stepped(neutralColourValues(), HIT_HUE_UP, 43).hue);
    EXPECT_EQ(0, stepped(neutralColourValues(), HIT_SATURATION_MORE, 11).saturation);
    EXPECT_EQ(100, stepped(neutralColourValues(), HIT_SATURATION_LESS, 11).saturation);
    EXPECT_EQ(-100, stepped(neutralColourValues(), HIT_CONTRAST_MORE, 21).contrast);
    EXPECT_EQ(100, stepped(neutralColourValues(), HIT_CONTRAST_LESS, 21).contrast);
    EXPECT_EQ(0, stepped(neutralColourValues(), HIT_LIFT_DOWN, 3).lift);
    EXPECT_EQ(300, stepped(neutralColourValues(), HIT_LIFT_UP, 300).lift);
    ColourValues adjust = neutralColourValues();
    for (int hit : {0, 1, 3, 10, 101, 109})
        EXPECT_FALSE(stepColourOfHit(adjust, hit));
    EXPECT_EQ(50, adjust.saturation);
}
