#include <gtest/gtest.h>

#include <cstring>

#include "image/bitmap_locks.h"
#include "image/packed_bitmap.h"
#include "session/ground/locked_block.h"
#include "tests/session/resources_in_use.h"
#include "tests/session/import_patch.h"

TEST(BitmapBlock, ALockedMapFindsItsRowsWithoutColourTable)
{
    HGLOBAL handle = createBitmap(5, 3, 8);
    {
        const LockedMap map(handle);
        ASSERT_TRUE(map);
        EXPECT_EQ(5, map.view.width);
        EXPECT_EQ(3, map.view.height);
        const uint8_t* const start = (const uint8_t*)map.bitmap.block.header;
        EXPECT_EQ(start + 40 + 2 * 8, rowOf(map.view, 0));
        EXPECT_EQ(start + 40, rowOf(map.view, 2));
    }
    EXPECT_EQ(0u, GlobalFlags(handle) & GMEM_LOCKCOUNT);
    EXPECT_EQ(nullptr, lockBitmapBits(handle));  // 1024 bytes on is behind so small a map
    GlobalFree(handle);
}

TEST(BitmapBlock, ALockedMapRefusesOtherDepths)
{
    HGLOBAL handle = createBitmap(5, 3, 24);
    EXPECT_FALSE(LockedMap(handle));
    EXPECT_FALSE(LockedMap(nullptr));
    EXPECT_EQ(0u, GlobalFlags(handle) & GMEM_LOCKCOUNT);
    GlobalFree(handle);
}

TEST(BitmapBlock, CutRectHasExactlyTheSizeAskedFor)
{
    HGLOBAL handle = createBitmap(4, 3, 24);
    HGLOBAL cut = cutRect(handle, -2, 1, 9, 7);
    EXPECT_EQ(9, bitmapWidth(cut));
    EXPECT_EQ(7, bitmapHeight(cut));
    EXPECT_EQ(nullptr, cutRect(handle, 0, 0, 0, 3));
    EXPECT_EQ(nullptr, cutRect(nullptr, 0, 0, 1, 1));
    GlobalFree(cut);
    GlobalFree(handle);
}

static UINT locksOn(HGLOBAL handle)
{
    return GlobalFlags(handle) & GMEM_LOCKCOUNT;
}

TEST(Locks, EndWithTheirScope)
{
    HGLOBAL image = createBitmap(5, 3, 24), map = createBitmap(5, 3, 8);
    {
        const LockedBlock block(image);
        const LockedBitmap bitmap(image);
        const LockedPixels pixels(image);
        const LockedMap cells(map);
        ASSERT_TRUE(block && bitmap && pixels && cells);
        EXPECT_EQ(3u, locksOn(image));
        EXPECT_EQ(1u, locksOn(map));
        EXPECT_EQ(block.bytes, bitmap.block.header);
        EXPECT_EQ((uint8_t*)block.bytes + 40 + 2 * 16, pixels.view.row0);
        EXPECT_EQ((uint8_t*)cells.bitmap.block.header + 40 + 2 * 8, cells.view.row0);
        EXPECT_EQ((uint8_t*)cells.bitmap.block.header + 40, rowOf(cells.view, 2));
    }
    EXPECT_EQ(0u, locksOn(image));
    EXPECT_EQ(0u, locksOn(map));
    GlobalFree(image);
    GlobalFree(map);
}

TEST(Locks, AreFalseForWhatIsNotThere)
{
    HGLOBAL image = createBitmap(5, 3, 24), map = createBitmap(5, 3, 8), tiny = GlobalAlloc(GHND, 39);
    {
        const LockedBlock none(nullptr);
        const LockedBitmap short1(tiny);
        const LockedPixels other(map), null(nullptr), short2(tiny);
        const LockedMap otherMap(image), nullMap(nullptr);
        EXPECT_FALSE(none || short1 || other || null || short2 || otherMap || nullMap);
    }
    for (HGLOBAL handle : {image, map, tiny}) {
        EXPECT_EQ(0u, locksOn(handle));
        GlobalFree(handle);
    }
}

TEST(Locks, FindThePixelsWhereTheyAreSaidToBe)
{
    HGLOBAL image = GlobalAlloc(GHND, 52 + 16 * 3);
    initBitmapHeader((BITMAPINFOHEADER*)LockedBlock(image).bytes, 5, 3, 24);
    {
        const LockedPixels pixels(image);
        pixels.header()->biSize = 52;
        const LockedPixels behindHeader(image), behind40(image, BEHIND_40_BYTES);
        EXPECT_EQ((uint8_t*)pixels.header() + 52 + 32, behindHeader.view.row0);
        EXPECT_EQ((uint8_t*)pixels.header() + 40 + 32, behind40.view.row0);
        pixels.header()->biSize = 0xFFFFFFF0;
        EXPECT_FALSE(LockedPixels(image));
    }
    GlobalFree(image);
}

// From the given call on, locking fails.
static int locksLeft;
static ImportPatch lockPatch;

static LPVOID WINAPI lockUntilNone(HGLOBAL handle)
{
    return locksLeft-- > 0 ? ((LPVOID(WINAPI*)(HGLOBAL))lockPatch.before)(handle) : nullptr;
}

struct FailingLocks : testing::Test {
    HGLOBAL image = createBitmap(5, 3, 24), map = createBitmap(5, 3, 8), copy = nullptr;

    void SetUp() override
    {
        const LockedPixels pixels(image);
        memset(rowOf(pixels.view, 2), 200, 3 * 16);
        ASSERT_TRUE(patchImport(&lockPatch, GetModuleHandleA(nullptr), "GlobalLock", (void*)lockUntilNone));
    }
    void TearDown() override
    {
        undoPatch(&lockPatch);
        GlobalFree(image);
        GlobalFree(map);
    }

    // The result is null, or full: never a bitmap that was left black because its pixels could not be locked.
    void expectFullOrNull(HGLOBAL (*make)(FailingLocks* test))
    {
        const int handlesBefore = freeMemoryHandles();
        int failed = 0, done = 0;
        for (int before = 0; before < 12; ++before) {
            locksLeft = before;
            const HGLOBAL made = make(this);
            locksLeft = 100;
            COLORREF colour = 0;
            ++(made ? done : failed);
            if (made) {
                EXPECT_TRUE(getPixelColour(made, 1, 1, &colour));
                EXPECT_EQ(RGB(200, 200, 200), colour) << "after " << before << " locks";
                GlobalFree(made);
            }
            EXPECT_EQ(0u, locksOn(image)) << "after " << before << " locks";
            EXPECT_EQ(0u, locksOn(map));
        }
        EXPECT_EQ(handlesBefore, freeMemoryHandles());
        EXPECT_GE(failed, 2) << "what is copied, and the copy";
        EXPECT_GE(done, 1);
    }
};

TEST_F(FailingLocks, AreFalse)
{
    locksLeft = 0;
    EXPECT_FALSE(LockedBlock(image) || LockedBitmap(image) || LockedPixels(image) || LockedMap(map));
    EXPECT_EQ(0u, locksOn(image));
}

TEST_F(FailingLocks, NoCutIsHandedOutUnfilled)
{
    expectFullOrNull([](FailingLocks* test) { return cutRect(test->image, 0, 0, 4, 3); });
    expectFullOrNull([](FailingLocks* test) {
        const RECT part = {0, 0, 3, 3};
        return extractRect(test->image, &part);
    });
}

TEST_F(FailingLocks, NoMaskedCutIsHandedOutUnfilled)
{
    // The map is empty: every pixel becomes the filling.
    expectFullOrNull(
        [](FailingLocks* test) { return extractRectMasked(test->image, test->map, 0, 0, 5, 3, RGB(200, 200, 200)); });
    locksLeft = 100;
    {
        const LockedMap cells(map);
        ASSERT_TRUE(cells);
        memset(rowOf(cells.view, 2), 1, 3 * 8);
    }
    expectFullOrNull(
        [](FailingLocks* test) { return extractRectMasked(test->image, test->map, 0, 0, 5, 3, RGB(1, 2, 3)); });
}

TEST_F(FailingLocks, NoScaledOrCopiedBitmapIsHandedOutUnfilled)
{
    expectFullOrNull([](FailingLocks* test) { return scaleBitmap(test->image, 9, 7); });
    expectFullOrNull([](FailingLocks* test) { return duplicateBitmap(test->image, 1); });
}
