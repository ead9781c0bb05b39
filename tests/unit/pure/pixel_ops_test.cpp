#include <gtest/gtest.h>

#include <algorithm>

#include "image/pixels/pixel_ops.h"
#include "tests/reference/bitmap_reference.h"

static const uint8_t padByte = 0xCC;

// Stored rows in a heap block of exactly their size, so that the sanitizer sees one byte too far.
struct StoredImage {
    int width, height;
    std::vector<uint8_t> rows;

    explicit StoredImage(const ReferenceImage& image)
        : width(image.width), height(image.height), rows(storedRows(image, padByte))
    {
        rows.shrink_to_fit();
    }
    BitsView view() { return bottomUpView(rows.data(), width, height, (ptrdiff_t)rowStride(width, 24)); }
};

// Picture and padding are what the reference says.
static void expectImage(const ReferenceImage& expected, const StoredImage& actual)
{
    EXPECT_EQ(storedRows(expected, padByte), actual.rows);
}

TEST(PixelOps, ViewCountsRowsFromTheTop)
{
    StoredImage image(ReferenceImage(3, 2));
    const BitsView view = image.view();
    EXPECT_EQ(image.rows.data() + 12, rowOf(view, 0));
    EXPECT_EQ(image.rows.data(), rowOf(view, 1));
}

TEST(PixelOps, CopyFromOffsetMatchesPerPixelCopy)
{
    std::mt19937 random(11);
    for (int n = 0; n < 3000; n++) {
        const ReferenceImage source = randomReference(random, 1 + random() % 9, 1 + random() % 9);
        ReferenceImage expected = randomReference(random, 1 + random() % 12, 1 + random() % 12);
        StoredImage from(source), to(expected);
        const int left = (int)(random() % 30) - 15, top = (int)(random() % 30) - 15;
        copyFromOffset(to.view(), from.view(), left, top);
        for (int y = 0; y < expected.height; y++) {
            for (int x = 0; x < expected.width; x++) {
                const int sx = left + x, sy = top + y;
                if (sx >= 0 && sy >= 0 && sx < source.width && sy < source.height)
                    expected.set(x, y, source.get(sx, sy));
            }
        }
        expectImage(expected, to);
    }
}

TEST(PixelOps, CopyFromOffsetTakesExtremeOffsets)
{
    const ReferenceImage white(4, 4);
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
    for (int n = 0; n < 5000; n++) {
        const ReferenceImage source = randomReference(random, 1 + random() % 9, 1 + random() % 9);
        ReferenceImage expected = randomReference(random, 1 + random() % 9, 1 + random() % 9);
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
    ReferenceImage source(3, 1);
    source.set(0, 0, {1, 2, 3});
    source.set(1, 0, {4, 5, 6});
    source.set(2, 0, {7, 8, 9});
    StoredImage from(source), to(ReferenceImage(2, 1));
    EXPECT_TRUE(pasteWithByteSkip(to.view(), from.view(), -1, 0));
    EXPECT_EQ((std::vector<uint8_t>{2, 3, 4, 5, 6, 7, padByte, padByte}), to.rows);
}

TEST(PixelOps, PasteOverBothSidesIsCutToTheDestination)
{
    std::mt19937 random(13);
    const ReferenceImage source = randomReference(random, 9, 9);
    StoredImage from(source), to(ReferenceImage(3, 3));
    EXPECT_TRUE(pasteWithByteSkip(to.view(), from.view(), -2, -2));
    expectImage(referenceExtract(source, 0, 0, 3, 3), to);
}

TEST(PixelOps, MergeMaskedMatchesTheReferenceEverywhere)
{
    std::mt19937 random(14);
    for (int n = 0; n < 5000; n++) {
        const int width = 1 + (int)(random() % 12), height = 1 + (int)(random() % 6);
        const ReferenceImage source = randomReference(random, width, height);
        const ReferenceImage mask = randomMask(random, width, height);
        ReferenceImage expected = randomReference(random, 1 + random() % 12, 1 + random() % 9);
        StoredImage from(source), through(mask), to(expected);
        const int left = (int)(random() % 30) - 15, top = (int)(random() % 24) - 12;
        referencePasteMasked(expected, source, mask, left, top);
        mergeMasked(to.view(), from.view(), through.view(), left, top);
        expectImage(expected, to);
    }
}

// Runs of any length up to some dozens of pixels; blue and green say nothing.
static ReferenceImage maskOfRuns(std::mt19937& random, int width, int height)
{
    ReferenceImage mask = randomReference(random, width, height);
    int left = 0;
    bool inside = false;
    for (int y = 0; y < height; y++)
        for (int x = 0; x < width; x++) {
            if (left-- == 0) {
                left = (int)(random() % (random() % 2 ? 60 : 6));
                inside = !inside;
            }
            const int other = (int)(random() % 256);
            mask.set(x, y, {(uint8_t)other, (uint8_t)(255 - other), (uint8_t)(inside ? 0 : 1 + random() % 255)});
        }
    return mask;
}

TEST(PixelOps, MergeOfLongRunsMatchesTheReference)
{
    std::mt19937 random(15);
    for (int n = 0; n < 2000; n++) {
        const int width = 1 + (int)(random() % 130), height = 1 + (int)(random() % 4);
        const ReferenceImage source = randomReference(random, width, height);
        const ReferenceImage mask = maskOfRuns(random, width, height);
        ReferenceImage expected = randomReference(random, 1 + random() % 150, 1 + random() % 6);
        StoredImage from(source), through(mask), to(expected);
        const int left = (int)(random() % 60) - 30, top = (int)(random() % 8) - 4;
        referencePasteMasked(expected, source, mask, left, top);
        mergeMasked(to.view(), from.view(), through.view(), left, top);
        expectImage(expected, to);
    }
}

TEST(PixelOps, MergeTestsTheRedByteOnly)
{
    ReferenceImage mask(2, 1), source(2, 1);
    mask.set(0, 0, {255, 255, 0});
    mask.set(1, 0, {0, 0, 1});
    source.set(0, 0, {1, 2, 3});
    source.set(1, 0, {4, 5, 6});
    StoredImage from(source), through(mask), to(ReferenceImage(2, 1));
    mergeMasked(to.view(), from.view(), through.view(), 0, 0);
    EXPECT_EQ((std::vector<uint8_t>{1, 2, 3, 0, 0, 0, padByte, padByte}), to.rows);
}

TEST(PixelOps, MergeTakesExtremePoints)
{
    const ReferenceImage black(3, 3);
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
    for (int n = 0; n < 500; n++) {
        ReferenceImage expected = randomReference(random, 1 + random() % 7, 1 + random() % 7);
        StoredImage image(expected);
        const int width = 1 + (int)(random() % 7), height = 1 + (int)(random() % 7);
        std::vector<uint8_t> cells((size_t)width * height);
        for (uint8_t& c : cells)
            c = random() % 2 ? 0 : (uint8_t)(1 + random() % 255);
        fillWhereMapIsZero(image.view(), {cells.data(), width, width, height}, {10, 20, 30});
        for (int y = 0; y < expected.height && y < height; y++) {
            for (int x = 0; x < expected.width && x < width; x++) {
                if (cells[(size_t)y * width + x] == 0) expected.set(x, y, {30, 20, 10});
            }
        }
        expectImage(expected, image);
    }
}

TEST(PixelOps, MirrorRowsKeepsPadding)
{
    std::mt19937 random(16);
    for (int width = 1; width <= 9; width++) {
        const ReferenceImage image = randomReference(random, width, 3);
        StoredImage stored(image);
        mirrorRows(stored.view());
        expectImage(referenceFlipHorizontal(image), stored);
    }
}

TEST(PixelOps, ReverseAllButLastRowKeepsThePicturesTopRow)
{
    std::mt19937 random(17);
    for (int height = 2; height <= 9; height++) {
        const ReferenceImage image = randomReference(random, 5, height);
        StoredImage stored(image);
        reverseAllButLastRow(stored.rows.data(), 16, height);
        expectImage(referenceFlipVertical(image), stored);
    }
}

static std::vector<int> tableOf(int from, int to)
{
    std::vector<uint32_t> table((size_t)to, 0xCCCCCCCC);
    nearestTable(table.data(), from, to);
    return {table.begin(), table.end()};
}

TEST(PixelOps, ExchangedPixelsChangePlaces)
{
    std::mt19937 random(23);
    for (int n = 0; n < 1000; n++) {
        ReferenceImage image = randomReference(random, 1 + random() % 40, 1 + random() % 20);
        ReferenceImage patch = randomReference(random, 1 + random() % 40, 1 + random() % 20);
        StoredImage large(image), small(patch);
        const int left = (int)(random() % 30) - 4, top = (int)(random() % 16) - 4;
        const bool inside =
            left >= 0 && top >= 0 && left + patch.width <= image.width && top + patch.height <= image.height;
        ASSERT_EQ(inside, exchangePixels(large.view(), small.view(), left, top));
        for (int y = 0; inside && y < patch.height; y++) {
            for (int x = 0; x < patch.width; x++) {
                const auto under = image.get(left + x, top + y);
                image.set(left + x, top + y, patch.get(x, y));
                patch.set(x, y, under);
            }
        }
        expectImage(image, large);
        expectImage(patch, small);
    }
}

TEST(NearestTable, SmallTablesByHand)
{
    EXPECT_EQ((std::vector<int>{0}), tableOf(1, 1));
    EXPECT_EQ((std::vector<int>{0, 0, 0}), tableOf(1, 3));
    EXPECT_EQ((std::vector<int>{0}), tableOf(7, 1));
    EXPECT_EQ((std::vector<int>{0, 1, 2}), tableOf(3, 3));
    EXPECT_EQ((std::vector<int>{0, 1, 1}), tableOf(2, 3));
    EXPECT_EQ((std::vector<int>{0, 1}), tableOf(3, 2));  // err 0 takes the diagonal first, then column 2 is skipped
    EXPECT_EQ((std::vector<int>{0, 2, 4}), tableOf(6, 3));
}

static void expectTableMatchesReference(int from, int to)
{
    const std::vector<int16_t> expected = referenceNearestTable(from, to);
    ASSERT_EQ((size_t)to, expected.size()) << from << ' ' << to;
    EXPECT_EQ(std::vector<int>(expected.begin(), expected.end()), tableOf(from, to)) << from << ' ' << to;
}

TEST(NearestTable, MatchesThe16BitRuleUpTo8192)
{
    for (int from = 1; from <= 40; from++) {
        for (int to = 1; to <= 40; to++)
            expectTableMatchesReference(from, to);
    }
    std::mt19937 random(18);
    for (int n = 0; n < 300; n++)
        expectTableMatchesReference(1 + random() % 8192, 1 + random() % 8192);
    for (int edge : {1, 2, 4096, 8191, 8192}) {
        expectTableMatchesReference(8192, edge);
        expectTableMatchesReference(edge, 8192);
    }
}

TEST(NearestTable, AboveThe16BitRangeStaysInside)
{
    for (auto [from, to] : {std::pair{100000, 30}, {30, 100000}, {100000, 99999}, {70000, 70000}}) {
        const std::vector<int> table = tableOf(from, to);
        EXPECT_EQ(0, table.front());
        EXPECT_LT(table.back(), from);
        EXPECT_GE(table.back(), (from - 1) / 100 * 98);
        EXPECT_TRUE(std::is_sorted(table.begin(), table.end()));
    }
}

TEST(ScaleNearest, MatchesTheReference)
{
    std::mt19937 random(19);
    for (int n = 0; n < 1500; n++) {
        const ReferenceImage source = randomReference(random, 1 + random() % 20, 1 + random() % 20);
        const int width = 1 + (int)(random() % 40), height = 1 + (int)(random() % 40);
        StoredImage from(source), to(ReferenceImage(width, height));
        ASSERT_TRUE(scaleNearest(to.view(), from.view()));
        expectImage(referenceScale(source, width, height), to);
    }
}

TEST(ScaleNearest, IsAnchoredAtTheBottomRow)
{
    ReferenceImage source(1, 4);
    for (int y = 0; y < 4; y++)
        source.set(0, y, {(uint8_t)(10 + y), 0, 0});
    StoredImage from(source), to(ReferenceImage(1, 1));
    ASSERT_TRUE(scaleNearest(to.view(), from.view()));
    EXPECT_EQ(13, to.rows[0]);
}
