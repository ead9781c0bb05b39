#include <gtest/gtest.h>

#include "tests/unit/pure/painting_bench.h"
#include "tools/kernels/brush_raster.h"

using reference::Dab;
using reference::Grid;
using reference::Pixel;

struct BrushSize {
    int width, height;
};

static const BrushSize brushSizes[] = {{1, 1}, {2, 48}, {48, 2}, {3, 3}, {4, 3}, {15, 16}, {48, 48}};
static const int opacities[] = {16, 49, 100};

static const reference::Tool allTools[] = {reference::BRUSH, reference::SMOOTH, reference::PATCH, reference::RUBBER,
                                           reference::SPRAY};

static Pixel randomColour(Dice& dice)
{
    return {dice.upTo(255), dice.upTo(255), dice.upTo(255)};
}

static reference::Scene randomScene(Dice& dice, int width, int height, const Grid& mask)
{
    reference::Scene scene;
    scene.image = randomPicture(dice, width, height);
    scene.strokeStart = scene.image;
    scene.original = randomPicture(dice, width, height);
    scene.patch = randomPicture(dice, mask.width, mask.height);
    scene.coverage = plainGrid(width, height, 0);
    return scene;
}

// Dabs around every border of a small image, laid one over the other.
static void layAroundBorders(Dice& dice, const Dab& kind, const Grid& mask, int width, int height)
{
    PaintingBench bench = paintingBench(randomScene(dice, width, height, mask), mask);
    const int across[] = {
        -mask.width,        1 - mask.width,         -mask.width / 2,        -1,        0,    1, width / 2,
        width - mask.width, width - mask.width + 1, width - mask.width / 2, width - 1, width};
    for (int left : across) {
        const int down[] = {-mask.height,         1 - mask.height,          -mask.height / 2, 0,     height / 2,
                            height - mask.height, height - mask.height / 2, height - 1,       height};
        for (int top : down) {
            Dab dab = kind;
            dab.left = left;
            dab.top = top;
            dab.colour = randomColour(dice);
            ASSERT_TRUE(dabMatches(bench, dab))
                << "tool " << kind.tool << " soft " << kind.soft << " mask " << mask.width << "x" << mask.height
                << " image " << width << "x" << height << " at " << left << "," << top << " opacity " << kind.opacity;
        }
    }
}

TEST(PaintingKernels, EveryToolEdgeShapeSizeAndOpacityNearEveryBorder)
{
    Dice dice = {1};
    for (reference::Tool tool : allTools)
        for (int soft = 0; soft < 2; ++soft)
            for (int shape = 0; shape < 2; ++shape)
                for (BrushSize size : brushSizes)
                    for (int opacity : opacities)
                        for (int width = 51; width <= 54; ++width)  // every row padding
                            layAroundBorders(dice, {tool, soft != 0, 0, 0, {}, opacity},
                                             reference::brushGrid(size.width, size.height, shape), width, 37);
}

TEST(PaintingKernels, ImagesOneToFivePixelsWideOrHigh)
{
    Dice dice = {2};
    for (reference::Tool tool : allTools)
        for (int soft = 0; soft < 2; ++soft)
            for (BrushSize size : brushSizes)
                for (int narrow = 1; narrow <= 5; ++narrow) {
                    const Grid mask = reference::brushGrid(size.width, size.height, dice.upTo(1));
                    layAroundBorders(dice, {tool, soft != 0, 0, 0, {}, 49}, mask, narrow, 20);
                    layAroundBorders(dice, {tool, soft != 0, 0, 0, {}, 100}, mask, 20, narrow);
                    layAroundBorders(dice, {tool, soft != 0, 0, 0, {}, 16}, mask, narrow, narrow);
                }
}

// Any mask, any opacity, start images and coverage that a stroke would not leave.
TEST(PaintingKernels, RandomDabs)
{
    for (uint64_t seed = 1; seed <= 3000; ++seed) {
        Dice dice = {seed};
        Grid mask = plainGrid(dice.between(1, 30), dice.between(1, 30), 0);
        for (int& cell : mask.cells)
            cell = dice.upTo(3) != 0;
        reference::Scene scene = randomScene(dice, dice.between(1, 40), dice.between(1, 40), mask);
        scene.strokeStart = randomPicture(dice, scene.image.width, scene.image.height);
        scene.patch = randomPicture(dice, dice.between(1, mask.width), dice.between(1, mask.height));
        for (int& cell : scene.coverage.cells)
            cell = dice.upTo(2) == 0 ? dice.upTo(100) : 0;
        PaintingBench bench = paintingBench(scene, mask);
        const reference::Tool tool = allTools[dice.upTo(4)];
        const bool soft = dice.upTo(1) != 0;
        for (int k = 0; k < 4; ++k) {
            const Dab dab = {tool,          soft, dice.between(-32, 42), dice.between(-32, 42), randomColour(dice),
                             dice.upTo(100)};
            ASSERT_TRUE(dabMatches(bench, dab)) << "seed " << seed << " dab " << k << " tool " << tool;
        }
    }
}

// One dab of a full mask on a plain image, at the image's top-left corner.
static PaintingBench layOnPlain(reference::Tool tool, bool soft, int width, int height, int opacity, Pixel image,
                                Pixel colour)
{
    const Grid mask = plainGrid(width, height, 1);
    const reference::Picture plain = plainPicture(width, height, image);
    PaintingBench bench =
        paintingBench({plain, plain, plainPicture(width, height, colour), plain, plainGrid(width, height, 0)}, mask);
    layKernelDab(bench, {tool, soft, 0, 0, colour, opacity});
    return bench;
}

static Pixel pixelAt(PaintingBench& bench, int x, int y)
{
    const uint8_t* pixel = rowOf(bench.image.view(), y) + x * 3;
    return {pixel[0], pixel[1], pixel[2]};
}

static void expectPixel(Pixel expected, Pixel actual)
{
    EXPECT_EQ(expected.blue, actual.blue);
    EXPECT_EQ(expected.green, actual.green);
    EXPECT_EQ(expected.red, actual.red);
}

static const Pixel grey = {100, 101, 102}, paint = {10, 20, 250};

TEST(HardBrush, MixesTruncatingAndKeepsPadding)
{  // two rows of two pixels, bottom-up; the last two bytes of a row are padding
    uint8_t bits[] = {0, 0, 0, 10, 20, 30, 0xCC, 0xCC, 101, 101, 101, 255, 255, 255, 0xCC, 0xCC};
    uint8_t cells[] = {1, 1}, covered[] = {0, 0, 0, 0};
    hardBrushKernel(BitsView{bits + 8, -8, 2, 2}, placeDab({0, 0, 2, 1}, 2, 1, 2, 2), MapView{cells, -2, 2, 1},
                    MapView{covered + 2, -2, 2, 2}, Rgb{0, 0, 0}, 50);
    const uint8_t expected[] = {0, 0, 0, 10, 20, 30, 0xCC, 0xCC, 50, 50, 50, 127, 127, 127, 0xCC, 0xCC};
    EXPECT_EQ(0, memcmp(bits, expected, sizeof bits));
    const uint8_t expectedCoverage[] = {0, 0, 1, 1};
    EXPECT_EQ(0, memcmp(covered, expectedCoverage, sizeof covered));
}

TEST(HardBrush, OpacityHundredGivesExactlyTheColourUnderTheMask)
{
    const Grid mask = reference::brushGrid(16, 16, 0);
    const reference::Picture plain = plainPicture(16, 16, grey);
    PaintingBench bench = paintingBench({plain, plain, plain, plain, plainGrid(16, 16, 0)}, mask);
    layKernelDab(bench, {reference::BRUSH, false, 0, 0, paint, 100});
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            expectPixel(mask.at(x, y) ? paint : grey, pixelAt(bench, x, y));
}

TEST(HardBrush, PassingTwiceInOneStrokeBlendsOnce)
{
    PaintingBench bench = layOnPlain(reference::BRUSH, false, 5, 5, 50, grey, paint);
    layKernelDab(bench, {reference::BRUSH, false, 1, 1, paint, 50});
    expectPixel({55, 60, 176}, pixelAt(bench, 3, 3));
}

TEST(SoftBrush, MiddleHasFullWeightAndRimNone)
{
    PaintingBench bench = layOnPlain(reference::BRUSH, true, 16, 16, 100, grey, paint);
    expectPixel(paint, pixelAt(bench, 7, 7));
    expectPixel(paint, pixelAt(bench, 8, 8));
    expectPixel(grey, pixelAt(bench, 0, 7));
    expectPixel(grey, pixelAt(bench, 15, 15));
    EXPECT_EQ(100, rowOf(bench.coverage.view(), 7)[8]);
    EXPECT_EQ(0, rowOf(bench.coverage.view(), 7)[15]);
    // dx = 4, dy = 0 of a half axis of 7: t = 16/49, weight 100 x (1 - t^3) = 96.5
    EXPECT_EQ(96, rowOf(bench.coverage.view(), 7)[12]);
}

TEST(SoftBrush, LowerWeightAfterAHigherOneChangesNothing)
{
    PaintingBench bench = layOnPlain(reference::BRUSH, true, 16, 16, 100, grey, paint);
    const std::vector<uint8_t> before = bench.image.bytes, covered = bench.coverage.bytes;
    layKernelDab(bench, {reference::BRUSH, true, 0, 0, {0, 0, 0}, 40});
    // Only the rim, which has weight 0 in both, is written: with the start image, which it shows already.
    EXPECT_EQ(before, bench.image.bytes);
    EXPECT_EQ(covered, bench.coverage.bytes);
}

TEST(SoftEdges, VisibleSizeOfExactlyTwoChangesNothing)
{
    for (reference::Tool tool : {reference::BRUSH, reference::RUBBER, reference::SPRAY}) {
        for (BrushSize size : {BrushSize{2, 9}, BrushSize{9, 2}, BrushSize{2, 2}, BrushSize{1, 2}}) {
            PaintingBench bench = layOnPlain(tool, true, size.width, size.height, 100, grey, paint);
            EXPECT_TRUE(sameBytes(bench)) << "tool " << tool << " " << size.width << "x" << size.height;
        }
        // ... also when only two columns of a larger dab are visible.
        const Grid mask = plainGrid(9, 9, 1);
        const reference::Picture plain = plainPicture(20, 20, grey);
        PaintingBench bench =
            paintingBench({plain, plain, plainPicture(20, 20, paint), plain, plainGrid(20, 20, 0)}, mask);
        layKernelDab(bench, {tool, true, -7, 5, paint, 100});
        EXPECT_TRUE(sameBytes(bench));
        layKernelDab(bench, {tool, true, -6, 5, paint, 100});
        EXPECT_FALSE(sameBytes(bench));
    }
}

TEST(SoftEdges, SizeOfOneHasAFullMiddle)
{
    for (reference::Tool tool : {reference::BRUSH, reference::RUBBER, reference::SPRAY}) {
        PaintingBench bench = layOnPlain(tool, true, 1, 1, 100, grey, paint);
        expectPixel(paint, pixelAt(bench, 0, 0));
    }
}

static PaintingBench smoothedNoise(const Grid& mask, int opacity)
{
    Dice dice = {7};
    const reference::Picture noise = randomPicture(dice, mask.width, mask.height);
    PaintingBench bench = paintingBench({noise, noise, noise, noise, plainGrid(mask.width, mask.height, 0)}, mask);
    layKernelDab(bench, {reference::SMOOTH, false, 0, 0, {}, opacity});
    return bench;
}

static bool changed(PaintingBench& bench, int x, int y)
{
    const Pixel now = pixelAt(bench, x, y), before = bench.scene.image.at(x, y);
    return now.blue != before.blue || now.green != before.green || now.red != before.red;
}

TEST(SmoothKernel, DabTwoWideOrThreeHighChangesNothing)
{
    for (BrushSize size : {BrushSize{2, 40}, BrushSize{40, 3}, BrushSize{40, 2}, BrushSize{3, 3}}) {
        PaintingBench bench = smoothedNoise(plainGrid(size.width, size.height, 1), 100);
        EXPECT_TRUE(sameBytes(bench)) << size.width << "x" << size.height;
    }
}

// The vertical range is one line shorter than the horizontal one.
TEST(SmoothKernel, FourByFourDabChangesTwoPixelsOnly)
{
    PaintingBench bench = smoothedNoise(plainGrid(4, 4, 1), 100);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(y == 1 && (x == 1 || x == 2), changed(bench, x, y)) << x << "," << y;
}

// The mask is read one line above and one column to the left of the pixel.
TEST(SmoothKernel, MaskCellUpAndLeftDecides)
{
    Grid first = plainGrid(4, 4, 0), second = plainGrid(4, 4, 0), own = plainGrid(4, 4, 1);
    first.at(0, 0) = 1;
    second.at(1, 0) = 1;
    own.at(0, 0) = own.at(1, 0) = 0;
    PaintingBench onlyFirst = smoothedNoise(first, 100), onlySecond = smoothedNoise(second, 100);
    EXPECT_TRUE(changed(onlyFirst, 1, 1));
    EXPECT_FALSE(changed(onlyFirst, 2, 1));
    EXPECT_FALSE(changed(onlySecond, 1, 1));
    EXPECT_TRUE(changed(onlySecond, 2, 1));
    PaintingBench neither = smoothedNoise(own, 100);
    EXPECT_TRUE(sameBytes(neither));
}

TEST(SmoothKernel, UniformAreaIsUnchanged)
{
    for (int value = 0; value < 256; ++value) {
        PaintingBench bench = layOnPlain(reference::SMOOTH, false, 7, 7, 100, {value, 255 - value, value / 2}, {});
        ASSERT_TRUE(sameBytes(bench));
    }
}

TEST(PatchKernel, ClippedLikeTheMask)
{
    Dice dice = {9};
    const Grid mask = plainGrid(4, 4, 1);
    reference::Scene scene = randomScene(dice, 8, 8, mask);
    PaintingBench bench = paintingBench(scene, mask);
    layKernelDab(bench, {reference::PATCH, false, -1, -2, {}, 100});
    expectPixel(scene.patch.at(1, 2), pixelAt(bench, 0, 0));
    expectPixel(scene.patch.at(3, 3), pixelAt(bench, 2, 1));
    expectPixel(scene.image.at(3, 0), pixelAt(bench, 3, 0));
}

TEST(PatchKernel, CellsWithoutAPatchPixelAreLeftAlone)
{
    Dice dice = {10};
    const Grid mask = plainGrid(6, 6, 1);
    reference::Scene scene = randomScene(dice, 8, 8, mask);
    scene.patch = randomPicture(dice, 3, 2);
    PaintingBench bench = paintingBench(scene, mask);
    layKernelDab(bench, {reference::PATCH, false, 0, 0, {}, 100});
    expectPixel(scene.patch.at(2, 1), pixelAt(bench, 2, 1));
    expectPixel(scene.image.at(3, 1), pixelAt(bench, 3, 1));
    expectPixel(scene.image.at(2, 2), pixelAt(bench, 2, 2));
}

TEST(HardRubber, OpacityHundredRestoresExactlyUnderTheMask)
{
    Dice dice = {11};
    const Grid mask = reference::brushGrid(15, 16, 0);
    reference::Scene scene = randomScene(dice, 20, 20, mask);
    PaintingBench bench = paintingBench(scene, mask);
    layKernelDab(bench, {reference::RUBBER, false, 2, 3, {}, 100});
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 15; ++x)
            expectPixel(mask.at(x, y) ? scene.original.at(x + 2, y + 3) : scene.image.at(x + 2, y + 3),
                        pixelAt(bench, x + 2, y + 3));
}

TEST(SoftRubber, RestoresTheMiddleLeavesTheRimAndBuildsUp)
{
    PaintingBench bench = layOnPlain(reference::RUBBER, true, 16, 16, 100, grey, paint);
    expectPixel(paint, pixelAt(bench, 7, 8));
    expectPixel(grey, pixelAt(bench, 0, 7));
    const Pixel once = pixelAt(bench, 1, 7);
    layKernelDab(bench, {reference::RUBBER, true, 0, 0, {}, 100});
    const Pixel twice = pixelAt(bench, 1, 7);
    EXPECT_LT(once.blue, grey.blue);
    EXPECT_LT(twice.blue, once.blue);
    EXPECT_GT(twice.red, once.red);
}

TEST(HardSpray, BuildsUpTickByTickUnlessOpaque)
{
    PaintingBench bench = layOnPlain(reference::SPRAY, false, 10, 10, 40, grey, paint);
    int before = grey.red;
    for (int tick = 0; tick < 4; ++tick) {
        const int red = pixelAt(bench, 5, 5).red;
        EXPECT_GT(red, before);
        before = red;
        layKernelDab(bench, {reference::SPRAY, false, 0, 0, paint, 40});
    }
    PaintingBench opaque = layOnPlain(reference::SPRAY, false, 10, 10, 100, grey, paint);
    expectPixel(paint, pixelAt(opaque, 5, 5));
}

TEST(SoftSpray, MiddleGetsTheFullWeightAndRimNone)
{
    PaintingBench bench = layOnPlain(reference::SPRAY, true, 20, 20, 100, grey, paint);
    expectPixel(paint, pixelAt(bench, 9, 10));
    expectPixel(grey, pixelAt(bench, 0, 9));
    expectPixel(grey, pixelAt(bench, 19, 19));
    EXPECT_LT(pixelAt(bench, 2, 9).red, pixelAt(bench, 6, 9).red);
}

TEST(PaintingKernels, InvisibleDabChangesNothing)
{
    for (reference::Tool tool : allTools) {
        for (bool soft : {false, true}) {
            const Grid mask = plainGrid(8, 8, 1);
            Dice dice = {12};
            PaintingBench bench = paintingBench(randomScene(dice, 10, 10, mask), mask);
            for (BrushSize at : {BrushSize{-8, 0}, BrushSize{10, 0}, BrushSize{0, -8}, BrushSize{0, 10}})
                layKernelDab(bench, {tool, soft, at.width, at.height, paint, 100});
            EXPECT_TRUE(sameBytes(bench));
        }
    }
}

// A brush over both sides of the image starts at mask column 0: what it brings back is shifted as well.
TEST(HardRubber, OverBothSidesBringsBackShiftedPixels)
{
    Dice dice = {5};
    const Grid mask = plainGrid(8, 1, 1);
    const reference::Picture original = randomPicture(dice, 4, 1), painted = plainPicture(4, 1, grey);
    PaintingBench bench = paintingBench({painted, painted, original, painted, plainGrid(4, 1, 0)}, mask);
    layKernelDab(bench, {reference::RUBBER, false, -2, 0, {}, 100});
    expectPixel({0, 0, 0}, pixelAt(bench, 0, 0));
    expectPixel({0, 0, 0}, pixelAt(bench, 1, 0));
    expectPixel(original.at(0, 0), pixelAt(bench, 2, 0));
    expectPixel(original.at(1, 0), pixelAt(bench, 3, 0));
}
