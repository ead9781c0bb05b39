// The blur's fast rows: against the plain way, and whole dabs against the reference.
#include <gtest/gtest.h>

#include "tests/unit/pure/painting_bench.h"
#include "tools/kernels/cell_runs.h"
#include "tools/kernels/paint_rows.h"
#include "tests/unit/vector_levels.h"

class SmoothKernel : public VectorLevels {};
FOR_EACH_VECTOR_LEVEL(SmoothKernel);

using reference::Grid;

static PaintingBench smoothBench(Dice& dice, int width, int height, const Grid& mask)
{
    reference::Scene scene;
    scene.image = randomPicture(dice, width, height);
    scene.strokeStart = scene.original = scene.patch = plainPicture(1, 1, {0, 0, 0});
    scene.coverage = plainGrid(1, 1, 0);
    return paintingBench(scene, mask);
}

// One cell in `zeros` + 1 is 0; cells that are not 0 have any other value.
static Grid randomCells(Dice& dice, int width, int height, int zeros)
{
    Grid mask = plainGrid(width, height, 0);
    for (int& cell : mask.cells)
        cell = dice.upTo(zeros) ? dice.between(1, 255) : 0;
    return mask;
}

static const int densities[] = {1, 3, 40, 100000};

// A dab as large as the image is wide and high, and one that is placed anywhere.
TEST_P(SmoothKernel, EverySizeMatchesTheReference)
{
    for (int width = 1; width <= 70; ++width)
        for (int height = 1; height <= 70; ++height) {
            Dice dice = {(uint64_t)(width * 1000 + height)};
            const Grid mask = randomCells(dice, width, height, densities[dice.upTo(3)]);
            PaintingBench bench = smoothBench(dice, width, height, mask);
            ASSERT_TRUE(dabMatches(bench, {reference::SMOOTH, false, 0, 0, {}, dice.upTo(100)}))
                << width << "x" << height;
            ASSERT_TRUE(dabMatches(
                bench, {reference::SMOOTH, false, dice.between(-width, width), dice.between(-height, height), {}, 100}))
                << width << "x" << height;
        }
}

TEST_P(SmoothKernel, EveryOpacityMatchesTheReference)
{
    for (int opacity = 0; opacity <= 100; ++opacity) {
        Dice dice = {(uint64_t)opacity + 1};
        const Grid mask = randomCells(dice, 41, 33, densities[dice.upTo(3)]);
        PaintingBench bench = smoothBench(dice, 60, 50, mask);
        for (int k = 0; k < 3; ++k)
            ASSERT_TRUE(dabMatches(
                bench, {reference::SMOOTH, false, dice.between(-20, 40), dice.between(-20, 40), {}, opacity}))
                << "opacity " << opacity;
    }
}

// Longer than what the fast rows take at a time, with and without gaps.
TEST_P(SmoothKernel, LongLinesMatchTheReference)
{
    for (int width = 1020; width <= 1044; ++width) {
        Dice dice = {(uint64_t)width};
        const Grid mask = randomCells(dice, width, 7, densities[2 + width % 2]);
        PaintingBench bench = smoothBench(dice, width + dice.upTo(3), 8, mask);
        ASSERT_TRUE(dabMatches(bench, {reference::SMOOTH, false, 0, 0, {}, 100})) << width;
        ASSERT_TRUE(dabMatches(bench, {reference::SMOOTH, false, dice.between(-9, 9), 1, {}, 37})) << width;
    }
}

// Dabs over one another: each reads what the one before it wrote.
TEST_P(SmoothKernel, OverlappingDabsBuildUpLikeTheReference)
{
    Dice dice = {3};
    const Grid mask = reference::brushGrid(48, 48, 0);
    PaintingBench bench = smoothBench(dice, 100, 90, mask);
    for (int k = 0; k < 60; ++k)
        ASSERT_TRUE(dabMatches(
            bench,
            {reference::SMOOTH, false, dice.between(-40, 95), dice.between(-40, 85), {}, k % 3 ? 100 : dice.upTo(100)}))
            << "dab " << k;
}

// Channels of 0 and 255 give the largest sums.
TEST_P(SmoothKernel, BlackAndWhiteNoiseMatchesTheReference)
{
    Dice dice = {4};
    PaintingBench bench = smoothBench(dice, 67, 61, plainGrid(67, 61, 1));
    for (reference::Pixel& pixel : bench.scene.image.pixels)
        pixel = {255 * dice.upTo(1), 255 * dice.upTo(1), 255 * dice.upTo(1)};
    bench.image = imageOf(bench.scene.image);
    for (int opacity : {100, 99, 50, 1, 0})
        ASSERT_TRUE(dabMatches(bench, {reference::SMOOTH, false, 0, 0, {}, opacity})) << opacity;
}

// The nine bytes around one, by their definition.
static int blurredByte(const std::vector<uint8_t>* lines, size_t at)
{
    static const int down[] = {1, 2, 1};
    int sum = 8;
    for (int k = 0; k < 3; ++k)
        sum += down[k] * (lines[k][at - 3] + 2 * lines[k][at] + lines[k][at + 3]);
    return sum / 16;
}

// The lines end with the last pixel that may be read; the sanitizers watch that. `chance`: of a cell, in tenths.
static void expectBlurred(Dice& dice, int width, int chance, int opacity)
{
    const size_t count = (size_t)width * 3;
    std::vector<uint8_t> lines[3], cells((size_t)width);
    std::vector<uint16_t> sums[2], sumsBelow(roomForSums(count));
    for (uint8_t& cell : cells)
        cell = dice.upTo(9) < chance ? (uint8_t)dice.between(1, 255) : 0;
    for (int k = 0; k < 3; ++k) {
        lines[k].resize(count + 6);
        lines[k].shrink_to_fit();
        for (uint8_t& byte : lines[k])
            byte = (uint8_t)dice.upTo(255);
    }
    for (int k = 0; k < 2; ++k) {
        sums[k].resize(roomForSums(count));
        paintRows().sumLine(sums[k].data(), lines[k].data() + 3, count);
    }
    paintRows().sumLine(sumsBelow.data(), lines[2].data() + 3, count);
    std::vector<uint8_t> expected = lines[1], actual = lines[1];
    for (size_t i = 0; i < count; ++i) {
        const int blurred = blurredByte(lines, i + 3);
        if (cells[i / 3]) expected[i + 3] = (uint8_t)((lines[1][i + 3] * (100 - opacity) + blurred * opacity) / 100);
    }
    paintRows().blurLine(actual.data() + 3, lines[2].data() + 3, {sums[0].data(), sums[1].data()}, cells.data(), width,
                         opacity);
    ASSERT_EQ(expected, actual) << width << " pixels, opacity " << opacity;
    ASSERT_EQ(sumsBelow, sums[0]) << "the sums below of " << width << " pixels";
}

TEST_P(SmoothKernel, EveryLengthMatchesTheFormulaAndStaysInside)
{
    Dice dice = {5};
    for (int width = 1; width <= 200; ++width)
        for (int opacity : {100, 0, 1, 99, dice.between(2, 98)})
            for (int chance : {0, 3, 9, 10})
                ASSERT_NO_FATAL_FAILURE(expectBlurred(dice, width, chance, opacity));
}

TEST(CellRuns, EveryRunOfRandomCellsIsFoundWhole)
{
    for (uint64_t seed = 1; seed <= 2000; ++seed) {
        Dice dice = {seed};
        const int count = dice.upTo(90);
        std::vector<uint8_t> cells((size_t)count), found((size_t)count, 0);
        const int change = dice.between(1, 40);
        for (int i = 0; i < count; ++i)
            cells[i] = i == 0 || dice.upTo(change) == 0 ? (uint8_t)(dice.upTo(1) * dice.between(1, 255)) : cells[i - 1];
        int last = -1;
        for (CellRun run = {}; nextRun(cells.data(), count, run);) {
            ASSERT_GT(run.first, last) << "seed " << seed;  // a gap of one cell at least
            ASSERT_GT(run.end, run.first) << "seed " << seed;
            ASSERT_LE(run.end, count) << "seed " << seed;
            for (int i = run.first; i < run.end; ++i)
                found[i] = 1;
            last = run.end;
        }
        for (int i = 0; i < count; ++i)
            ASSERT_EQ(cells[i] != 0, found[i] != 0) << "seed " << seed << " cell " << i;
    }
}
