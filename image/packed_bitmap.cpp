#include "image/packed_bitmap.h"

#include <algorithm>
#include <cstring>

#include "image/bitmap_locks.h"
#include "image/kept_blocks.h"
#include "image/made_bitmap.h"
#include "image/pixels/nearest.h"
#include "image/pixels/pixel_ops.h"
#include "image/pixels/pixel_rows.h"
#include "session/ground/locked_block.h"

int lockBitmapInfo(HGLOBAL image, int* width, int* height, DWORD* bitCount)
{
    const LockedBitmap locked(image);
    if (!locked) return 0;
    if (width) *width = locked.block.width;
    if (height) *height = locked.block.height;
    if (bitCount) *bitCount = (DWORD)locked.block.bitCount;
    return 1;
}

int bitmapWidth(HGLOBAL image)
{
    int width = 0;
    lockBitmapInfo(image, &width, nullptr, nullptr);
    return width;
}

int bitmapHeight(HGLOBAL image)
{
    int height = 0;
    lockBitmapInfo(image, nullptr, &height, nullptr);
    return height;
}

// The pointer counts the colour table even though 8-bit bitmaps made here store none. Where it would
// point behind the block, or a 24-bit image's rows are not all there, there are no bits to lock.
BYTE* lockBitmapBits(HGLOBAL image)
{
    BitmapBlock block;
    if (!lockBlock(image, &block)) return nullptr;
    const uint64_t offset = block.header->biSize + colourTableBytes(block);
    const bool behindHeader = block.header->biSize >= sizeof(BITMAPINFOHEADER) && offset <= block.size;
    if (!behindHeader || (block.bitCount == 24 && !rowsFit(block, offset, 24))) {
        unlockBlock(block);
        return nullptr;
    }
    return (BYTE*)block.header + offset;
}

void unlockBitmap(HGLOBAL image)
{
    if (image) GlobalUnlock(image);
}

// Copies the first `size` bytes; both blocks are at least that long.
static int copyBytes(HGLOBAL destination, HGLOBAL source, SIZE_T size)
{
    const LockedBlock from(source), to(destination);
    if (!from || !to) return 0;
    copyBlock(to.bytes, from.bytes, size);
    return 1;
}

HGLOBAL duplicateBitmap(HGLOBAL image, int copyContents)
{
    const SIZE_T size = image ? GlobalSize(image) : 0;
    if (size == 0) return nullptr;
    // Zeroing bytes that are overwritten at once would double the work.
    HGLOBAL copy = copyContents ? takeBlock(size) : takeZeroedBlock(size);
    if (copy && copyContents && !copyBytes(copy, image, size)) {
        releaseBlock(copy);
        return nullptr;
    }
    return copy;
}

HGLOBAL shareBitmap(HGLOBAL image)
{
    return shareBlock(image) ? image : duplicateBitmap(image, 1);
}

int copyBitmapInto(HGLOBAL destination, HGLOBAL source)
{
    const SIZE_T size = source ? GlobalSize(source) : 0;
    if (size == 0) return 0;
    if (!destination) return 1;
    if (size > GlobalSize(destination)) return 0;
    return copyBytes(destination, source, size);
}

int getPixelColour(HGLOBAL image, int x, int y, COLORREF* colour)
{
    const LockedPixels locked(image);
    const BitsView& pixels = locked.view;
    if (!colour || !locked || x < 0 || y < 0 || x >= pixels.width || y >= pixels.height) return 0;
    const uint8_t* pixel = rowOf(pixels, y) + (ptrdiff_t)x * 3;
    *colour = RGB(pixel[2], pixel[1], pixel[0]);
    return 1;
}

HGLOBAL extractRect(HGLOBAL image, const RECT* rect)
{
    int imageWidth = 0, imageHeight = 0;
    if (!rect || !lockBitmapInfo(image, &imageWidth, &imageHeight, nullptr)) return nullptr;
    const int64_t width = std::min<int64_t>((int64_t)rect->right - rect->left, imageWidth);
    const int64_t height = std::min<int64_t>((int64_t)rect->bottom - rect->top, imageHeight);
    if (width < 1 || height < 1) return nullptr;
    return cutRect(image, rect->left, rect->top, (int)width, (int)height);
}

HGLOBAL cutRect(HGLOBAL image, int left, int top, int width, int height)
{
    const LockedPixels source(image);
    if (!source) return nullptr;
    return makePixels(width, height, [&](const LockedPixels& cut) {
        copyFromOffset(cut.view, source.view, left, top);
        return true;
    });
}

HGLOBAL extractRectMasked(HGLOBAL image, HGLOBAL mask, int x, int y, int width, int height, COLORREF fill)
{
    const LockedMap map(mask);
    if (!map) return nullptr;
    const int64_t right = std::min<int64_t>((int64_t)x + width, INT32_MAX);
    const int64_t bottom = std::min<int64_t>((int64_t)y + height, INT32_MAX);
    const RECT rect = {x, y, (LONG)std::max<int64_t>(right, INT32_MIN), (LONG)std::max<int64_t>(bottom, INT32_MIN)};
    return changedOrFreed(extractRect(image, &rect), [&](const LockedPixels& cut) {
        fillWhereMapIsZero(cut.view, map.view, rgbFromColorref(fill));
        return true;
    });
}

INT_PTR pasteRect(HGLOBAL destination, HGLOBAL source, const RECT* rect)
{
    const LockedPixels to(destination, BEHIND_40_BYTES), from(source, BEHIND_40_BYTES);
    if (!rect || !to || !from) return 0;
    // A source that misses the destination answers with its own handle: nonzero, nothing copied.
    return pasteWithByteSkip(to.view, from.view, rect->left, rect->top) ? 1 : (INT_PTR)source;
}

int pasteMasked(HGLOBAL destination, HGLOBAL source, HGLOBAL mask, POINT at)
{
    const LockedPixels to(destination, BEHIND_40_BYTES), from(source, BEHIND_40_BYTES), marks(mask, BEHIND_40_BYTES);
    if (!to || !from || !marks) return 0;
    if (marks.view.width != from.view.width || marks.view.height != from.view.height) return 0;
    mergeMasked(to.view, from.view, marks.view, at.x, at.y);
    return 1;
}

// Bytes of a pixel at the depths that can be flipped, 0 at all others.
static int flippableBytesPerPixel(int bitCount)
{
    switch (bitCount) {
    case 24: return 3;
    case 16:
    case 15: return 2;
    case 8: return 1;
    default: return 0;
    }
}

// The rows of a locked image that can be flipped: at least 2 by 2, all there behind biSize bytes. Null otherwise.
static uint8_t* flippableRows(const LockedBitmap& image, ptrdiff_t* rowBytes)
{
    const BitmapBlock& block = image.block;
    const int bits = flippableBytesPerPixel(block.bitCount) * 8;
    if (!image || bits == 0 || block.width < 2 || block.height < 2) return nullptr;
    if (!rowsFit(block, block.header->biSize, bits)) return nullptr;
    *rowBytes = (ptrdiff_t)rowStride(block.width, bits);
    return (uint8_t*)block.header + block.header->biSize;
}

int flipVertical(HGLOBAL image)
{
    const LockedBitmap locked(image);
    ptrdiff_t rowBytes;
    uint8_t* const rows = flippableRows(locked, &rowBytes);
    if (!rows) return 0;
    reverseAllButLastRow(rows, rowBytes, locked.block.height);
    return 1;
}

// Only 24-bit rows are mirrored; rows of the other depths become zero: hosts see a black picture, not a torn one.
int flipHorizontal(HGLOBAL image)
{
    const LockedBitmap locked(image);
    const BitmapBlock& block = locked.block;
    ptrdiff_t rowBytes;
    uint8_t* const rows = flippableRows(locked, &rowBytes);
    if (!rows) return 0;
    if (block.bitCount == 24) {
        mirrorRows(bottomUpView(rows, block.width, block.height, rowBytes));
    } else {
        memset(rows, 0, (size_t)rowBytes * (size_t)block.height);
    }
    return 1;
}

HGLOBAL scaleBitmap(HGLOBAL image, int width, int height)
{
    const LockedBitmap locked(image);
    const BitmapBlock& block = locked.block;
    if (!locked || width < 1 || height < 1) return nullptr;
    if (block.bitCount != 8 && block.bitCount != 24) return nullptr;
    if (!rowsFit(block, block.header->biSize, block.bitCount)) return nullptr;
    if (block.bitCount == 8) return createBitmap(width, height, 8);
    const BitsView source = pixelsBehind(block, block.header->biSize);
    return makeAllPixels(width, height, [&](const LockedPixels& scaled) { return scaleNearest(scaled.view, source); });
}

static bool isKnownDepth(int bitCount)
{
    return bitCount == 1 || bitCount == 4 || bitCount == 8 || bitCount == 16 || bitCount == 24 || bitCount == 32;
}

bool isSoundBitmap(HGLOBAL image)
{
    const LockedBitmap locked(image);
    if (!locked) return false;
    const BitmapBlock& block = locked.block;
    // Pastes count on a header of exactly 40 bytes, so no other size is sound.
    return block.header->biSize == sizeof(BITMAPINFOHEADER) && block.header->biPlanes == 1 &&
           block.header->biCompression == BI_RGB && isKnownDepth(block.bitCount) &&
           rowsFit(block, block.header->biSize + colourTableBytes(block), block.bitCount);
}

BitsView viewOfBits(BYTE* bits, int width, int height)
{
    return bottomUpView(bits, width, height, (ptrdiff_t)rowStride(width, 24));
}
