#include "image/new_bitmap.h"

#include <cstring>

#include "image/bitmap_locks.h"
#include "image/kept_blocks.h"
#include "image/pixels/bits_view.h"
#include "session/ground/locked_block.h"

void initBitmapHeader(BITMAPINFOHEADER* header, int width, int height, WORD bitCount)
{
    if (!header) return;
    header->biSize = sizeof(BITMAPINFOHEADER);
    header->biWidth = width;
    header->biHeight = height;
    header->biPlanes = 1;
    header->biBitCount = bitCount;
}

// Half the address space: pointer differences inside one block must not overflow.
constexpr uint64_t LARGEST_BLOCK = SIZE_MAX / 2;

static bool writeHeader(HGLOBAL image, int width, int height, WORD bitCount)
{
    const LockedBlock block(image);
    if (!block) return false;
    memset(block.bytes, 0, sizeof(BITMAPINFOHEADER));
    initBitmapHeader((BITMAPINFOHEADER*)block.bytes, width, height, bitCount);
    return true;
}

// 0 when there is no such bitmap or it would not fit the address space.
static SIZE_T sizeOfBitmap(int width, int height, WORD bitCount)
{
    if (width < 1 || height < 1) return 0;
    const uint64_t stride = (uint64_t)rowStride(width, bitCount);
    if (stride > (LARGEST_BLOCK - sizeof(BITMAPINFOHEADER)) / (unsigned)height) return 0;
    return (SIZE_T)(stride * (unsigned)height + sizeof(BITMAPINFOHEADER));
}

// The block as a bitmap, or freed when it cannot be locked.
static HGLOBAL withHeader(HGLOBAL image, int width, int height, WORD bitCount)
{
    if (!image || writeHeader(image, width, height, bitCount)) return image;
    releaseBlock(image);
    return nullptr;
}

HGLOBAL createBitmap(int width, int height, WORD bitCount)
{
    const SIZE_T size = sizeOfBitmap(width, height, bitCount);
    return size ? withHeader(takeZeroedBlock(size), width, height, bitCount) : nullptr;
}

static void zeroPadding(const BitsView& image)
{
    const size_t rowBytes = (size_t)image.width * 3, padding = (size_t)rowStride(image.width, 24) - rowBytes;
    for (int y = 0; padding > 0 && y < image.height; ++y)
        memset(rowOf(image, y) + rowBytes, 0, padding);
}

HGLOBAL createUnsetBitmap(int width, int height)
{
    const SIZE_T size = sizeOfBitmap(width, height, 24);
    const HGLOBAL image = size ? withHeader(takeBlock(size), width, height, 24) : nullptr;
    const LockedPixels pixels(image);
    if (pixels) zeroPadding(pixels.view);
    return image;
}
