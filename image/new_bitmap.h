// Making packed bitmaps (the layout: packed_bitmap.h). Who gets one frees it with releaseBlock of kept_blocks.h.
#pragma once

#include <windows.h>

// Writes size 40, width, height, planes 1 and the bit count; leaves the other fields alone.
// Nothing happens when header is null.
void initBitmapHeader(BITMAPINFOHEADER* header, int width, int height, WORD bitCount);

// A black (zeroed) bitmap. 0 when a size is below 1, the block would not fit the address space, or
// memory is short.
HGLOBAL createBitmap(int width, int height, WORD bitCount);

// As createBitmap for 24 bits, but with whatever bytes in its pixels (0 in the padding): for callers that write
// every pixel, and hand nothing out before.
HGLOBAL createUnsetBitmap(int width, int height);
