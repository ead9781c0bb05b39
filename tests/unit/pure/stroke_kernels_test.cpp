#include <gtest/gtest.h>

#include "tests/unit/pure/painting_bench.h"
#include "tests/unit/vector_levels.h"
#include "tools/kernels/brush_raster.h"
#include "tools/kernels/stroke_kernels.h"

using reference::Grid;

class BrushSegment : public VectorLevels {};
FOR_EACH_VECTOR_LEVEL(BrushSegment);

static BrushStroke strokeOn(PaintingBench& bench, reference::Pixel colour, int opacity, bool soft)
{
    return {bench.image.view(),
            bench.strokeStart.view(),
            bench.coverage.view(),
            bench.maskMap.view(),
            rgbOf(colour),
            opacity,
            soft};
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
TEST_P(BrushSegment, RandomStrokesMatchTheReferenceDabByDab)
{
    for (uint64_t seed = 1; seed <= 400; ++seed) {
        Dice dice = {seed};
        const Grid mask = randomMask(dice);
        const bool narrow = dice.upTo(4) == 0;
        PaintingBench bench = strokeBench(dice, dice.between(1, narrow ? 6 : 150), dice.between(1, 120), mask);
        const reference::Dab dab = {
            reference::BRUSH, dice.upTo(1) != 0, 0, 0, {dice.upTo(255), dice.upTo(255), dice.upTo(255)},
            dice.upTo(100)};
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

TEST_P(BrushSegment, PlainWayGivesTheSameBytes)
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

// Every row one run of cells or none, anywhere in the row.
static Grid randomRuns(Dice& dice, int width, int height)
{
    Grid mask = plainGrid(width, height, 0);
    for (int y = 0; y < height; ++y) {
        const int first = dice.upTo(width), end = dice.upTo(width);
        for (int x = first; x < end; ++x)
            mask.at(x, y) = 1;
    }
    return mask;
}

static Grid maskForLongLines(Dice& dice)
{
    const int width = dice.between(1, 48), height = dice.between(1, 48);
    switch (dice.upTo(3)) {
    case 0: return randomMask(dice);
    case 1: return randomRuns(dice, width, dice.upTo(1) ? height : dice.between(2, 4));
    default: return reference::brushGrid(width, height, dice.upTo(3) == 0);
    }
}

// Lines long enough for shapes to come again, in every direction: what the plain way makes serves all levels.
TEST(BrushSegments, LongLinesInEveryDirectionMatchThePlainWay)
{
    for (uint64_t seed = 1; seed <= 1200; ++seed) {
        Dice dice = {seed};
        PaintingBench plain = strokeBench(dice, dice.between(60, 300), dice.between(60, 250), maskForLongLines(dice));
        std::vector<PaintingBench> fast(VECTOR_LEVEL_COUNT, plain);
        const reference::Pixel colour = {dice.upTo(255), dice.upTo(255), dice.upTo(255)};
        const int opacity = dice.upTo(100);
        const bool soft = dice.upTo(1) != 0;
        PixelPoint from = {dice.between(-40, 320), dice.between(-40, 270)};
        for (int k = 0; k < 3; ++k) {
            PixelPoint to = {dice.between(-40, 320), dice.between(-40, 270)};
            if (dice.upTo(5) == 0) to = {from.x + dice.between(-200, 200), from.y + dice.between(-2, 2)};
            if (dice.upTo(5) == 0) to = {from.x + dice.between(-2, 2), from.y + dice.between(-200, 200)};
            {
                const LevelInUse definition(VECTOR_PLAIN);
                paintBrushDabs(strokeOn(plain, colour, opacity, soft), from, to);
            }
            for (int level = 0; level < VECTOR_LEVEL_COUNT; ++level) {
                const LevelInUse inUse(level);
                if (!inUse.present) continue;
                paintBrushSegment(strokeOn(fast[level], colour, opacity, soft), from, to);
                ASSERT_EQ(plain.coverage.bytes, fast[level].coverage.bytes)
                    << "seed " << seed << " segment " << k << " " << vectorLevelName((VectorLevel)level);
                ASSERT_EQ(plain.image.bytes, fast[level].image.bytes)
                    << "seed " << seed << " segment " << k << " " << vectorLevelName((VectorLevel)level);
            }
            from = to;
        }
    }
}
