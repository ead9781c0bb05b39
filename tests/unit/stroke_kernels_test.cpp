#include <gtest/gtest.h>

#include "tests/unit/painting_bench.h"
#include "tools/brush_raster.h"
#include "tools/stroke_kernels.h"
#include "tools/stroke_rows.h"

using reference::Grid;

static BrushStroke strokeOn(PaintingBench& bench, reference::Pixel colour, int opacity, bool soft)
{
    return {bench.image.view(), bench.strokeStart.view(), bench.coverage.view(), bench.maskMap.view(),
            rgbOf(colour), opacity, soft};
}

static PaintingBench strokeBench(Dice& dice, int width, int height, const Grid& mask)
{
    reference::Scene scene;
    scene.image = scene.strokeStart = randomPicture(dice, width, height);
    scene.original = scene.patch = plainPicture(1, 1, {0, 0, 0});
    scene.coverage = plainGrid(width, height, 0);
    return paintingBench(scene, mask);
}

static void layReferenceSegment(PaintingBench& bench, reference::Dab dab, PixelPoint from, PixelPoint to)
{
    for (const std::pair<int, int>& point : reference::linePoints(from.x, from.y, to.x, to.y)) {
        dab.left = point.first - bench.mask.width / 2;
        dab.top = point.second - bench.mask.height / 2;
        reference::layDab(bench.scene, dab, bench.mask);
    }
}

static Grid randomMask(Dice& dice)
{
    if (dice.upTo(3) != 0) return reference::brushGrid(dice.between(1, 50), dice.between(1, 50), dice.upTo(1));
    Grid mask = plainGrid(dice.between(1, 40), dice.between(1, 40), 0);
    for (int& cell : mask.cells)
        cell = dice.upTo(1);
    return mask;
}

// Strokes of several segments that cross each other and every border.
TEST(BrushSegment, RandomStrokesMatchTheReferenceDabByDab)
{
    for (uint64_t seed = 1; seed <= 400; ++seed) {
        Dice dice = {seed};
        const Grid mask = randomMask(dice);
        const bool narrow = dice.upTo(4) == 0;
        PaintingBench bench = strokeBench(dice, dice.between(1, narrow ? 6 : 150), dice.between(1, 120), mask);
        const reference::Dab dab = {reference::BRUSH, dice.upTo(1) != 0, 0, 0,
                                    {dice.upTo(255), dice.upTo(255), dice.upTo(255)}, dice.upTo(100)};
        const BrushStroke stroke = strokeOn(bench, dab.colour, dab.opacity, dab.soft);
        PixelPoint from = {dice.between(-30, 160), dice.between(-30, 130)};
        for (int k = 0; k < 4; ++k) {
            PixelPoint to = {dice.between(-30, 160), dice.between(-30, 130)};
            if (dice.upTo(4) == 0) to.x = from.x;
            if (dice.upTo(4) == 0) to.y = from.y;
            layReferenceSegment(bench, dab, from, to);
            paintBrushSegment(stroke, from, to);
            ASSERT_TRUE(sameBytes(bench)) << "seed " << seed << " segment " << k;
            from = to;
        }
    }
}

TEST(BrushSegment, PlainWayGivesTheSameBytes)
{
    for (int soft = 0; soft < 2; ++soft) {
        Dice dice = {5};
        PaintingBench fast = strokeBench(dice, 97, 80, reference::brushGrid(16, 15, 0));
        PaintingBench plain = fast;
        paintBrushSegment(strokeOn(fast, {1, 128, 254}, 49, soft != 0), {-5, 10}, {100, 70});
        paintBrushDabs(strokeOn(plain, {1, 128, 254}, 49, soft != 0), {-5, 10}, {100, 70});
        EXPECT_EQ(plain.image.bytes, fast.image.bytes);
        EXPECT_EQ(plain.coverage.bytes, fast.coverage.bytes);
        EXPECT_FALSE(sameBytes(fast));
    }
}

TEST(StrokeRows, EveryByteColourAndWeight)
{
    for (int weight = 0; weight <= 100; ++weight) {
        for (int over = 0; over < 256; ++over) {
            uint8_t under[256 * 3], pixels[256 * 3], cells[256];
            for (int k = 0; k < 256 * 3; ++k)
                under[k] = (uint8_t)(k / 3);
            memset(pixels, 7, sizeof pixels);
            memset(cells, weight, sizeof cells);
            blendCoveredRow(pixels, under, cells, 256, Rgb{(uint8_t)over, (uint8_t)over, (uint8_t)over});
            for (int k = 0; k < 256 * 3; ++k)
                ASSERT_EQ(weight == 0 ? 7 : (under[k] * (100 - weight) + over * weight) / 100, pixels[k]);
        }
    }
}
