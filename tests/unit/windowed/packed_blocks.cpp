#include "tests/unit/windowed/packed_blocks.h"

#include <algorithm>
#include <cstring>

#include "image/packed_bitmap.h"

HGLOBAL blockOf(const std::vector<uint8_t>& bytes)
{
    HGLOBAL handle = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    memcpy(GlobalLock(handle), bytes.data(), bytes.size());
    GlobalUnlock(handle);
    return handle;
}

std::vector<uint8_t> withHeader(int width, int height, int bitCount, const std::vector<uint8_t>& rows,
                                unsigned headerSize)
{
    std::vector<uint8_t> bytes(std::max(headerSize, 40u));
    BITMAPINFOHEADER header = {};
    initBitmapHeader(&header, width, height, (WORD)bitCount);
    header.biSize = headerSize;
    memcpy(bytes.data(), &header, sizeof header);
    bytes.insert(bytes.end(), rows.begin(), rows.end());
    return bytes;
}

HGLOBAL packed(const reference::Picture& image, unsigned headerSize, size_t guard)
{
    std::vector<uint8_t> bytes = withHeader(image.width, image.height, 24, storedRows(image, PAD_BYTE), headerSize);
    bytes.insert(bytes.end(), guard, GUARD_BYTE);
    return blockOf(bytes);
}

reference::Picture unpacked(HGLOBAL handle)
{
    int width = 0, height = 0;
    DWORD bitCount = 0;
    EXPECT_EQ(1, lockBitmapInfo(handle, &width, &height, &bitCount));
    EXPECT_EQ(24u, bitCount);
    reference::Picture image = reference::fromStoredRows(lockBitmapBits(handle), width, height);
    unlockBitmap(handle);
    return image;
}

void expectStored(const reference::Picture& expected, HGLOBAL handle)
{
    std::vector<uint8_t> wanted = storedRows(expected, PAD_BYTE);
    wanted.insert(wanted.end(), GUARD_BYTES, GUARD_BYTE);
    const uint8_t* start = (const uint8_t*)GlobalLock(handle);
    const unsigned headerSize = ((const BITMAPINFOHEADER*)start)->biSize;
    EXPECT_EQ(0, memcmp(wanted.data(), start + headerSize, wanted.size()));
    GlobalUnlock(handle);
}

void expectPicture(const reference::Picture& expected, HGLOBAL handle)
{
    ASSERT_NE(nullptr, handle);
    const reference::Picture actual = unpacked(handle);
    EXPECT_EQ(expected.width, actual.width);
    EXPECT_EQ(expected.height, actual.height);
    EXPECT_TRUE(expected.pixels == actual.pixels);
}

bool isUnlocked(HGLOBAL handle)
{
    return (GlobalFlags(handle) & GMEM_LOCKCOUNT) == 0;
}
