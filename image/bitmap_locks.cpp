#include "image/bitmap_locks.h"

LockedBitmap::LockedBitmap(HGLOBAL image) : block()
{
    lockBlock(image, &block);
}

LockedBitmap::~LockedBitmap()
{
    if (block.header) unlockBlock(block);
}

LockedPixels::LockedPixels(HGLOBAL image, PixelPlace place) : bitmap(image), view()
{
    if (!bitmap || bitmap.block.bitCount != 24) return;
    const uint32_t headerBytes = place == BEHIND_40_BYTES ? sizeof(BITMAPINFOHEADER) : bitmap.block.header->biSize;
    if (rowsFit(bitmap.block, headerBytes, 24)) view = pixelsBehind(bitmap.block, headerBytes);
}

LockedMap::LockedMap(HGLOBAL map) : bitmap(map), view()
{
    if (!bitmap || bitmap.block.bitCount != 8) return;
    const uint32_t headerBytes = bitmap.block.header->biSize;
    if (rowsFit(bitmap.block, headerBytes, 8)) view = mapBehind(bitmap.block, headerBytes);
}
