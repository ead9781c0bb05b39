// Images as a host hands them over: a packed bitmap in movable global memory, with a guard area behind it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

// Bytes behind the bitmap inside the same block. Nothing may ever change them.
constexpr size_t GUARD_BYTES = 256;
constexpr uint8_t GUARD_FILL = 0xA5;

struct HostImage {
    HGLOBAL block;  // owned; freed with freeImage
    int width, height, bitCount;
    size_t bitmapBytes;  // header, colour table and rows, without the guard
};

// A photo-like picture: gradients, edges and noise. The same seed gives the same bytes in every build.
// Depths other than 24 get arbitrary bytes and, at 8 bits, a grey colour table.
HostImage makePhoto(int width, int height, uint32_t seed, int bitCount = 24);
void freeImage(HostImage* image);

// The header, for tests that spoil it. Locks and unlocks around the one change.
void setHeader(const HostImage& image, const BITMAPINFOHEADER& header);
BITMAPINFOHEADER headerOf(const HostImage& image);

// All bytes of the block, guard included. The session's thread must be at rest.
std::vector<uint8_t> snapshot(const HostImage& image);

// A plain checksum (FNV-1a) for printing.
uint32_t checksum(const std::vector<uint8_t>& bytes);
