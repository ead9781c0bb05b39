#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>

#include "image/packed_bitmap.h"
#include "tests/reference/bitmap_reference.h"

constexpr uint8_t PAD_BYTE = 0xCC;
constexpr uint8_t GUARD_BYTE = 0xA5;
constexpr size_t GUARD_BYTES = 64;

// A global block that is freed with its test, holding any bytes behind any header.
struct Block {
    HGLOBAL handle;

    explicit Block(HGLOBAL taken) : handle(taken) {}
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    ~Block()
    {
        if (handle) GlobalFree(handle);
    }
    std::vector<uint8_t> bytes() const
    {
        const uint8_t* start = (const uint8_t*)GlobalLock(handle);
        std::vector<uint8_t> copy(start, start + GlobalSize(handle));
        GlobalUnlock(handle);
        return copy;
    }
};

static HGLOBAL blockOf(const std::vector<uint8_t>& bytes)
{
    HGLOBAL handle = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    memcpy(GlobalLock(handle), bytes.data(), bytes.size());
    GlobalUnlock(handle);
    return handle;
}

static std::vector<uint8_t> withHeader(int width, int height, int bitCount, const std::vector<uint8_t>& rows,
                                       unsigned headerSize = 40)
{
    std::vector<uint8_t> bytes(std::max(headerSize, 40u));
    BITMAPINFOHEADER header = {};
    initBitmapHeader(&header, width, height, (WORD)bitCount);
    header.biSize = headerSize;
    memcpy(bytes.data(), &header, sizeof header);
    bytes.insert(bytes.end(), rows.begin(), rows.end());
    return bytes;
}

static HGLOBAL packed(const reference::Picture& image, unsigned headerSize = 40, size_t guard = GUARD_BYTES)
{
    std::vector<uint8_t> bytes = withHeader(image.width, image.height, 24, storedRows(image, PAD_BYTE), headerSize);
    bytes.insert(bytes.end(), guard, GUARD_BYTE);
    return blockOf(bytes);
}

static reference::Picture unpacked(HGLOBAL handle)
{
    int width = 0, height = 0;
    DWORD bitCount = 0;
    EXPECT_EQ(1, lockBitmapInfo(handle, &width, &height, &bitCount));
    EXPECT_EQ(24u, bitCount);
    reference::Picture image = reference::fromStoredRows(lockBitmapBits(handle), width, height);
    unlockBitmap(handle);
    return image;
}

// Everything from the first row to the guard: pixels, padding and the guard itself.
static void expectStored(const reference::Picture& expected, HGLOBAL handle)
{
    std::vector<uint8_t> wanted = storedRows(expected, PAD_BYTE);
    wanted.insert(wanted.end(), GUARD_BYTES, GUARD_BYTE);
    const uint8_t* start = (const uint8_t*)GlobalLock(handle);
    const unsigned headerSize = ((const BITMAPINFOHEADER*)start)->biSize;
    EXPECT_EQ(0, memcmp(wanted.data(), start + headerSize, wanted.size()));
    GlobalUnlock(handle);
}

static void expectPicture(const reference::Picture& expected, HGLOBAL handle)
{
    ASSERT_NE(nullptr, handle);
    const reference::Picture actual = unpacked(handle);
    EXPECT_EQ(expected.width, actual.width);
    EXPECT_EQ(expected.height, actual.height);
    EXPECT_TRUE(expected.pixels == actual.pixels);
}

static bool isUnlocked(HGLOBAL handle)
{
    return (GlobalFlags(handle) & GMEM_LOCKCOUNT) == 0;
}

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
