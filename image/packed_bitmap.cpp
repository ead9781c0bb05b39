#include "image/packed_bitmap.h"

#include <algorithm>
#include <cstring>

#include "image/bitmap_block.h"
#include "image/pixels/pixel_ops.h"

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
static const uint64_t largestBlock = SIZE_MAX / 2;

HGLOBAL createBitmap(int width, int height, WORD bitCount)
{
    if (width < 1 || height < 1) return nullptr;
    const uint64_t stride = (uint64_t)rowStride(width, bitCount);
    const uint64_t room = largestBlock - sizeof(BITMAPINFOHEADER);
    if (stride > room / (unsigned)height) return nullptr;

    HGLOBAL image = GlobalAlloc(GHND, (SIZE_T)(stride * (unsigned)height + sizeof(BITMAPINFOHEADER)));
    if (!image) return nullptr;
    BITMAPINFOHEADER* header = (BITMAPINFOHEADER*)GlobalLock(image);
    if (!header) {
        GlobalFree(image);
        return nullptr;
    }
    initBitmapHeader(header, width, height, bitCount);
    GlobalUnlock(image);
    return image;
}

int lockBitmapInfo(HGLOBAL image, int* width, int* height, DWORD* bitCount)
{
    BitmapBlock block;
    if (!lockBlock(image, &block)) return 0;
    if (width) *width = block.width;
    if (height) *height = block.height;
    if (bitCount) *bitCount = (DWORD)block.bitCount;
    unlockBlock(block);
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
    const void* from = GlobalLock(source);
    void* to = GlobalLock(destination);
    if (from && to) memmove(to, from, size);
    if (to) GlobalUnlock(destination);
    if (from) GlobalUnlock(source);
    return from && to;
}

HGLOBAL duplicateBitmap(HGLOBAL image, int copyContents)
{
    const SIZE_T size = image ? GlobalSize(image) : 0;
    if (size == 0) return nullptr;
    // Zeroing bytes that are overwritten at once would double the work.
    HGLOBAL copy = GlobalAlloc(copyContents ? GMEM_MOVEABLE : GHND, size);
    if (copy && copyContents && !copyBytes(copy, image, size)) {
        GlobalFree(copy);
        return nullptr;
    }
    return copy;
}

HGLOBAL duplicateBitmapReusing(HGLOBAL reuse, HGLOBAL image)
{
    if (!reuse || reuse == image) return duplicateBitmap(image, 1);
    const SIZE_T size = image ? GlobalSize(image) : 0;
    if (size != 0 && GlobalSize(reuse) == size && copyBytes(reuse, image, size)) return reuse;
    GlobalFree(reuse);
    return duplicateBitmap(image, 1);
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
    BitmapBlock block;
    BitsView pixels;
    if (!colour || !lockPixels(image, &block, &pixels)) return 0;
    const bool inside = x >= 0 && y >= 0 && x < pixels.width && y < pixels.height;
    if (inside) {
        const uint8_t* pixel = rowOf(pixels, y) + (ptrdiff_t)x * 3;
        *colour = RGB(pixel[2], pixel[1], pixel[0]);
    }
    unlockBlock(block);
    return inside;
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

HGLOBAL extractRectMasked(HGLOBAL image, HGLOBAL mask, int x, int y, int width, int height, COLORREF fill)
{
    BitmapBlock maskBlock, cutBlock;
    MapView map;
    BitsView pixels;
    if (!lockMap(mask, &maskBlock, &map)) return nullptr;
    const int64_t right = std::min<int64_t>((int64_t)x + width, INT32_MAX);
    const int64_t bottom = std::min<int64_t>((int64_t)y + height, INT32_MAX);
    const RECT rect = {x, y, (LONG)std::max<int64_t>(right, INT32_MIN), (LONG)std::max<int64_t>(bottom, INT32_MIN)};
    HGLOBAL cut = extractRect(image, &rect);
    if (lockPixels(cut, &cutBlock, &pixels)) {
        fillWhereMapIsZero(pixels, map, rgbFromColorref(fill));
        unlockBlock(cutBlock);
    }
    unlockBlock(maskBlock);
    return cut;
}

INT_PTR pasteRect(HGLOBAL destination, HGLOBAL source, const RECT* rect)
{
    BitmapBlock to, from;
    BitsView destinationPixels, sourcePixels;
    if (!rect || !lockPixelsBehind40(destination, &to, &destinationPixels)) return 0;
    INT_PTR result = 0;
    if (lockPixelsBehind40(source, &from, &sourcePixels)) {
        // A source that misses the destination answers with its own handle: nonzero, nothing copied.
        result = pasteWithByteSkip(destinationPixels, sourcePixels, rect->left, rect->top) ? 1 : (INT_PTR)source;
        unlockBlock(from);
    }
    unlockBlock(to);
    return result;
}

int pasteMasked(HGLOBAL destination, HGLOBAL source, HGLOBAL mask, POINT at)
{
    BitmapBlock to, from, maskBlock;
    BitsView destinationPixels, sourcePixels, maskPixels;
    if (!lockPixelsBehind40(destination, &to, &destinationPixels)) return 0;
    int done = 0;
    if (lockPixelsBehind40(source, &from, &sourcePixels)) {
        if (lockPixelsBehind40(mask, &maskBlock, &maskPixels)) {
            done = maskPixels.width == sourcePixels.width && maskPixels.height == sourcePixels.height;
            if (done) mergeMasked(destinationPixels, sourcePixels, maskPixels, at.x, at.y);
            unlockBlock(maskBlock);
        }
        unlockBlock(from);
    }
    unlockBlock(to);
    return done;
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

// Locks an image that can be flipped: at least 2 by 2, its rows all there behind biSize bytes.
static bool lockFlippable(HGLOBAL image, BitmapBlock* block, uint8_t** rows, ptrdiff_t* rowBytes)
{
    if (!lockBlock(image, block)) return false;
    const int bits = flippableBytesPerPixel(block->bitCount) * 8;
    if (bits == 0 || block->width < 2 || block->height < 2 || !rowsFit(*block, block->header->biSize, bits)) {
        unlockBlock(*block);
        return false;
    }
    *rows = (uint8_t*)block->header + block->header->biSize;
    *rowBytes = (ptrdiff_t)rowStride(block->width, bits);
    return true;
}

int flipVertical(HGLOBAL image)
{
    BitmapBlock block;
    uint8_t* rows;
    ptrdiff_t rowBytes;
    if (!lockFlippable(image, &block, &rows, &rowBytes)) return 0;
    reverseAllButLastRow(rows, rowBytes, block.height);
    unlockBlock(block);
    return 1;
}

// Only 24-bit rows are mirrored; rows of the other depths become zero, which is meant.
int flipHorizontal(HGLOBAL image)
{
    BitmapBlock block;
    uint8_t* rows;
    ptrdiff_t rowBytes;
    if (!lockFlippable(image, &block, &rows, &rowBytes)) return 0;
    if (block.bitCount == 24) {
        mirrorRows(bottomUpView(rows, block.width, block.height, rowBytes));
    } else {
        memset(rows, 0, (size_t)rowBytes * (size_t)block.height);
    }
    unlockBlock(block);
    return 1;
}

// Writes the resampled source into the new bitmap; when that fails the bitmap stays black.
static void resampleInto(HGLOBAL scaled, const BitsView& source)
{
    BitmapBlock block;
    BitsView result;
    if (!lockPixels(scaled, &block, &result)) return;
    scaleNearest(result, source);
    unlockBlock(block);
}

HGLOBAL scaleBitmap(HGLOBAL image, int width, int height)
{
    BitmapBlock block;
    if (width < 1 || height < 1 || !lockBlock(image, &block)) return nullptr;
    const bool scalable =
        (block.bitCount == 8 || block.bitCount == 24) && rowsFit(block, block.header->biSize, block.bitCount);
    HGLOBAL scaled = scalable ? createBitmap(width, height, (WORD)block.bitCount) : nullptr;
    if (scaled && block.bitCount == 24) resampleInto(scaled, pixelsBehind(block, block.header->biSize));
    unlockBlock(block);
    return scaled;
}

static bool isKnownDepth(int bitCount)
{
    return bitCount == 1 || bitCount == 4 || bitCount == 8 || bitCount == 16 || bitCount == 24 || bitCount == 32;
}

bool isSoundBitmap(HGLOBAL image)
{
    BitmapBlock block;
    if (!lockBlock(image, &block)) return false;
    // Pastes count on a header of exactly 40 bytes, so no other size is sound.
    const bool sound = block.header->biSize == sizeof(BITMAPINFOHEADER) && block.header->biPlanes == 1 &&
                       block.header->biCompression == BI_RGB && isKnownDepth(block.bitCount) &&
                       rowsFit(block, block.header->biSize + colourTableBytes(block), block.bitCount);
    unlockBlock(block);
    return sound;
}

BitsView viewOfBits(BYTE* bits, int width, int height)
{
    return bottomUpView(bits, width, height, (ptrdiff_t)rowStride(width, 24));
}
