#include <gtest/gtest.h>

#include <climits>

#include "tools/kernels/dab_placement.h"

static void expectPlaced(const DabPlacement& dab, int imageX, int width, int maskX, int ruleWidth)
{
    EXPECT_TRUE(dab.visible);
    EXPECT_EQ(imageX, dab.imageX);
    EXPECT_EQ(width, dab.width);
    EXPECT_EQ(maskX, dab.maskX);
    EXPECT_EQ(ruleWidth, dab.ruleWidth);
}

static DabPlacement placeAcross(int left, int maskWidth, int imageWidth)
{
    return placeDab({left, 0, left + maskWidth, 4}, maskWidth, 4, imageWidth, 4);
}

TEST(DabRect, EvenBrushReachesOnePixelFurtherLeft)
{
    const PixelRect even = dabRect({100, 50}, 16, 16, 1), odd = dabRect({100, 50}, 15, 15, 1);
    EXPECT_EQ(92, even.left);
    EXPECT_EQ(108, even.right);  // exclusive: the last pixel is x + 7
    EXPECT_EQ(42, even.top);
    EXPECT_EQ(93, odd.left);
    EXPECT_EQ(108, odd.right);
    EXPECT_EQ(58, odd.bottom);
}

TEST(DabRect, ScaleDoublesTheTruncatedHalf)
{
    const PixelRect rect = dabRect({100, 50}, 15, 10, 2);
    EXPECT_EQ(86, rect.left);
    EXPECT_EQ(116, rect.right);
    EXPECT_EQ(40, rect.top);
    EXPECT_EQ(60, rect.bottom);
}

TEST(DabPlacement, Inside)
{
    expectPlaced(placeAcross(10, 16, 100), 10, 16, 0, 16);
    expectPlaced(placeAcross(0, 16, 16), 0, 16, 0, 16);
}

TEST(DabPlacement, TopLeftCornerPaintsTheLowerRightQuarter)
{
    const DabPlacement dab = placeDab(dabRect({0, 0}, 16, 12, 1), 16, 12, 100, 100);
    expectPlaced(dab, 0, 8, 8, 8);
    EXPECT_EQ(0, dab.imageY);
    EXPECT_EQ(6, dab.height);
    EXPECT_EQ(6, dab.maskY);
    EXPECT_EQ(6, dab.ruleHeight);
}

TEST(DabPlacement, OverEachBorder)
{
    expectPlaced(placeAcross(-1, 16, 100), 0, 15, 1, 15);
    expectPlaced(placeAcross(-15, 16, 100), 0, 1, 15, 1);
    expectPlaced(placeAcross(99, 16, 100), 99, 1, 0, 1);
    expectPlaced(placeAcross(90, 16, 100), 90, 10, 0, 10);
}

TEST(DabPlacement, OutsideIsInvisible)
{
    EXPECT_FALSE(placeAcross(-16, 16, 100).visible);
    EXPECT_FALSE(placeAcross(100, 16, 100).visible);
    EXPECT_FALSE(placeAcross(INT_MAX - 20, 16, 100).visible);
    EXPECT_FALSE(placeAcross(INT_MIN, 16, 100).visible);
    EXPECT_FALSE(placeDab({0, -4, 4, 0}, 4, 4, 100, 100).visible);
    EXPECT_FALSE(placeDab({0, 100, 4, 104}, 4, 4, 100, 100).visible);
}

// The rule keeps what the left overhang leaves, starts at mask column 0, and nothing lies outside.
TEST(DabPlacement, BrushOverBothSidesStartsAtMaskColumnZero)
{
    expectPlaced(placeAcross(-3, 16, 5), 0, 5, 0, 13);
    expectPlaced(placeAcross(-10, 16, 5), 0, 5, 0, 6);
    expectPlaced(placeAcross(-11, 16, 5), 0, 5, 11, 5);  // reaches the right side only: the plain case
    const DabPlacement tall = placeDab({0, -3, 4, 13}, 4, 16, 4, 5);
    EXPECT_EQ(0, tall.maskY);
    EXPECT_EQ(5, tall.height);
    EXPECT_EQ(13, tall.ruleHeight);
}

TEST(DabPlacement, ClampedRectangleIsCutToTheImage)
{
    const PixelRect cut = placeDab({-3, 95, 13, 111}, 16, 16, 10, 100).clamped;
    EXPECT_EQ(0, cut.left);
    EXPECT_EQ(95, cut.top);
    EXPECT_EQ(10, cut.right);
    EXPECT_EQ(100, cut.bottom);
}

TEST(DabPlacement, NeverLeavesImageOrMask)
{
    for (int imageWidth = 1; imageWidth <= 9; ++imageWidth) {
        for (int maskWidth = 1; maskWidth <= 20; ++maskWidth) {
            for (int left = -25; left <= 12; ++left) {
                const DabPlacement dab = placeAcross(left, maskWidth, imageWidth);
                ASSERT_EQ(left + maskWidth > 0 && left < imageWidth, dab.visible);
                ASSERT_LE(dab.imageX + dab.width, imageWidth);
                ASSERT_LE(dab.maskX + dab.ruleWidth, maskWidth);
                ASSERT_LE(dab.width, dab.ruleWidth);
                ASSERT_GE(dab.maskX, 0);
                ASSERT_GE(dab.imageX, 0);
            }
        }
    }
}
