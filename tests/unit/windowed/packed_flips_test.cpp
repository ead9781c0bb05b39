// Packed bitmaps mirrored and scaled.
#include <algorithm>
#include <climits>
#include <cstring>

#include "image/packed_bitmap.h"
#include "tests/unit/windowed/packed_blocks.h"

TEST(PackedBitmap, FlipVerticalKeepsTheTopRowAndShiftsByOne)
{
    reference::Picture image(2, 4), expected(2, 4);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 2; ++x)
            image.at(x, y) = {(uint8_t)(10 + y), 0, 0};
    }
    const int rows[] = {10, 13, 12, 11};  // a true mirror would be 13, 12, 11, 10
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 2; ++x)
            expected.at(x, y) = {(uint8_t)rows[y], 0, 0};
    }
    Block block(packed(image));
    EXPECT_EQ(1, flipVertical(block.handle));
    expectStored(expected, block.handle);
}

TEST(PackedBitmap, FlipsMatchTheReference)
{
    std::mt19937 random(26);
    for (int n = 0; n < 300; ++n) {
        const reference::Picture image = randomReference(random, 2 + random() % 8, 2 + random() % 8);
        Block vertical(packed(image, 124)), horizontal(packed(image));
        EXPECT_EQ(1, flipVertical(vertical.handle));
        EXPECT_EQ(1, flipHorizontal(horizontal.handle));
        expectStored(referenceFlipVertical(image), vertical.handle);
        expectStored(referenceFlipHorizontal(image), horizontal.handle);
    }
}

TEST(PackedBitmap, FlipsNeedTwoRowsAndTwoColumns)
{
    Block flat(createBitmap(5, 1, 24)), thin(createBitmap(1, 5, 24));
    for (HGLOBAL image : {flat.handle, thin.handle}) {
        EXPECT_EQ(0, flipVertical(image));
        EXPECT_EQ(0, flipHorizontal(image));
    }
}

TEST(PackedBitmap, FlipVerticalOtherDepths)
{
    Block map(blockOf(withHeader(2, 3, 8, {1, 2, 0, 0, 3, 4, 0, 0, 5, 6, 0, 0})));
    EXPECT_EQ(1, flipVertical(map.handle));
    const std::vector<uint8_t> bytes = map.bytes();
    EXPECT_EQ(3, bytes[40]);
    EXPECT_EQ(1, bytes[44]);
    EXPECT_EQ(5, bytes[48]);
    for (int bitCount : {15, 16}) {
        Block high(blockOf(withHeader(2, 3, bitCount, {1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3})));
        EXPECT_EQ(1, flipVertical(high.handle));
        EXPECT_EQ(2, high.bytes()[43]);
        EXPECT_EQ(1, high.bytes()[47]);
        EXPECT_EQ(3, high.bytes()[51]);
    }
    for (int bitCount : {1, 4, 32}) {
        Block other(blockOf(withHeader(2, 2, bitCount, std::vector<uint8_t>(16, 9))));
        EXPECT_EQ(0, flipVertical(other.handle));
        EXPECT_EQ(9, other.bytes()[40]);
    }
}

TEST(PackedBitmap, FlipHorizontalZeroesRowsOfOtherDepths)
{
    Block map(blockOf(withHeader(2, 2, 8, {1, 2, 0, 0, 3, 4, 0, 0, GUARD_BYTE})));
    EXPECT_EQ(1, flipHorizontal(map.handle));
    std::vector<uint8_t> bytes = map.bytes();
    EXPECT_EQ(std::vector<uint8_t>(8), std::vector<uint8_t>(bytes.begin() + 40, bytes.begin() + 48));
    EXPECT_EQ(GUARD_BYTE, bytes[48]);
    Block other(blockOf(withHeader(2, 2, 32, std::vector<uint8_t>(16, 9))));
    EXPECT_EQ(0, flipHorizontal(other.handle));
}

TEST(PackedBitmap, FlipsFreeTheirScratch)
{
    Block image(createBitmap(2, 2, 24));
    for (int n = 0; n < 70000; ++n) {
        ASSERT_EQ(1, flipVertical(image.handle));
        ASSERT_EQ(1, flipHorizontal(image.handle));
    }
}

TEST(PackedBitmap, ScaleMatchesTheReference)
{
    std::mt19937 random(27);
    for (int n = 0; n < 500; ++n) {
        const reference::Picture image = randomReference(random, 1 + random() % 12, 1 + random() % 12);
        const int width = 1 + (int)(random() % 25), height = 1 + (int)(random() % 25);
        Block from(packed(image)), scaled(scaleBitmap(from.handle, width, height));
        expectPicture(referenceScale(image, width, height), scaled.handle);
    }
}

TEST(PackedBitmap, ScaleOf8BitIsBlackAndOtherDepthsFail)
{
    Block map(blockOf(withHeader(2, 2, 8, std::vector<uint8_t>(8, 9))));
    Block scaled(scaleBitmap(map.handle, 3, 1));
    std::vector<uint8_t> bytes = scaled.bytes();
    bytes.resize(44);
    EXPECT_EQ(withHeader(3, 1, 8, std::vector<uint8_t>(4)), bytes);
    for (int bitCount : {1, 4, 16, 32}) {
        Block other(blockOf(withHeader(2, 2, bitCount, std::vector<uint8_t>(16))));
        EXPECT_EQ(nullptr, scaleBitmap(other.handle, 2, 2));
    }
    Block image(createBitmap(2, 2, 24));
    EXPECT_EQ(nullptr, scaleBitmap(image.handle, 0, 2));
    EXPECT_EQ(nullptr, scaleBitmap(image.handle, 2, 0));
    EXPECT_EQ(nullptr, scaleBitmap(image.handle, -1, 2));
}

TEST(PackedBitmap, ScaleAbove8192Works)
{
    reference::Picture image(2, 1);
    image.at(0, 0) = {1, 2, 3};
    image.at(1, 0) = {4, 5, 6};
    Block from(packed(image)), scaled(scaleBitmap(from.handle, 70000, 1));
    ASSERT_NE(nullptr, scaled.handle);
    EXPECT_EQ((reference::Pixel{1, 2, 3}), unpacked(scaled.handle).at(0, 0));
    EXPECT_EQ((reference::Pixel{4, 5, 6}), unpacked(scaled.handle).at(69999, 0));
    Block back(scaleBitmap(scaled.handle, 2, 1));
    EXPECT_EQ((reference::Pixel{1, 2, 3}), unpacked(back.handle).at(0, 0));
}
