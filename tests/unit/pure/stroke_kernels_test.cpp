#include <gtest/gtest.h>

#include "tests/unit/pure/painting_bench.h"
#include "tools/kernels/brush_raster.h"
#include "tools/kernels/stroke_kernels.h"
#include "tools/kernels/stroke_rows.h"
#include "tools/kernels/strongest_cells.h"

using reference::Grid;

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
TEST(BrushSegment, RandomStrokesMatchTheReferenceDabByDab)
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

// Cells that were there before: of the coverage, 0 with one chance in `zeros` + 1.
static std::vector<uint8_t> randomCells(Dice& dice, int count, int zeros, int largest)
{
    std::vector<uint8_t> cells(2 * GUARD + (size_t)count);
    for (uint8_t& cell : cells)
        cell = dice.upTo(zeros) ? (uint8_t)dice.between(1, largest) : 0;
    return cells;
}

static std::vector<uint8_t> randomRow(Dice& dice, int count)
{
    std::vector<uint8_t> bytes(2 * GUARD + (size_t)count * 3);
    for (uint8_t& byte : bytes)
        byte = (uint8_t)dice.upTo(255);
    return bytes;
}

static int mixed(int under, int over, int weight)
{
    return (under * (100 - weight) + over * weight) / 100;
}

TEST(StrokeRows, CoveredRowsOfEveryLengthMatchTheFormulaAndStayInside)
{
    for (int count = 0; count <= 70; ++count) {
        Dice dice = {(uint64_t)count + 1};
        const std::vector<uint8_t> cells = randomCells(dice, count, dice.upTo(5), 100), under = randomRow(dice, count);
        std::vector<uint8_t> pixels = randomRow(dice, count), expected = pixels;
        const int over[] = {dice.upTo(255), dice.upTo(255), dice.upTo(255)};
        for (int k = 0; k < count * 3; ++k) {
            const int weight = cells[GUARD + k / 3];
            if (weight) expected[GUARD + k] = (uint8_t)mixed(under[GUARD + k], over[k % 3], weight);
        }
        blendCoveredRow(pixels.data() + GUARD, under.data() + GUARD, cells.data() + GUARD, count,
                        rgbOf({over[0], over[1], over[2]}));
        ASSERT_EQ(expected, pixels) << count;
    }
}

TEST(StrokeRows, FreshRowsOfEveryLengthAndOpacityMatchTheFormulaAndStayInside)
{
    for (int count = 0; count <= 70; ++count)
        for (int opacity = count % 2; opacity <= 100; opacity += count % 7 ? 9 : 1) {
            Dice dice = {(uint64_t)(count * 200 + opacity) + 1};
            std::vector<uint8_t> cells = randomCells(dice, count, dice.upTo(2), 1), expectedCells = cells;
            std::vector<uint8_t> pixels = randomRow(dice, count), expected = pixels;
            const int over[] = {dice.upTo(255), dice.upTo(255), dice.upTo(255)};
            for (int i = 0; i < count; ++i) {
                if (cells[GUARD + i]) continue;
                for (int k = 0; k < 3; ++k)
                    expected[GUARD + i * 3 + k] = (uint8_t)mixed(expected[GUARD + i * 3 + k], over[k], opacity);
                expectedCells[GUARD + i] = 1;
            }
            mixFreshRow(pixels.data() + GUARD, cells.data() + GUARD, count, rgbOf({over[0], over[1], over[2]}),
                        opacity);
            ASSERT_EQ(expected, pixels) << count << " pixels, opacity " << opacity;
            ASSERT_EQ(expectedCells, cells) << count << " pixels, opacity " << opacity;
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

// Lines long enough for the search of the strongest cells, in every direction.
TEST(BrushSegment, LongLinesInEveryDirectionMatchThePlainWay)
{
    for (uint64_t seed = 1; seed <= 1200; ++seed) {
        Dice dice = {seed};
        PaintingBench fast = strokeBench(dice, dice.between(60, 300), dice.between(60, 250), maskForLongLines(dice));
        PaintingBench plain = fast;
        const reference::Pixel colour = {dice.upTo(255), dice.upTo(255), dice.upTo(255)};
        const int opacity = dice.upTo(100);
        const bool soft = dice.upTo(1) != 0;
        PixelPoint from = {dice.between(-40, 320), dice.between(-40, 270)};
        for (int k = 0; k < 3; ++k) {
            PixelPoint to = {dice.between(-40, 320), dice.between(-40, 270)};
            if (dice.upTo(5) == 0) to = {from.x + dice.between(-200, 200), from.y + dice.between(-2, 2)};
            if (dice.upTo(5) == 0) to = {from.x + dice.between(-2, 2), from.y + dice.between(-200, 200)};
            paintBrushSegment(strokeOn(fast, colour, opacity, soft), from, to);
            paintBrushDabs(strokeOn(plain, colour, opacity, soft), from, to);
            ASSERT_EQ(plain.coverage.bytes, fast.coverage.bytes) << "seed " << seed << " segment " << k;
            ASSERT_EQ(plain.image.bytes, fast.image.bytes) << "seed " << seed << " segment " << k;
            from = to;
        }
    }
}

// Weights that fall off anyhow, laid along any line: passing over what others lay at least as strongly
// leaves the same highest weights.
TEST(StrongestCells, HighestWeightsAreTheSameForAnyGridAndLine)
{
    for (uint64_t seed = 1; seed <= 600; ++seed) {
        Dice dice = {seed};
        const int width = dice.between(16, 40), height = dice.between(1, 30), largest = dice.upTo(1) ? 3 : 100;
        WeightGrid grid;
        ASSERT_TRUE(makeWeightGrid(&grid, width, height));
        for (int j = 0; j < height; ++j)
            for (int i = 0; i < width; ++i)
                weightRow(grid, j)[i] = (uint8_t)dice.upTo(dice.upTo(6) ? 1 : largest);

        std::vector<PixelPoint> points;
        for (const std::pair<int, int>& p : reference::linePoints(0, 0, dice.between(-60, 60), dice.between(-60, 60)))
            points.push_back({p.first + 60, p.second + 60});
        const StrokeSegment segment = {points.data(), (int)points.size(), nullptr, 0, 0};
        const int stride = 120 + width, lines = 120 + height;
        std::vector<uint8_t> whole((size_t)stride * lines + 1, 0), some = whole;

        StrongestSearch search = beginStrongestSearch(grid, segment, stride);
        for (int n = 0; n < segment.count; ++n) {
            const size_t corner = (size_t)points[n].y * stride + points[n].x;
            StrongestCells list;
            const bool found = findStrongest(search, n, &list);
            for (int k = 0; found && k < list.count; ++k)
                some[corner + list.cells[k].at] = std::max(some[corner + list.cells[k].at], list.cells[k].weight);
            for (int j = 0; j < height; ++j)
                for (int i = 0; i < width; ++i) {
                    const size_t at = corner + (size_t)j * stride + i;
                    whole[at] = std::max(whole[at], weightRow(grid, j)[i]);
                    if (!found) some[at] = std::max(some[at], weightRow(grid, j)[i]);
                }
        }
        endStrongestSearch(&search);
        freeWeightGrid(&grid);
        ASSERT_EQ(whole, some) << "seed " << seed;
    }
}

TEST(StrongestCells, ADabInsideALongLineIsLaidInAStripOnly)
{
    WeightGrid grid;
    ASSERT_TRUE(makeWeightGrid(&grid, 47, 47));
    for (int j = 0; j < 47; ++j)
        for (int i = 0; i < 47; ++i)
            weightRow(grid, j)[i] = (uint8_t)std::max(100 - (i - 23) * (i - 23) / 5 - (j - 23) * (j - 23) / 5, 0);
    std::vector<PixelPoint> points;
    for (int n = 0; n < 100; ++n)
        points.push_back({n, 0});
    const StrokeSegment segment = {points.data(), 100, nullptr, 0, 0};
    StrongestSearch search = beginStrongestSearch(grid, segment, 1000);
    StrongestCells list;
    ASSERT_TRUE(findStrongest(search, 50, &list));
    // The middle column: one cell in each of the 45 rows that have any weight.
    EXPECT_EQ(45, list.count);
    EXPECT_FALSE(findStrongest(search, 1, &list));
    EXPECT_FALSE(findStrongest(search, 98, &list));
    endStrongestSearch(&search);
    freeWeightGrid(&grid);
}
