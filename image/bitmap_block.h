// A packed bitmap's block while it is locked, with what its header promises and what is really there.
// Code that uses bitmaps takes the locks of image/bitmap_locks.h, which end with their scope.
#pragma once

#include <windows.h>

#include "image/pixels/bits_view.h"

struct BitmapBlock {
    HGLOBAL handle;
    BITMAPINFOHEADER* header;  // start of the block
    uint64_t size;             // bytes in the block, at least a header
    int width, height;         // as the header says, unchecked
    int bitCount;
};

// False (and nothing stays locked) for a null handle, a failed lock, or a block without room for a header.
bool lockBlock(HGLOBAL image, BitmapBlock* block);
void unlockBlock(const BitmapBlock& block);

// Sizes are positive and `height` rows of the stride that `bitsPerPixel` gives lie inside the block
// behind `headerBytes`.
bool rowsFit(const BitmapBlock& block, uint64_t headerBytes, int bitsPerPixel);

// The rows behind `headerBytes`, counted from the top. Only after rowsFit(block, headerBytes, 24), or 8 for a map.
BitsView pixelsBehind(const BitmapBlock& block, uint32_t headerBytes);
MapView mapBehind(const BitmapBlock& block, uint32_t headerBytes);

// Bytes of the colour table: biClrUsed entries, else as many as the depth has colours, none above 8 bits.
uint64_t colourTableBytes(const BitmapBlock& block);
