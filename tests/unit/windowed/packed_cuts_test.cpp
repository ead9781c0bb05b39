// Parts cut out of packed bitmaps and put into them.
#include <algorithm>
#include <climits>
#include <cstring>

#include "image/packed_bitmap.h"
#include "tests/unit/windowed/packed_blocks.h"

static void expectExtract(const reference::Picture& image, HGLOBAL handle, RECT rect)
{
    const reference::Picture expected = referenceExtract(image, rect.left, rect.top, rect.right, rect.bottom);
    Block cut(extractRect(handle, &rect));
    if (expected.width == 0) {
        EXPECT_EQ(nullptr, cut.handle);
    } else {
        expectPicture(expected, cut.handle);
    }
}

TEST(PackedBitmap, ExtractMatchesTheReferenceOnEveryRectangle)
{
    std::mt19937 random(21);
    for (int width = 1; width <= 5; ++width) {
        const reference::Picture image = randomReference(random, width, 3);
        Block block(packed(image));
        for (int left = -3; left <= width + 1; ++left) {
            for (int right = left - 1; right <= width + 3; ++right) {
                for (int top = -2; top <= 4; ++top) {
                    for (int bottom : {top - 1, top, top + 1, top + 2, top + 3, top + 7}) {
                        expectExtract(image, block.handle, {left, top, right, bottom});
                    }
                }
            }
        }
        EXPECT_TRUE(isUnlocked(block.handle));
    }
}

TEST(PackedBitmap, ExtractOverTheCornerIsBlackThereAndInPlaceElsewhere)
{
    reference::Picture image(4, 4);
    for (reference::Pixel& p : image.pixels)
        p = {9, 9, 9};
    Block block(packed(image));
    const RECT rect = {-2, -1, 1, 2};
    Block cut(extractRect(block.handle, &rect));
    reference::Picture expected(3, 3);
    expected.at(2, 1) = {9, 9, 9};
    expected.at(2, 2) = {9, 9, 9};
    expectPicture(expected, cut.handle);
}

TEST(PackedBitmap, ExtractIsAtMostTheImagesSize)
{
    Block block(createBitmap(4, 3, 24));
    const RECT rect = {0, 0, 100, 100};
    Block cut(extractRect(block.handle, &rect));
    EXPECT_EQ(4, bitmapWidth(cut.handle));
    EXPECT_EQ(3, bitmapHeight(cut.handle));
}

TEST(PackedBitmap, ExtractTakesExtremeRectangles)
{
    Block block(createBitmap(4, 3, 24));
    const RECT all = {INT_MIN, INT_MIN, INT_MAX, INT_MAX};
    Block cut(extractRect(block.handle, &all));
    EXPECT_EQ(4, bitmapWidth(cut.handle));
    const RECT inverted = {INT_MAX, INT_MAX, INT_MIN, INT_MIN};
    EXPECT_EQ(nullptr, extractRect(block.handle, &inverted));
    Block map(createBitmap(4, 3, 8));
    EXPECT_EQ(nullptr, extractRect(map.handle, &all));
}

TEST(PackedBitmap, ExtractFollowsTheHeaderSize)
{
    std::mt19937 random(22);
    const reference::Picture image = randomReference(random, 5, 4);
    Block block(packed(image, 124));
    expectExtract(image, block.handle, {1, 1, 4, 4});
}

TEST(PackedBitmap, ExtractMaskedFillsWhereTheMaskIsZero)
{
    std::mt19937 random(23);
    const reference::Picture image = randomReference(random, 6, 5);
    Block block(packed(image));
    // 3 x 2 mask: stored bottom row first, rows of 4 bytes.
    Block mask(blockOf(withHeader(3, 2, 8, {1, 0, 255, 0xCC, 0, 7, 0, 0xCC})));
    Block cut(extractRectMasked(block.handle, mask.handle, 2, 1, 3, 2, RGB(11, 22, 33)));
    reference::Picture expected = referenceExtract(image, 2, 1, 5, 3);
    for (POINT p : {POINT{0, 0}, POINT{2, 0}, POINT{1, 1}})
        expected.at(p.x, p.y) = {33, 22, 11};
    expectPicture(expected, cut.handle);
    EXPECT_TRUE(isUnlocked(mask.handle));
}

TEST(PackedBitmap, ExtractMaskedCutsAMaskLargerThanTheImageOrSmallerThanTheCut)
{
    Block block(createBitmap(2, 2, 24));
    Block large(createBitmap(9, 9, 8)), small(createBitmap(1, 1, 8));
    Block all(extractRectMasked(block.handle, large.handle, 0, 0, 9, 9, RGB(1, 2, 3)));
    reference::Picture filled(2, 2);
    for (reference::Pixel& p : filled.pixels)
        p = {3, 2, 1};
    expectPicture(filled, all.handle);
    Block one(extractRectMasked(block.handle, small.handle, 0, 0, 2, 2, RGB(1, 2, 3)));
    reference::Picture corner(2, 2);
    corner.at(0, 0) = {3, 2, 1};
    expectPicture(corner, one.handle);
}

TEST(PackedBitmap, PasteMatchesTheReference)
{
    std::mt19937 random(24);
    for (int n = 0; n < 1000; ++n) {
        const reference::Picture source = randomReference(random, 1 + random() % 7, 1 + random() % 7);
        reference::Picture expected = randomReference(random, 1 + random() % 7, 1 + random() % 7);
        Block from(packed(source)), to(packed(expected));
        const int left = (int)(random() % 20) - 10, top = (int)(random() % 20) - 10;
        const RECT rect = {left, top, -77, 99};
        const bool placed = referencePaste(expected, source, left, top);
        EXPECT_EQ(placed ? 1 : (INT_PTR)from.handle, pasteRect(to.handle, from.handle, &rect));
        expectStored(expected, to.handle);
    }
}

TEST(PackedBitmap, PasteThatMissesReturnsTheSourceHandle)
{
    Block from(createBitmap(3, 3, 24)), to(createBitmap(5, 5, 24));
    for (RECT rect : {RECT{5, 0, 0, 0}, RECT{0, 5, 0, 0}, RECT{-3, 0, 0, 0}, RECT{0, -3, 0, 0}, RECT{INT_MAX, 0, 0, 0},
                      RECT{INT_MIN, 0, 0, 0}}) {
        EXPECT_EQ((INT_PTR)from.handle, pasteRect(to.handle, from.handle, &rect));
    }
    const RECT corner = {4, 4, 0, 0};
    EXPECT_EQ(1, pasteRect(to.handle, from.handle, &corner));
}

TEST(PackedBitmap, PasteNeedsTwo24BitImages)
{
    Block image(createBitmap(3, 3, 24)), map(createBitmap(3, 3, 8));
    const RECT rect = {0, 0, 3, 3};
    EXPECT_EQ(0, pasteRect(image.handle, map.handle, &rect));
    EXPECT_EQ(0, pasteRect(map.handle, image.handle, &rect));
}

TEST(PackedBitmap, PastesCountOnAHeaderOf40Bytes)
{
    const reference::Picture black(2, 1);
    reference::Picture white(1, 1);
    white.at(0, 0) = {255, 255, 255};
    const RECT rect = {0, 0, 1, 1};
    Block to(packed(black, 48)), from(packed(white));
    EXPECT_EQ(1, pasteRect(to.handle, from.handle, &rect));
    EXPECT_EQ(255, to.bytes()[40]);
    Block masked(packed(black, 48)), mask(packed(reference::Picture(1, 1)));
    EXPECT_EQ(1, pasteMasked(masked.handle, from.handle, mask.handle, POINT{0, 0}));
    EXPECT_EQ(255, masked.bytes()[40]);
}

TEST(PackedBitmap, PasteMaskedMatchesTheReference)
{
    std::mt19937 random(25);
    for (int n = 0; n < 1000; ++n) {
        const int width = 1 + (int)(random() % 7), height = 1 + (int)(random() % 7);
        const reference::Picture source = randomReference(random, width, height);
        const reference::Picture mask = randomMask(random, width, height);
        reference::Picture expected = randomReference(random, 1 + random() % 9, 1 + random() % 9);
        Block from(packed(source)), through(packed(mask)), to(packed(expected));
        const POINT at = {(LONG)(random() % 20) - 10, (LONG)(random() % 20) - 10};
        referencePasteMasked(expected, source, mask, at.x, at.y);
        EXPECT_EQ(1, pasteMasked(to.handle, from.handle, through.handle, at));
        expectStored(expected, to.handle);
    }
}

TEST(PackedBitmap, PasteMaskedNeedsAMaskOfTheSourcesSize)
{
    Block to(createBitmap(5, 5, 24)), from(createBitmap(3, 3, 24)), mask(createBitmap(2, 3, 24));
    EXPECT_EQ(0, pasteMasked(to.handle, from.handle, mask.handle, POINT{0, 0}));
    EXPECT_EQ(0, pasteMasked(to.handle, from.handle, nullptr, POINT{0, 0}));
    EXPECT_TRUE(isUnlocked(to.handle));
    EXPECT_TRUE(isUnlocked(from.handle));
    EXPECT_TRUE(isUnlocked(mask.handle));
}
