#include <gtest/gtest.h>

#include "image/bitmap_block.h"
#include "image/packed_bitmap.h"

TEST(BitmapBlock, LockMapFindsTheRowsOfAMapWithoutColourTable)
{
    HGLOBAL handle = createBitmap(5, 3, 8);
    BitmapBlock block;
    MapView map;
    ASSERT_TRUE(lockMap(handle, &block, &map));
    EXPECT_EQ(5, map.width);
    EXPECT_EQ(3, map.height);
    EXPECT_EQ((uint8_t*)block.header + 40 + 2 * 8, rowOf(map, 0));
    EXPECT_EQ((uint8_t*)block.header + 40, rowOf(map, 2));
    unlockBlock(block);
    EXPECT_EQ(0u, GlobalFlags(handle) & GMEM_LOCKCOUNT);
    EXPECT_EQ(nullptr, lockBitmapBits(handle));  // 1024 bytes on is behind so small a map
    GlobalFree(handle);
}

TEST(BitmapBlock, LockMapRefusesOtherDepths)
{
    HGLOBAL handle = createBitmap(5, 3, 24);
    BitmapBlock block;
    MapView map;
    EXPECT_FALSE(lockMap(handle, &block, &map));
    EXPECT_FALSE(lockMap(nullptr, &block, &map));
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
