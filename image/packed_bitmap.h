// PackedBitmap: one image in one movable global memory block.
//
// Layout: a 40-byte BITMAPINFOHEADER, then (no colour table in bitmaps made here) the pixel rows,
// BOTTOM row first, each padded to a multiple of 4 bytes; 24-bit pixels are blue, green, red.
// Coordinates are top-down: pixel (x, y), y = 0 at the top, lies in stored row height - 1 - y.
//
// Every function takes a handle and locks it for the call only (lockBitmapBits excepted). A returned
// handle belongs to the caller, who frees it with releaseBlock of kept_blocks.h (or GlobalFree, unless it is shared). 0
// (or a null handle) means failure and leaves the inputs as they were.
#pragma once

#include <windows.h>

#include "image/new_bitmap.h"
#include "image/pixels/bits_view.h"

// Copies width, height and bit count to the outputs that are given. 1, or 0 for a null handle or a
// failed lock.
int lockBitmapInfo(HGLOBAL image, int* width, int* height, DWORD* bitCount);

// 0 for a null handle or a failed lock.
int bitmapWidth(HGLOBAL image);
int bitmapHeight(HGLOBAL image);

// Locks the block, leaves it locked, and returns its first stored (bottom) row, behind the header and
// the colour table. Null for a null handle, and when the block does not hold what the header promises.
// 8-bit bitmaps made here store no colour table: theirs are locked with LockedMap of bitmap_locks.h.
// Pair with unlockBitmap.
BYTE* lockBitmapBits(HGLOBAL image);
void unlockBitmap(HGLOBAL image);

// A new block of the same size; with its contents when copyContents is nonzero, else zeroed. Works on
// any global block.
HGLOBAL duplicateBitmap(HGLOBAL image, int copyContents);

// The same bitmap for one more owner, none of whom changes it any more: the image itself, or a copy of a small one.
HGLOBAL shareBitmap(HGLOBAL image);

// Copies all of the source's bytes into the existing destination block. 0 when the source is null or
// empty, or larger than the destination; 1 without copying when the destination is null.
int copyBitmapInto(HGLOBAL destination, HGLOBAL source);

// 0 unless the image is 24-bit and the point lies inside it.
int getPixelColour(HGLOBAL image, int x, int y, COLORREF* colour);

// The rectangle as a new 24-bit bitmap, at most as wide and high as the image; what lies outside the
// image is black.
HGLOBAL extractRect(HGLOBAL image, const RECT* rect);

// The rectangle as a new 24-bit bitmap of exactly its size, black outside the image.
HGLOBAL cutRect(HGLOBAL image, int left, int top, int width, int height);

// extractRect of (x, y, x + width, y + height); pixels whose cell of the 8-bit mask is 0 become fill.
HGLOBAL extractRectMasked(HGLOBAL image, HGLOBAL mask, int x, int y, int width, int height, COLORREF fill);

// Copies the source into the destination with its corner at (rect->left, rect->top), clipped. When
// nothing of it lies inside, the source handle's value is the (nonzero) result.
INT_PTR pasteRect(HGLOBAL destination, HGLOBAL source, const RECT* rect);

// Copies source pixels whose mask pixel has red 0. Source and mask are of equal size; what would fall
// outside the destination is skipped.
int pasteMasked(HGLOBAL destination, HGLOBAL source, HGLOBAL mask, POINT at);

// Mirrors in place. Both need a width and height of at least 2. flipVertical leaves the picture's top
// row and shifts the rest by one row against a true mirror: pixels and mask of a selection stay in step, and two flips
// give the picture back.
int flipVertical(HGLOBAL image);
int flipHorizontal(HGLOBAL image);

// A new bitmap of the new size; a 24-bit source is resampled (nearest neighbour), an 8-bit one gives
// a black bitmap.
HGLOBAL scaleBitmap(HGLOBAL image, int width, int height);

// True when the block is a sound packed bitmap: header size, one plane, no compression, positive
// sizes, and long enough for header, colour table and every row it promises.
bool isSoundBitmap(HGLOBAL image);

// The locked bits as a view that counts rows from the top; `bits` is what lockBitmapBits returned.
BitsView viewOfBits(BYTE* bits, int width, int height);
