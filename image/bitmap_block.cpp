#include "image/bitmap_block.h"

#include "image/pixels/pixel_ops.h"

constexpr uint32_t FIXED_HEADER_BYTES = sizeof(BITMAPINFOHEADER);

bool lockBlock(HGLOBAL image, BitmapBlock* block)
{
    if (!image) return false;
    BITMAPINFOHEADER* header = (BITMAPINFOHEADER*)GlobalLock(image);
    if (!header) return false;
    const uint64_t size = GlobalSize(image);
    if (size < FIXED_HEADER_BYTES) {
        GlobalUnlock(image);
        return false;
    }
    *block = {image, header, size, header->biWidth, header->biHeight, header->biBitCount};
    return true;
}

void unlockBlock(const BitmapBlock& block)
{
    GlobalUnlock(block.handle);
}

bool rowsFit(const BitmapBlock& block, uint64_t headerBytes, int bitsPerPixel)
{
    if (block.width < 1 || block.height < 1 || headerBytes < FIXED_HEADER_BYTES || headerBytes > block.size)
        return false;
    const uint64_t stride = ((uint64_t)block.width * (unsigned)bitsPerPixel + 31) / 32 * 4;
    if (stride == 0) return false;
    return (uint64_t)block.height <= (block.size - headerBytes) / stride;
}

BitsView pixelsBehind(const BitmapBlock& block, uint32_t headerBytes)
{
    return bottomUpView((uint8_t*)block.header + headerBytes, block.width, block.height,
                        (ptrdiff_t)rowStride(block.width, 24));
}

MapView mapBehind(const BitmapBlock& block, uint32_t headerBytes)
{
    const ptrdiff_t stride = (ptrdiff_t)rowStride(block.width, 8);
    return {(uint8_t*)block.header + headerBytes + stride * (block.height - 1), -stride, block.width, block.height};
}

uint64_t colourTableBytes(const BitmapBlock& block)
{
    uint64_t entries = block.header->biClrUsed;
    if (entries == 0 && (block.bitCount == 1 || block.bitCount == 4 || block.bitCount == 8)) {
        entries = 1u << block.bitCount;
    }
    return entries * sizeof(RGBQUAD);
}
