#include <gtest/gtest.h>

#include "session/aspect_ratio.h"

static const AspectRatio photo = {300, 200, 8, 27};

TEST(AspectRatio, WidthDrivesHeight)
{
    const WindowSize size = keepAspect(photo, {308, 227}, {608, 227}, true);
    EXPECT_EQ(608u, size.width);
    EXPECT_EQ(427u, size.height);
}

TEST(AspectRatio, HeightDrivesWidth)
{
    const WindowSize size = keepAspect(photo, {308, 227}, {308, 427}, false);
    EXPECT_EQ(608u, size.width);
    EXPECT_EQ(427u, size.height);
}

TEST(AspectRatio, BothChangedFollowsThePressedEdge)
{
    EXPECT_EQ(608u, keepAspect(photo, {308, 227}, {400, 427}, true).width);
    EXPECT_EQ(427u, keepAspect(photo, {308, 227}, {608, 300}, false).height);
}

TEST(AspectRatio, UnchangedSizeIsLeftAlone)
{
    const WindowSize size = keepAspect({300, 200, 8, 27}, {500, 500}, {500, 500}, true);
    EXPECT_EQ(500u, size.width);
    EXPECT_EQ(500u, size.height);
}

TEST(AspectRatio, DivisionTruncates)
{
    EXPECT_EQ(200u * 100 / 300 + 27, heightForWidth(photo, 108));  // 66, not 67
}

TEST(AspectRatio, MissingSizesCountAs640By480)
{
    EXPECT_EQ(480u, heightForWidth({0, 200, 0, 0}, 640));
    EXPECT_EQ(640u, widthForHeight({300, 0, 0, 0}, 480));
}

TEST(AspectRatio, CutToScreenWidthThenHeight)
{
    const WindowSize wide = cutToScreen(photo, {3008, 2027}, 1608, 1200);
    EXPECT_EQ(1608u, wide.width);
    EXPECT_EQ(200u * 1600 / 300 + 27, wide.height);
    const WindowSize flat = cutToScreen(photo, {3008, 2027}, 1608, 827);
    EXPECT_EQ(827u, flat.height);
    EXPECT_EQ(300u * 800 / 200 + 8, flat.width);
}
