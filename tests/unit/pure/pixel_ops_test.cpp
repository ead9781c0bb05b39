#include <gtest/gtest.h>

#include <algorithm>

#include "image/pixels/pixel_ops.h"
#include "image/pixels/pixel_rows.h"
#include "tests/unit/pure/stored_image.h"
#include "tests/unit/vector_levels.h"

TEST(PixelOps, ViewCountsRowsFromTheTop)
{
    StoredImage image(reference::Picture(3, 2));
    const BitsView view = image.view();
    EXPECT_EQ(image.rows.data() + 12, rowOf(view, 0));
    EXPECT_EQ(image.rows.data(), rowOf(view, 1));
}

TEST(PixelOps, CopyFromOffsetMatchesPerPixelCopy)
{
    std::mt19937 random(11);
    for (int n = 0; n < 3000; ++n) {
        const reference::Picture source = randomReference(random, 1 + random() % 9, 1 + random() % 9);
        reference::Picture expected = randomReference(random, 1 + random() % 12, 1 + random() % 12);
        StoredImage from(source), to(expected);
        const int left = (int)(random() % 30) - 15, top = (int)(random() % 30) - 15;
        copyFromOffset(to.view(), from.view(), left, top);
        for (int y = 0; y < expected.height; ++y) {
            for (int x = 0; x < expected.width; ++x) {
                const int sx = left + x, sy = top + y;
                if (sx >= 0 && sy >= 0 && sx < source.width && sy < source.height)
                    expected.at(x, y) = source.at(sx, sy);
            }
        }
        expectImage(expected, to);
    }
}

TEST(PixelOps, CopyFromOffsetTakesExtremeOffsets)
{
    const reference::Picture white(4, 4);
    StoredImage from(white), to(white);
    for (int far : {INT32_MIN, INT32_MAX}) {
        copyFromOffset(to.view(), from.view(), far, 0);
        copyFromOffset(to.view(), from.view(), 0, far);
    }
    expectImage(white, to);
}

TEST(PixelOps, PasteMatchesTheReferenceEverywhere)
{
    std::mt19937 random(12);
    for (int n = 0; n < 5000; ++n) {
        const reference::Picture source = randomReference(random, 1 + random() % 9, 1 + random() % 9);
        reference::Picture expected = randomReference(random, 1 + random() % 9, 1 + random() % 9);
        StoredImage from(source), to(expected);
        const int left = (int)(random() % 26) - 13, top = (int)(random() % 26) - 13;
        const bool placed = referencePaste(expected, source, left, top);
        EXPECT_EQ(placed, pasteWithByteSkip(to.view(), from.view(), left, top)) << left << ' ' << top;
        expectImage(expected, to);
        expectImage(source, from);
    }
}

TEST(PixelOps, PasteOverTheLeftEdgeSkipsBytesNotPixels)
{
    reference::Picture source(3, 1);
    source.at(0, 0) = {1, 2, 3};
    source.at(1, 0) = {4, 5, 6};
    source.at(2, 0) = {7, 8, 9};
    StoredImage from(source), to(reference::Picture(2, 1));
    EXPECT_TRUE(pasteWithByteSkip(to.view(), from.view(), -1, 0));
    EXPECT_EQ((std::vector<uint8_t>{2, 3, 4, 5, 6, 7, ROW_PADDING, ROW_PADDING}), to.rows);
}

TEST(PixelOps, PasteOverBothSidesIsCutToTheDestination)
{
    std::mt19937 random(13);
    const reference::Picture source = randomReference(random, 9, 9);
    StoredImage from(source), to(reference::Picture(3, 3));
    EXPECT_TRUE(pasteWithByteSkip(to.view(), from.view(), -2, -2));
    expectImage(referenceExtract(source, 0, 0, 3, 3), to);
}

class PixelRowsTest : public VectorLevels {};
FOR_EACH_VECTOR_LEVEL(PixelRowsTest);

static void expectMerged(const reference::Picture& source, const reference::Picture& mask, reference::Picture expected,
                         int left, int top)
{
    StoredImage from(source), through(mask), to(expected);
    referencePasteMasked(expected, source, mask, left, top);
    mergeMasked(to.view(), from.view(), through.view(), left, top);
    expectImage(expected, to);
}

TEST_P(PixelRowsTest, MergeMaskedMatchesTheReferenceEverywhere)
{
    std::mt19937 random(14);
    for (int n = 0; n < 5000; ++n) {
        const int width = 1 + (int)(random() % 12), height = 1 + (int)(random() % 6);
        const reference::Picture source = randomReference(random, width, height);
        const reference::Picture mask = randomMask(random, width, height);
        const reference::Picture onto = randomReference(random, 1 + random() % 12, 1 + random() % 9);
        const int left = (int)(random() % 30) - 15, top = (int)(random() % 24) - 12;
        expectMerged(source, mask, onto, left, top);
    }
}

// Runs of any length up to some dozens of pixels; blue and green say nothing.
static reference::Picture maskOfRuns(std::mt19937& random, int width, int height)
{
    reference::Picture mask = randomReference(random, width, height);
    int left = 0;
    bool inside = false;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            if (left-- == 0) {
                left = (int)(random() % (random() % 2 ? 60 : 6));
                inside = !inside;
            }
            const int other = (int)(random() % 256);
            mask.at(x, y) = {(uint8_t)other, (uint8_t)(255 - other), (uint8_t)(inside ? 0 : 1 + random() % 255)};
        }
    return mask;
}

TEST_P(PixelRowsTest, MergeOfLongRunsMatchesTheReference)
{
    std::mt19937 random(15);
    for (int n = 0; n < 2000; ++n) {
        const int width = 1 + (int)(random() % 130), height = 1 + (int)(random() % 4);
        const reference::Picture source = randomReference(random, width, height);
        const reference::Picture mask = maskOfRuns(random, width, height);
        const reference::Picture onto = randomReference(random, 1 + random() % 150, 1 + random() % 6);
        const int left = (int)(random() % 60) - 30, top = (int)(random() % 8) - 4;
        expectMerged(source, mask, onto, left, top);
    }
}

TEST(PixelOps, MergeTestsTheRedByteOnly)
{
    reference::Picture mask(2, 1), source(2, 1);
    mask.at(0, 0) = {255, 255, 0};
    mask.at(1, 0) = {0, 0, 1};
    source.at(0, 0) = {1, 2, 3};
    source.at(1, 0) = {4, 5, 6};
    StoredImage from(source), through(mask), to(reference::Picture(2, 1));
    mergeMasked(to.view(), from.view(), through.view(), 0, 0);
    EXPECT_EQ((std::vector<uint8_t>{1, 2, 3, 0, 0, 0, ROW_PADDING, ROW_PADDING}), to.rows);
}

TEST(PixelOps, MergeTakesExtremePoints)
{
    const reference::Picture black(3, 3);
    StoredImage from(black), through(black), to(black);
    for (int far : {INT32_MIN, INT32_MAX}) {
        mergeMasked(to.view(), from.view(), through.view(), far, 0);
        mergeMasked(to.view(), from.view(), through.view(), 0, far);
    }
    expectImage(black, to);
}

TEST(PixelOps, FillWhereMapIsZeroLeavesOtherPixels)
{
    std::mt19937 random(15);
    for (int n = 0; n < 500; ++n) {
        reference::Picture expected = randomReference(random, 1 + random() % 7, 1 + random() % 7);
        StoredImage image(expected);
        const int width = 1 + (int)(random() % 7), height = 1 + (int)(random() % 7);
        std::vector<uint8_t> cells((size_t)width * height);
        for (uint8_t& c : cells)
            c = random() % 2 ? 0 : (uint8_t)(1 + random() % 255);
        fillWhereMapIsZero(image.view(), {cells.data(), width, width, height}, {10, 20, 30});
        for (int y = 0; y < expected.height && y < height; ++y) {
            for (int x = 0; x < expected.width && x < width; ++x) {
                if (cells[(size_t)y * width + x] == 0) expected.at(x, y) = {30, 20, 10};
            }
        }
        expectImage(expected, image);
    }
}

TEST(PixelOps, MirrorRowsKeepsPadding)
{
    std::mt19937 random(16);
    for (int width = 1; width <= 130; ++width) {
        const reference::Picture image = randomReference(random, width, 3);
        StoredImage stored(image);
        mirrorRows(stored.view());
        expectImage(referenceFlipHorizontal(image), stored);
    }
}

TEST(PixelOps, ReverseAllButLastRowKeepsThePicturesTopRow)
{
    std::mt19937 random(17);
    for (int height = 2; height <= 9; ++height) {
        const reference::Picture image = randomReference(random, 5, height);
        StoredImage stored(image);
        reverseAllButLastRow(stored.rows.data(), 16, height);
        expectImage(referenceFlipVertical(image), stored);
    }
}

TEST(PixelOps, ExchangedPixelsChangePlaces)
{
    std::mt19937 random(23);
    for (int n = 0; n < 1000; ++n) {
        reference::Picture image = randomReference(random, 1 + random() % 40, 1 + random() % 20);
        reference::Picture patch = randomReference(random, 1 + random() % 40, 1 + random() % 20);
        StoredImage large(image), small(patch);
        const int left = (int)(random() % 30) - 4, top = (int)(random() % 16) - 4;
        const bool inside =
            left >= 0 && top >= 0 && left + patch.width <= image.width && top + patch.height <= image.height;
        ASSERT_EQ(inside, exchangePixels(large.view(), small.view(), left, top));
        for (int y = 0; inside && y < patch.height; ++y) {
            for (int x = 0; x < patch.width; ++x) {
                const auto under = image.at(left + x, top + y);
                image.at(left + x, top + y) = patch.at(x, y);
                patch.at(x, y) = under;
            }
        }
        expectImage(image, large);
        expectImage(patch, small);
    }
}

// Every width and start, runs of every length: against the definition, pixel by pixel.
TEST_P(PixelRowsTest, FindTheNextMaskPixelAtEveryWidthAndStart)
{
    std::mt19937 random(31);
    for (int width = 1; width <= 130; ++width) {
        for (int offset = 0; offset < 5; ++offset) {
            std::vector<uint8_t> bytes((size_t)offset + (size_t)width * 3);
            bytes.shrink_to_fit();
            uint8_t* mask = bytes.data() + offset;
            uint8_t red = 0;
            for (int x = 0; x < width; ++x) {
                if (random() % 40 == 0) red = red ? 0 : (uint8_t)(1 + random() % 255);
                mask[x * 3] = (uint8_t)(random() % 2 * random());
                mask[x * 3 + 1] = (uint8_t)(random() % 2 * random());
                mask[x * 3 + 2] = red;
            }
            for (bool inside : {false, true}) {
                for (int x = 0; x <= width; ++x) {
                    int expected = x;
                    while (expected < width && (mask[expected * 3 + 2] == 0) != inside)
                        expected++;
                    ASSERT_EQ(expected, pixelRows().findMask(mask, x, width, inside)) << width << ' ' << x;
                }
            }
        }
    }
}

TEST_P(PixelRowsTest, FillAndCopyRunsAndNoOtherByte)
{
    std::mt19937 random(34);
    std::vector<uint8_t> source(600);
    for (uint8_t& byte : source)
        byte = (uint8_t)random();
    for (size_t count = 0; count <= 400; ++count) {
        for (size_t offset = 0; offset < 3; ++offset) {
            std::vector<uint8_t> filled(500, 0xCC), copied(500, 0xCC), expectedFill(filled), expectedCopy(copied);
            const size_t from = random() % 70;
            pixelRows().fill(filled.data() + offset, 255, count);
            pixelRows().copy(copied.data() + offset, source.data() + from, count);
            std::fill_n(expectedFill.begin() + (ptrdiff_t)offset, count, (uint8_t)255);
            std::copy_n(source.begin() + (ptrdiff_t)from, count, expectedCopy.begin() + (ptrdiff_t)offset);
            ASSERT_EQ(expectedFill, filled) << count << " bytes at " << offset;
            ASSERT_EQ(expectedCopy, copied) << count << " bytes at " << offset;
        }
    }
}

// Around the places where the copy goes from one way to another, from and to every alignment.
TEST_P(PixelRowsTest, CopyLargeBlocksAndNoOtherByte)
{
    std::mt19937 random(33);
    std::vector<uint8_t> source(80000), target(80000), expected(80000, 0xCC);
    for (uint8_t& byte : source)
        byte = (uint8_t)random();
    for (int n = 0; n < 400; ++n) {
        const size_t from = random() % 130, to = random() % 130;
        const size_t around = random() % 5 * 16384, nearBy = random() % 200;
        const size_t count = n < 130 ? (size_t)n : around + nearBy > 100 ? around + nearBy - 100 : nearBy;
        std::fill(target.begin(), target.end(), (uint8_t)0xCC);
        pixelRows().copyLarge(target.data() + to, source.data() + from, count);
        std::fill(expected.begin(), expected.end(), (uint8_t)0xCC);
        std::copy_n(source.begin() + (ptrdiff_t)from, count, expected.begin() + (ptrdiff_t)to);
        ASSERT_EQ(expected, target) << count << " bytes from " << from << " to " << to;
    }
}

TEST_P(PixelRowsTest, SwapRedAndBlueOfEveryPixelAndNoOtherByte)
{
    std::mt19937 random(32);
    for (size_t width = 0; width <= 130; ++width) {
        for (size_t offset = 0; offset < 4; ++offset) {
            std::vector<uint8_t> from(offset + width * 3), to(offset + width * 3 + 80, 0xCC);
            from.shrink_to_fit();
            for (uint8_t& byte : from)
                byte = (uint8_t)random();
            pixelRows().swapRedAndBlue(to.data() + offset, from.data() + offset, width);
            for (size_t i = 0; i < to.size(); ++i) {
                const bool inside = i >= offset && i < offset + width * 3;
                const size_t channel = (i - offset) % 3;
                const uint8_t expected = !inside ? 0xCC : from[i + 2 - 2 * channel];
                ASSERT_EQ(expected, to[i]) << width << " pixels at " << offset << ", byte " << i;
            }
        }
    }
}
