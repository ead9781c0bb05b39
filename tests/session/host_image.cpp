#include "tests/session/host_image.h"

#include <cstring>

static uint32_t nextRandom(uint32_t* state)
{
    *state ^= *state << 13;
    *state ^= *state >> 17;
    *state ^= *state << 5;
    return *state;
}

static void fillPhoto(uint8_t* rows, size_t stride, int width, int height, uint32_t seed)
{
    uint32_t state = seed * 2654435761u + 1;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            uint8_t* pixel = rows + stride * (size_t)y + (size_t)x * 3;
            const int shade = ((x / 24 + y / 17) & 1) ? 40 : 0;  // hard edges between soft gradients
            const uint32_t noise = nextRandom(&state);
            pixel[0] = (uint8_t)(x * 190 / width + shade + (noise & 15));
            pixel[1] = (uint8_t)(y * 190 / height + shade + ((noise >> 8) & 15));
            pixel[2] = (uint8_t)((x + y) * 190 / (width + height) + ((noise >> 16) & 31));
        }
}

static void fillAnything(uint8_t* bytes, size_t count, uint32_t seed)
{
    uint32_t state = seed * 2654435761u + 1;
    for (size_t i = 0; i < count; ++i)
        bytes[i] = (uint8_t)(nextRandom(&state) >> 11);
}

HostImage makePhoto(int width, int height, uint32_t seed, int bitCount)
{
    const size_t stride = ((size_t)width * (size_t)(bitCount / 8) + 3) & ~(size_t)3;
    const size_t table = bitCount == 8 ? 256 * 4 : 0;
    HostImage image = {nullptr, width, height, bitCount, sizeof(BITMAPINFOHEADER) + table + stride * (size_t)height};
    image.block = GlobalAlloc(GMEM_MOVEABLE, image.bitmapBytes + GUARD_BYTES);
    uint8_t* bytes = (uint8_t*)GlobalLock(image.block);
    memset(bytes, 0, image.bitmapBytes);
    memset(bytes + image.bitmapBytes, GUARD_FILL, GUARD_BYTES);

    BITMAPINFOHEADER* header = (BITMAPINFOHEADER*)bytes;
    header->biSize = sizeof *header;
    header->biWidth = width;
    header->biHeight = height;
    header->biPlanes = 1;
    header->biBitCount = (WORD)bitCount;
    uint8_t* colours = bytes + sizeof *header;
    for (size_t i = 0; i < table; ++i)
        colours[i] = (i & 3) == 3 ? 0 : (uint8_t)(i / 4);
    if (bitCount == 24)
        fillPhoto(colours + table, stride, width, height, seed);
    else
        fillAnything(colours + table, stride * (size_t)height, seed);
    GlobalUnlock(image.block);
    return image;
}

void freeImage(HostImage* image)
{
    if (image->block) GlobalFree(image->block);
    image->block = nullptr;
}

void setHeader(const HostImage& image, const BITMAPINFOHEADER& header)
{
    memcpy(GlobalLock(image.block), &header, sizeof header);
    GlobalUnlock(image.block);
}

BITMAPINFOHEADER headerOf(const HostImage& image)
{
    BITMAPINFOHEADER header;
    memcpy(&header, GlobalLock(image.block), sizeof header);
    GlobalUnlock(image.block);
    return header;
}

std::vector<uint8_t> snapshot(const HostImage& image)
{
    const uint8_t* bytes = (const uint8_t*)GlobalLock(image.block);
    std::vector<uint8_t> copy(bytes, bytes + image.bitmapBytes + GUARD_BYTES);
    GlobalUnlock(image.block);
    return copy;
}

uint32_t checksum(const std::vector<uint8_t>& bytes)
{
    uint32_t sum = 2166136261u;
    for (uint8_t byte : bytes)
        sum = (sum ^ byte) * 16777619u;
    return sum;
}
