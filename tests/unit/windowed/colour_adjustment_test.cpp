// The operations on bitmap handles.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "color/colour_adjustment.h"
#include "image/packed_bitmap.h"
#include "tests/reference/colour_reference.h"
#include "tests/unit/windowed/block_bytes.h"

using reference::StoredPicture;
using reference::Values;

static ColourValues given(const Values& v)
{
    return {v.contrast, v.brightness, v.saturation, v.hue, v.lift};
}

static HGLOBAL packed(const StoredPicture& image, WORD bitCount = 24)
{
    HGLOBAL block = GlobalAlloc(GHND, 40 + image.bytes.size());
    BYTE* start = (BYTE*)GlobalLock(block);
    initBitmapHeader((BITMAPINFOHEADER*)start, image.width, image.height, bitCount);
    memcpy(start + 40, image.bytes.data(), image.bytes.size());
    GlobalUnlock(block);
    return block;
}

static StoredPicture randomImage(std::mt19937& random, int width, int height)
{
    StoredPicture image = {width, height, std::vector<uint8_t>((size_t)reference::strideOf(width) * height)};
    for (uint8_t& byte : image.bytes) {
        byte = (uint8_t)random();
    }
    return image;
}

static void expectRows(const StoredPicture& expected, HGLOBAL actual)
{
    const std::vector<uint8_t> bytes = bytesOf(actual);
    ASSERT_LE(40 + expected.bytes.size(), bytes.size());
    EXPECT_EQ(0, memcmp(expected.bytes.data(), bytes.data() + 40, expected.bytes.size()));
}

TEST(AdjustImageColours, EqualsTheReferencePaddingIncluded)
{
    std::mt19937 random(20);
    for (int width = 1; width < 50; ++width) {
        const StoredPicture image = randomImage(random, width, 5);
        const Values v = {(int)(random() % 201) - 100, (int)(random() % 201) - 100, (int)(random() % 101),
                          (int)(random() % 255) - 127, 0};
        HGLOBAL source = packed(image), target = packed(randomImage(random, width, 5));
        adjustImageColours(source, target, given(v));
        expectRows(image, source);
        expectRows(reference::adjustImage(image, v), target);
        adjustImageColours(source, nullptr, given(v));
        expectRows(reference::adjustImage(image, v), source);
        EXPECT_EQ(0u, GlobalFlags(source) & GMEM_LOCKCOUNT);
        EXPECT_EQ(0u, GlobalFlags(target) & GMEM_LOCKCOUNT);
        GlobalFree(source);
        GlobalFree(target);
    }
}

TEST(AdjustImageColours, NeutralValuesTurn191Into192And254Into255)
{
    const StoredPicture image = {1, 1, {190, 191, 254, 0xCC}};
    HGLOBAL block = packed(image);
    adjustImageColours(block, nullptr, {0, 0, 50, 0, 0});
    expectRows(StoredPicture{1, 1, {190, 192, 255, 0}}, block);
    GlobalFree(block);
}

// A 24-bit image has no colour table, even if its header announces one: the pixels follow the header. So other
// readers find them too, and what lies behind the last row is not touched.
TEST(AdjustImageColours, FindsThePixelsBehindTheHeaderWhateverColoursItAnnounces)
{
    std::mt19937 random(25);
    const StoredPicture image = randomImage(random, 13, 6);
    const Values v = {-20, 10, 70, 33, 0};
    for (DWORD colours : {1u, 3u, 256u}) {
        const SIZE_T behind = 1100;  // room for such a table
        HGLOBAL block = GlobalReAlloc(packed(image), 40 + image.bytes.size() + behind, GMEM_MOVEABLE);
        BYTE* start = (BYTE*)GlobalLock(block);
        ((BITMAPINFOHEADER*)start)->biClrUsed = colours;
        memset(start + 40 + image.bytes.size(), 0x5A, behind);
        GlobalUnlock(block);
        adjustImageColours(block, nullptr, given(v));
        expectRows(reference::adjustImage(image, v), block);
        const std::vector<uint8_t> bytes = bytesOf(block);
        for (size_t i = bytes.size() - behind; i < bytes.size(); ++i)
            ASSERT_EQ(0x5A, bytes[i]) << colours << " colours, byte " << i;
        COLORREF colour = 0;
        const uint8_t* topLeft = &bytes[40 + (size_t)reference::strideOf(13) * 5];
        ASSERT_EQ(1, getPixelColour(block, 0, 0, &colour));
        EXPECT_EQ(RGB(topLeft[2], topLeft[1], topLeft[0]), colour);
        GlobalFree(block);
    }
}

TEST(AdjustImageColours, LeavesOtherDepthsAndUnequalSizesAlone)
{
    std::mt19937 random(21);
    const StoredPicture image = randomImage(random, 8, 4), small = randomImage(random, 7, 4);
    HGLOBAL gray = packed(image, 8), deep = packed(image, 32), source = packed(image), target = packed(small);
    const std::vector<uint8_t> grayBefore = bytesOf(gray), deepBefore = bytesOf(deep), targetBefore = bytesOf(target);
    adjustImageColours(gray, nullptr, {-50, -50, 10, 10, 0});
    adjustImageColours(deep, nullptr, {-50, -50, 10, 10, 0});
    adjustImageColours(source, target, {-50, -50, 10, 10, 0});
    adjustImageColours(nullptr, target, {-50, -50, 10, 10, 0});
    adjustImageColours(nullptr, nullptr, {-50, -50, 10, 10, 0});
    EXPECT_EQ(grayBefore, bytesOf(gray));
    EXPECT_EQ(deepBefore, bytesOf(deep));
    EXPECT_EQ(targetBefore, bytesOf(target));
    expectRows(image, source);
    for (HGLOBAL block : {gray, deep, source, target}) {
        EXPECT_EQ(0u, GlobalFlags(block) & GMEM_LOCKCOUNT);
        GlobalFree(block);
    }
}

struct SelectionBlocks {
    HGLOBAL source, sourceMask, target, targetMask;
};

static void freeBlocks(const SelectionBlocks& b)
{
    for (HGLOBAL block : {b.source, b.sourceMask, b.target, b.targetMask}) {
        EXPECT_EQ(0u, GlobalFlags(block) & GMEM_LOCKCOUNT);
        GlobalFree(block);
    }
}

TEST(ApplyColourAdjustment, EqualsTheReferenceForEveryArgument)
{
    std::mt19937 random(22);
    for (int i = 0; i < 60; ++i) {
        const StoredPicture source = randomImage(random, 1 + (int)(random() % 30), 1 + (int)(random() % 9));
        StoredPicture sourceMask = randomImage(random, source.width, source.height);
        for (uint8_t& byte : sourceMask.bytes) {
            byte &= random() & 1 ? 0 : 255;
        }
        StoredPicture target = randomImage(random, 1 + (int)(random() % 50), 1 + (int)(random() % 9));
        StoredPicture targetMask = randomImage(random, target.width, target.height);
        const Values v = {(int)(random() % 201) - 100, (int)(random() % 201) - 100, (int)(random() % 101),
                          (int)(random() % 255) - 127, (int)(random() % 4)};
        const SelectionBlocks b = {packed(source), packed(sourceMask), packed(target), packed(targetMask)};
        applyColourAdjustment(b.source, b.target, b.sourceMask, b.targetMask, given(v));
        reference::adjustSelection(source, sourceMask, target, targetMask, v);
        expectRows(target, b.target);
        expectRows(targetMask, b.targetMask);
        expectRows(source, b.source);
        expectRows(sourceMask, b.sourceMask);
        freeBlocks(b);
    }
}

TEST(ApplyColourAdjustment, ANullTargetMaskStandsForTheSourceMaskAtEqualSizesOnly)
{
    std::mt19937 random(23);
    const StoredPicture source = randomImage(random, 5, 3), black = {5, 3, std::vector<uint8_t>(48, 0)};
    const StoredPicture larger = randomImage(random, 6, 3);
    const SelectionBlocks b = {packed(source), packed(black), packed(randomImage(random, 5, 3)), packed(larger)};
    applyColourAdjustment(b.source, b.target, b.sourceMask, nullptr, {0, 0, 50, 0, 0});
    const std::vector<uint8_t> result = bytesOf(b.target);
    for (int y = 0; y < 3; ++y) {
        EXPECT_EQ(0, memcmp(&source.bytes[y * 16], &result[40 + y * 16], 15));
    }
    applyColourAdjustment(b.source, b.targetMask, b.sourceMask, nullptr, {0, 0, 50, 0, 0});
    expectRows(larger, b.targetMask);
    freeBlocks(b);
}

TEST(ApplyColourAdjustment, ChangesNothingWithoutAllItsImages)
{
    std::mt19937 random(24);
    const StoredPicture image = randomImage(random, 4, 4);
    const SelectionBlocks b = {packed(image), packed(image), packed(image), packed(image)};
    applyColourAdjustment(nullptr, b.target, b.sourceMask, b.targetMask, {-50, 0, 0, 9, 1});
    applyColourAdjustment(b.source, nullptr, b.sourceMask, b.targetMask, {-50, 0, 0, 9, 1});
    applyColourAdjustment(b.source, b.target, nullptr, b.targetMask, {-50, 0, 0, 9, 1});
    expectRows(image, b.target);
    expectRows(image, b.targetMask);
    freeBlocks(b);
}
