// Packed bitmaps made, described, copied; and what is refused.
#include <algorithm>
#include <climits>
#include <cstring>

#include "image/packed_bitmap.h"
#include "tests/unit/windowed/packed_blocks.h"

TEST(PackedBitmap, InitHeaderLeavesTheOtherFields)
{
    BITMAPINFOHEADER header;
    memset(&header, 0x77, sizeof header);
    initBitmapHeader(&header, 5, 6, 24);
    EXPECT_EQ(40u, header.biSize);
    EXPECT_EQ(5, header.biWidth);
    EXPECT_EQ(6, header.biHeight);
    EXPECT_EQ(1, header.biPlanes);
    EXPECT_EQ(24, header.biBitCount);
    EXPECT_EQ(0x77777777u, header.biCompression);
    EXPECT_EQ(0x77777777u, header.biClrImportant);
    initBitmapHeader(nullptr, 1, 1, 24);
}

TEST(PackedBitmap, CreateIsBlackWithPaddedRows)
{
    for (int width = 1; width <= 5; ++width) {
        Block image(createBitmap(width, 3, 24));
        std::vector<uint8_t> expected =
            withHeader(width, 3, 24, std::vector<uint8_t>((size_t)rowStride(width, 24) * 3));
        std::vector<uint8_t> actual = image.bytes();
        ASSERT_GE(actual.size(), expected.size());
        actual.resize(expected.size());
        EXPECT_EQ(expected, actual);
        EXPECT_TRUE(isUnlocked(image.handle));
    }
}

TEST(PackedBitmap, CreateRefusesImpossibleSizes)
{
    EXPECT_EQ(nullptr, createBitmap(0, 5, 24));
    EXPECT_EQ(nullptr, createBitmap(5, 0, 24));
    EXPECT_EQ(nullptr, createBitmap(-3, 5, 24));
    EXPECT_EQ(nullptr, createBitmap(INT_MAX, INT_MAX, 24));
    EXPECT_EQ(nullptr, createBitmap(INT_MAX, INT_MAX, 65535));
    // 32-bit arithmetic would wrap this one to a few bytes.
    EXPECT_EQ(nullptr, createBitmap(0x15555556, 0x40000000, 24));
}

TEST(PackedBitmap, InfoFillsOnlyTheOutputsGiven)
{
    Block image(createBitmap(7, 4, 8));
    int width = 0, height = 0;
    DWORD bitCount = 0xFFFFFFFF;
    EXPECT_EQ(1, lockBitmapInfo(image.handle, nullptr, nullptr, nullptr));
    EXPECT_EQ(1, lockBitmapInfo(image.handle, &width, &height, &bitCount));
    EXPECT_EQ(7, width);
    EXPECT_EQ(4, height);
    EXPECT_EQ(8u, bitCount);
    EXPECT_EQ(7, bitmapWidth(image.handle));
    EXPECT_EQ(4, bitmapHeight(image.handle));
    EXPECT_TRUE(isUnlocked(image.handle));
}

TEST(PackedBitmap, NullHandlesFail)
{
    const RECT rect = {0, 0, 1, 1};
    COLORREF colour;
    EXPECT_EQ(0, lockBitmapInfo(nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(0, bitmapWidth(nullptr));
    EXPECT_EQ(0, bitmapHeight(nullptr));
    EXPECT_EQ(nullptr, lockBitmapBits(nullptr));
    unlockBitmap(nullptr);
    EXPECT_EQ(nullptr, duplicateBitmap(nullptr, 1));
    EXPECT_EQ(0, getPixelColour(nullptr, 0, 0, &colour));
    EXPECT_EQ(nullptr, extractRect(nullptr, &rect));
    EXPECT_EQ(nullptr, extractRectMasked(nullptr, nullptr, 0, 0, 1, 1, 0));
    EXPECT_EQ(0, pasteRect(nullptr, nullptr, &rect));
    EXPECT_EQ(0, pasteMasked(nullptr, nullptr, nullptr, POINT{0, 0}));
    EXPECT_EQ(0, flipVertical(nullptr));
    EXPECT_EQ(0, flipHorizontal(nullptr));
    EXPECT_EQ(nullptr, scaleBitmap(nullptr, 1, 1));
    EXPECT_FALSE(isSoundBitmap(nullptr));
}

TEST(PackedBitmap, BitsStayLockedUntilUnlocked)
{
    Block image(createBitmap(2, 2, 24));
    BYTE* bits = lockBitmapBits(image.handle);
    EXPECT_FALSE(isUnlocked(image.handle));
    EXPECT_EQ((BYTE*)GlobalLock(image.handle) + 40, bits);
    GlobalUnlock(image.handle);
    unlockBitmap(image.handle);
    EXPECT_TRUE(isUnlocked(image.handle));
}

// Distance of the bits pointer from the block's start, for a roomy block of that header; -1 for none.
static ptrdiff_t bitsOffset(int bitCount, DWORD coloursUsed, unsigned headerSize = 40)
{
    std::vector<uint8_t> bytes = withHeader(4, 4, bitCount, std::vector<uint8_t>(4096), headerSize);
    ((BITMAPINFOHEADER*)bytes.data())->biClrUsed = coloursUsed;
    Block image(blockOf(bytes));
    BYTE* bits = lockBitmapBits(image.handle);
    if (!bits) return -1;
    const ptrdiff_t offset = bits - (BYTE*)GlobalLock(image.handle);
    GlobalUnlock(image.handle);
    unlockBitmap(image.handle);
    return offset;
}

TEST(PackedBitmap, OnlyTheBitsPointerCountsTheColourTable)
{
    EXPECT_EQ(40 + 2 * 4, bitsOffset(1, 0));
    EXPECT_EQ(40 + 16 * 4, bitsOffset(4, 0));
    EXPECT_EQ(40 + 256 * 4, bitsOffset(8, 0));
    EXPECT_EQ(40, bitsOffset(16, 0));
    EXPECT_EQ(40, bitsOffset(24, 0));
    EXPECT_EQ(40, bitsOffset(32, 0));
    EXPECT_EQ(40 + 10 * 4, bitsOffset(8, 10));
    EXPECT_EQ(40 + 10 * 4, bitsOffset(24, 10));
    EXPECT_EQ(124, bitsOffset(24, 0, 124));
    EXPECT_EQ(124 + 10 * 4, bitsOffset(24, 10, 124));

    // extractRect goes by the header size alone, so the same image's pixels start before that pointer.
    std::vector<uint8_t> bytes = withHeader(1, 1, 24, std::vector<uint8_t>{1, 2, 3, 0, 9, 9, 9, 0});
    ((BITMAPINFOHEADER*)bytes.data())->biClrUsed = 1;
    Block image(blockOf(bytes));
    COLORREF colour = 0;
    EXPECT_EQ(1, getPixelColour(image.handle, 0, 0, &colour));
    EXPECT_EQ(0x00010203u, colour);
}

TEST(PackedBitmap, BitsPointerBehindTheBlockIsNull)
{
    EXPECT_EQ(-1, bitsOffset(8, 0xFFFFFFFF));
    EXPECT_EQ(-1, bitsOffset(24, 0x40000000));
    EXPECT_EQ(-1, bitsOffset(8, 0, 3));
    std::vector<uint8_t> bytes = withHeader(4, 4, 24, std::vector<uint8_t>(4));
    ((BITMAPINFOHEADER*)bytes.data())->biSize = 0xFFFFFFF0;
    Block image(blockOf(bytes));
    EXPECT_EQ(nullptr, lockBitmapBits(image.handle));
    EXPECT_TRUE(isUnlocked(image.handle));
}

TEST(PackedBitmap, DuplicateCopiesEveryByteOfAnyBlock)
{
    Block odd(blockOf({1, 2, 3, 4, 5}));
    Block copy(duplicateBitmap(odd.handle, 1));
    EXPECT_EQ(odd.bytes(), copy.bytes());
    EXPECT_TRUE(isUnlocked(odd.handle));
    EXPECT_TRUE(isUnlocked(copy.handle));
}

TEST(PackedBitmap, DuplicateWithoutContentsIsZero)
{
    Block odd(blockOf({1, 2, 3, 4, 5}));
    Block copy(duplicateBitmap(odd.handle, 0));
    EXPECT_EQ(std::vector<uint8_t>(odd.bytes().size()), copy.bytes());
}

TEST(PackedBitmap, CopyIntoReturnValues)
{
    Block small(blockOf(std::vector<uint8_t>(16, 1)));
    Block large(blockOf(std::vector<uint8_t>(64, 2)));
    EXPECT_EQ(0, copyBitmapInto(small.handle, nullptr));
    EXPECT_EQ(0, copyBitmapInto(nullptr, nullptr));
    EXPECT_EQ(1, copyBitmapInto(nullptr, small.handle));
    EXPECT_EQ(0, copyBitmapInto(small.handle, large.handle));
    EXPECT_EQ(1, small.bytes()[0]);
    EXPECT_EQ(1, copyBitmapInto(large.handle, small.handle));
    EXPECT_EQ(1, large.bytes()[15]);
    EXPECT_EQ(2, large.bytes()[63]);
    EXPECT_EQ(1, copyBitmapInto(large.handle, large.handle));
}

TEST(PackedBitmap, PixelColourIsAColorref)
{
    reference::Picture image(3, 2);
    image.at(0, 0) = {255, 0, 0};
    image.at(2, 1) = {1, 2, 3};
    Block block(packed(image));
    COLORREF colour = 0x12345678;
    EXPECT_EQ(1, getPixelColour(block.handle, 0, 0, &colour));
    EXPECT_EQ(0x00FF0000u, colour);
    EXPECT_EQ(1, getPixelColour(block.handle, 2, 1, &colour));
    EXPECT_EQ(0x00010203u, colour);
    for (POINT p : {POINT{3, 0}, POINT{0, 2}, POINT{-1, 0}, POINT{0, -1}}) {
        EXPECT_EQ(0, getPixelColour(block.handle, p.x, p.y, &colour));
    }
    EXPECT_EQ(0x00010203u, colour);
    EXPECT_TRUE(isUnlocked(block.handle));
    Block map(createBitmap(3, 2, 8));
    EXPECT_EQ(0, getPixelColour(map.handle, 0, 0, &colour));
}

// Headers that promise what the block does not hold.
static std::vector<std::vector<uint8_t>> lyingBlocks()
{
    std::vector<std::vector<uint8_t>> blocks = {{1}, std::vector<uint8_t>(39, 40)};
    for (POINT size : {POINT{4, 5}, POINT{5, 4}, POINT{INT_MAX, 1}, POINT{1, INT_MAX}, POINT{INT_MAX, INT_MAX},
                       POINT{0, 4}, POINT{4, 0}, POINT{-4, 4}, POINT{4, -4}, POINT{0x40000000, 4}}) {
        blocks.push_back(withHeader(size.x, size.y, 24, std::vector<uint8_t>(48)));
    }
    for (unsigned headerSize : {0u, 12u, 39u, 41u, 4000u, 0xFFFFFFD8u, 0xFFFFFFFFu}) {
        blocks.push_back(withHeader(4, 4, 24, std::vector<uint8_t>(48)));
        ((BITMAPINFOHEADER*)blocks.back().data())->biSize = headerSize;
    }
    return blocks;
}

TEST(PackedBitmap, LyingHeadersFailWithoutHarm)
{
    Block good(createBitmap(4, 4, 24)), map(createBitmap(4, 4, 8));
    const RECT rect = {0, 0, 4, 4};
    COLORREF colour;
    for (const std::vector<uint8_t>& bytes : lyingBlocks()) {
        Block bad(blockOf(bytes));
        EXPECT_EQ(nullptr, lockBitmapBits(bad.handle)) << bytes.size();
        EXPECT_FALSE(isSoundBitmap(bad.handle));
        EXPECT_EQ(0, getPixelColour(bad.handle, 0, 0, &colour));
        EXPECT_EQ(nullptr, extractRect(bad.handle, &rect));
        EXPECT_EQ(nullptr, extractRectMasked(bad.handle, map.handle, 0, 0, 4, 4, 0));
        EXPECT_EQ(nullptr, extractRectMasked(good.handle, bad.handle, 0, 0, 4, 4, 0));
        EXPECT_EQ(0, flipVertical(bad.handle));
        EXPECT_EQ(0, flipHorizontal(bad.handle));
        EXPECT_EQ(nullptr, scaleBitmap(bad.handle, 2, 2));
        std::vector<uint8_t> after = bad.bytes();
        after.resize(bytes.size());
        EXPECT_EQ(bytes, after);
        EXPECT_TRUE(isUnlocked(bad.handle));
    }
    EXPECT_TRUE(isUnlocked(good.handle));
    EXPECT_TRUE(isUnlocked(map.handle));
}

TEST(PackedBitmap, PastesRefuseRowsThatAreNotThere)
{
    Block good(createBitmap(4, 4, 24));
    const RECT rect = {0, 0, 4, 4};
    for (POINT size : {POINT{4, 5}, POINT{5, 4}, POINT{INT_MAX, INT_MAX}, POINT{-4, 4}, POINT{4, 0}}) {
        Block bad(blockOf(withHeader(size.x, size.y, 24, std::vector<uint8_t>(48))));
        EXPECT_EQ(0, pasteRect(bad.handle, good.handle, &rect));
        EXPECT_EQ(0, pasteRect(good.handle, bad.handle, &rect));
        EXPECT_EQ(0, pasteMasked(bad.handle, good.handle, good.handle, POINT{0, 0}));
        EXPECT_EQ(0, pasteMasked(good.handle, bad.handle, good.handle, POINT{0, 0}));
        EXPECT_EQ(0, pasteMasked(good.handle, good.handle, bad.handle, POINT{0, 0}));
    }
}

static bool soundWith(void (*change)(BITMAPINFOHEADER*), int bitCount = 24, size_t rowBytes = 48)
{
    std::vector<uint8_t> bytes = withHeader(4, 4, bitCount, std::vector<uint8_t>(rowBytes));
    change((BITMAPINFOHEADER*)bytes.data());
    Block image(blockOf(bytes));
    return isSoundBitmap(image.handle);
}

TEST(PackedBitmap, SoundBitmaps)
{
    const auto asIs = [](BITMAPINFOHEADER*) {};
    EXPECT_TRUE(soundWith(asIs));
    EXPECT_TRUE(soundWith(asIs, 32, 64));
    EXPECT_TRUE(soundWith(asIs, 16, 32));
    EXPECT_TRUE(soundWith(asIs, 8, 1024 + 16));
    EXPECT_TRUE(soundWith(asIs, 4, 64 + 16));
    EXPECT_TRUE(soundWith(asIs, 1, 8 + 16));
    EXPECT_FALSE(soundWith(asIs, 24, 40));
    EXPECT_FALSE(soundWith(asIs, 8, 1024));
    EXPECT_FALSE(soundWith(asIs, 0, 64));
    EXPECT_FALSE(soundWith(asIs, 23, 64));
    EXPECT_FALSE(soundWith([](BITMAPINFOHEADER* h) { h->biPlanes = 2; }));
    EXPECT_FALSE(soundWith([](BITMAPINFOHEADER* h) { h->biCompression = BI_RLE8; }));
    EXPECT_FALSE(soundWith([](BITMAPINFOHEADER* h) { h->biSize = 124; }, 24, 200));
    EXPECT_FALSE(soundWith([](BITMAPINFOHEADER* h) { h->biHeight = -4; }));
    EXPECT_FALSE(soundWith([](BITMAPINFOHEADER* h) { h->biClrUsed = 0xFFFFFFFF; }));
    EXPECT_TRUE(soundWith([](BITMAPINFOHEADER* h) { h->biClrUsed = 3; }, 24, 60));
}

TEST(PackedBitmap, ViewOfBitsCountsFromTheTop)
{
    Block image(createBitmap(3, 5, 24));
    BYTE* bits = lockBitmapBits(image.handle);
    const BitsView view = viewOfBits(bits, 3, 5);
    EXPECT_EQ(bits + 4 * 12, view.row0);
    EXPECT_EQ(-12, view.stride);
    EXPECT_EQ(bits, rowOf(view, 4));
    unlockBitmap(image.handle);
}
