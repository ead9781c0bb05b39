#include <gtest/gtest.h>

#include "tests/unit/pure/painting_bench.h"
#include "tests/unit/vector_levels.h"
#include "tools/kernels/paint_rows.h"

class PaintRowsTest : public VectorLevels {};
FOR_EACH_VECTOR_LEVEL(PaintRowsTest);

static std::vector<uint8_t> randomBytes(Dice& dice, size_t count)
{
    std::vector<uint8_t> bytes(count);
    for (uint8_t& byte : bytes)
        byte = (uint8_t)dice.upTo(255);
    return bytes;
}

static uint8_t mixed(int under, int over, int opacity)
{
    return (uint8_t)((under * (100 - opacity) + over * opacity) / 100);
}

TEST_P(PaintRowsTest, EveryPairOfBytesAndOpacity)
{
    std::vector<uint8_t> over(256), pixels(256);
    for (int k = 0; k < 256; ++k)
        over[k] = (uint8_t)k;
    for (int opacity = 0; opacity <= 100; ++opacity)
        for (int under = 0; under < 256; ++under) {
            std::fill(pixels.begin(), pixels.end(), (uint8_t)under);
            paintRows().mixBytes(pixels.data(), over.data(), 256, opacity);
            for (int k = 0; k < 256; ++k)
                ASSERT_EQ(mixed(under, k, opacity), pixels[k]) << under << " under " << k << ", opacity " << opacity;
        }
}

// Every byte is mixed once, however the row is cut into vectors, and none beside it.
TEST_P(PaintRowsTest, EveryLengthIsMixedOnceAndStaysInside)
{
    for (int count = 0; count <= 300; ++count)
        for (int opacity : {0, 1, 49, 99, 100}) {
            Dice dice = {(uint64_t)(count * 101 + opacity) + 1};
            const std::vector<uint8_t> over = randomBytes(dice, (size_t)count);
            std::vector<uint8_t> pixels = randomBytes(dice, (size_t)count + 2 * GUARD), expected = pixels;
            for (int k = 0; k < count; ++k)
                expected[GUARD + k] = mixed(expected[GUARD + k], over[k], opacity);
            paintRows().mixBytes(pixels.data() + GUARD, over.data(), (size_t)count, opacity);
            ASSERT_EQ(expected, pixels) << count << " bytes, opacity " << opacity;
        }
}

TEST_P(PaintRowsTest, AColourIsLaidOverEveryNumberOfPixels)
{
    for (int count = 0; count <= 140; ++count)
        for (int opacity : {0, 1, 50, 100}) {
            Dice dice = {(uint64_t)(count * 101 + opacity) + 1};
            const Rgb colour = {(uint8_t)dice.upTo(255), (uint8_t)dice.upTo(255), (uint8_t)dice.upTo(255)};
            const uint8_t over[] = {colour.blue, colour.green, colour.red};
            std::vector<uint8_t> pixels = randomBytes(dice, (size_t)count * 3 + 2 * GUARD), expected = pixels;
            for (int k = 0; k < count * 3; ++k)
                expected[GUARD + k] = mixed(expected[GUARD + k], over[k % 3], opacity);
            mixColourOver(pixels.data() + GUARD, colourRow(colour), count, opacity);
            ASSERT_EQ(expected, pixels) << count << " pixels, opacity " << opacity;
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

// Pixels that were painted where the cells tell so, and the others as they were before.
static std::vector<uint8_t> pixelsOver(Dice& dice, const std::vector<uint8_t>& under, const std::vector<uint8_t>& cells,
                                       size_t from)
{
    std::vector<uint8_t> pixels = under;
    for (size_t k = from; k < pixels.size(); ++k)
        if (from + (k - from) / 3 >= cells.size() || cells[from + (k - from) / 3]) pixels[k] = (uint8_t)dice.upTo(255);
    return pixels;
}

TEST_P(PaintRowsTest, RaisedPixelsOfEveryByteColourAndWeight)
{
    for (int weight = 0; weight <= 100; ++weight) {
        for (int over = 0; over < 256; ++over) {
            uint8_t under[256 * 3], pixels[256 * 3], cells[256] = {}, weights[256];
            for (int k = 0; k < 256 * 3; ++k)
                under[k] = (uint8_t)(k / 3);
            memcpy(pixels, under, sizeof pixels);
            memset(weights, weight, sizeof weights);
            paintRows().raise(pixels, under, cells, weights, 256,
                              colourRow(Rgb{(uint8_t)over, (uint8_t)over, (uint8_t)over}));
            for (int k = 0; k < 256 * 3; ++k)
                ASSERT_EQ(mixed(under[k], over, weight), pixels[k]);
            ASSERT_EQ(weight, cells[0]);
            ASSERT_EQ(0, memcmp(cells, weights, sizeof cells));
        }
    }
}

// Every width, and every place of the first byte within a vector.
TEST_P(PaintRowsTest, RaisedRowsMatchTheFormulaAndStayInside)
{
    for (int count = 0; count <= 200; ++count) {
        Dice dice = {(uint64_t)count + 1};
        const std::vector<uint8_t> weights = randomCells(dice, count, dice.upTo(5), 100);
        std::vector<uint8_t> cells = randomCells(dice, count, dice.upTo(3), 100), expectedCells = cells;
        const std::vector<uint8_t> under = randomRow(dice, count);
        const size_t from = GUARD + (size_t)count % 7;
        std::vector<uint8_t> pixels = pixelsOver(dice, under, cells, from), expected = pixels;
        const int over[] = {dice.upTo(255), dice.upTo(255), dice.upTo(255)};
        const int inside = count > 6 ? count - 6 : 0;
        for (int i = 0; i < inside; ++i) {
            const int weight = weights[from + i];
            if (weight <= cells[from + i]) continue;
            for (int k = 0; k < 3; ++k)
                expected[from + i * 3 + k] = mixed(under[from + i * 3 + k], over[k], weight);
            expectedCells[from + i] = (uint8_t)weight;
        }
        paintRows().raise(pixels.data() + from, under.data() + from, cells.data() + from, weights.data() + from, inside,
                          colourRow(rgbOf({over[0], over[1], over[2]})));
        ASSERT_EQ(expected, pixels) << inside;
        ASSERT_EQ(expectedCells, cells) << inside;
    }
}

TEST_P(PaintRowsTest, FreshRowsOfEveryLengthAndOpacityMatchTheFormulaAndStayInside)
{
    for (int count = 0; count <= 140; ++count)
        for (int opacity = count % 2; opacity <= 100; opacity += count % 7 ? 9 : 1) {
            Dice dice = {(uint64_t)(count * 200 + opacity) + 1};
            std::vector<uint8_t> cells = randomCells(dice, count, dice.upTo(2), 1), expectedCells = cells;
            std::vector<uint8_t> pixels = randomRow(dice, count), expected = pixels;
            const int over[] = {dice.upTo(255), dice.upTo(255), dice.upTo(255)};
            for (int i = 0; i < count; ++i) {
                if (cells[GUARD + i]) continue;
                for (int k = 0; k < 3; ++k)
                    expected[GUARD + i * 3 + k] = mixed(expected[GUARD + i * 3 + k], over[k], opacity);
                expectedCells[GUARD + i] = 1;
            }
            paintRows().mixFresh(pixels.data() + GUARD, cells.data() + GUARD, count,
                                 colourRow(rgbOf({over[0], over[1], over[2]})), opacity);
            ASSERT_EQ(expected, pixels) << count << " pixels, opacity " << opacity;
            ASSERT_EQ(expectedCells, cells) << count << " pixels, opacity " << opacity;
        }
}
