#include "bench/synthetic.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

struct CrcTable {
    uint32_t entry[256];
};

static CrcTable makeCrcTable()
{
    CrcTable table;
    for (uint32_t k = 0; k < 256; ++k) {
        uint32_t value = k;
        for (int bit = 0; bit < 8; ++bit)
            value = (value >> 1) ^ (value & 1 ? 0xEDB88320u : 0);
        table.entry[k] = value;
    }
    return table;
}

uint32_t crc32(const void* bytes, size_t count, uint32_t crc)
{
    static const CrcTable table = makeCrcTable();
    const uint8_t* at = (const uint8_t*)bytes;
    crc = ~crc;
    for (size_t k = 0; k < count; ++k)
        crc = table.entry[(crc ^ at[k]) & 0xFF] ^ (crc >> 8);
    return ~crc;
}

uint32_t crcOfImage(BitsView image)
{
    uint32_t crc = 0;
    for (int y = image.height - 1; y >= 0; --y)
        crc = crc32(rowOf(image, y), (size_t)image.width * 3, crc);
    return crc;
}

uint32_t hashPoint(uint32_t x, uint32_t y, uint32_t seed)
{
    uint32_t h = x * 0x9E3779B1u + y * 0x85EBCA77u + seed * 0xC2B2AE3Du;
    h ^= h >> 15;
    h *= 0x2C1B3C6Du;
    h ^= h >> 12;
    h *= 0x297A2D39u;
    return h ^ h >> 15;
}

// A triangle wave of period 2p, 0 to 255.
template <uint32_t p>
static int tri(uint32_t v)
{
    uint32_t m = v % (2 * p);
    if (m >= p) m = 2 * p - 1 - m;
    return (int)(m * 255 / (p - 1));
}

static uint8_t clampByte(int value)
{
    return (uint8_t)std::min(std::max(value, 0), 255);
}

static void photoPixel(uint8_t* pixel, uint32_t x, uint32_t y, uint32_t seed)
{
    const uint32_t h = hashPoint(x, y, seed), u = x + 131 * seed, v = y + 57 * seed;
    pixel[2] = clampByte((2 * tri<1021>(u) + tri<769>(v)) / 3 + (int)(h & 15) - 8);
    pixel[1] = clampByte((tri<613>(u + v) + 2 * tri<1531>(v)) / 3 + (int)(h >> 8 & 15) - 8);
    pixel[0] = clampByte((tri<907>(u + 2 * v) + tri<367>(u)) / 2 + (int)(h >> 16 & 15) - 8);
}

void fillPhoto(BitsView image, uint32_t seed)
{
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            photoPixel(rowOf(image, y) + x * 3, (uint32_t)x, (uint32_t)y, seed);
}

void fillNoise(BitsView image, uint32_t seed)
{
    for (int y = 0; y < image.height; ++y) {
        uint8_t* pixel = rowOf(image, y);
        for (int x = 0; x < image.width; ++x, pixel += 3) {
            const uint32_t value = hashPoint((uint32_t)x, (uint32_t)y, seed);
            pixel[0] = (uint8_t)value;
            pixel[1] = (uint8_t)(value >> 8);
            pixel[2] = (uint8_t)(value >> 16);
        }
    }
}

int intSine(int angle)
{
    const int a = angle & 65535, h = a & 32767;
    const int v = (int)((int64_t)h * (32768 - h) >> 13);
    return a >= 32768 ? -v : v;
}

int intCosine(int angle)
{
    return intSine(angle + 16384);
}

PixelPoint outlinePoint(int index)
{
    const int64_t i = index;
    const int a = (int)(i * 3 * 65536 / OUTLINE_POINTS), b = (int)(i * 7 * 65536 / OUTLINE_POINTS);
    const int c = (int)(i * 163 * 65536 / OUTLINE_POINTS);
    const int64_t wobble = hashPoint((uint32_t)index, 7, 3) % 3;
    const int64_t r = 640 + 220 * (int64_t)intSine(b) / 32768 + 50 * (int64_t)intSine(c) / 32768 + wobble - 1;
    return PixelPoint{(int)(1500 + r * 3 * intCosine(a) / 65536), (int)(1000 + r * intSine(a) / 32768)};
}

BenchPicture makePicture(int width, int height)
{
    const int64_t stride = rowStride(width, 24);
    BenchPicture picture = {};
    picture.byteCount = (size_t)(stride * height);
    picture.bytes = (uint8_t*)calloc(picture.byteCount, 1);
    if (picture.bytes)
        picture.view = BitsView{picture.bytes + stride * (height - 1), (ptrdiff_t)-stride, width, height};
    return picture;
}

void freePicture(BenchPicture* picture)
{
    free(picture->bytes);
    *picture = BenchPicture{};
}

bool inputIsRight(BitsView image, uint32_t expectedCrc)
{
    const uint32_t crc = crcOfImage(image);
    if (crc != expectedCrc)
        fprintf(stderr, "input has checksum %08x, not %08x\n", (unsigned)crc, (unsigned)expectedCrc);
    return crc == expectedCrc;
}
