// Made-up input that is the same everywhere, and the checksum that proves it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixels/bits_view.h"

// CRC-32, polynomial 0xEDB88320, start and final exclusive-or all ones. `crc` continues an earlier call.
uint32_t crc32(const void* bytes, size_t count, uint32_t crc = 0);

// Over the rows in memory order (bottom row first), width * 3 bytes each, without the padding.
uint32_t crcOfImage(BitsView image);

uint32_t hashPoint(uint32_t x, uint32_t y, uint32_t seed);

// Slow gradients with a little grain, as a camera's picture has. Padding bytes are left alone.
void fillPhoto(BitsView image, uint32_t seed);

// No pixel like its neighbour.
void fillNoise(BitsView image, uint32_t seed);

// Sine and cosine of an angle of 65536 to the turn, -32768 to 32768.
int intSine(int angle);
int intCosine(int angle);

// An outline of 20 000 points that makes three turns and crosses itself, x 151..2848, y 132..1910.
constexpr int OUTLINE_POINTS = 20000;
PixelPoint outlinePoint(int index);

// A picture of the benchmark's own: rows bottom-up, padding 0. Freed with freePicture.
struct BenchPicture {
    uint8_t* bytes;  // null when there is no memory
    size_t byteCount;
    BitsView view;
};

BenchPicture makePicture(int width, int height);
void freePicture(BenchPicture* picture);

// True when the image has the expected checksum; says so on the error output when not.
bool inputIsRight(BitsView image, uint32_t expectedCrc);

// Checksums of the inputs.
constexpr uint32_t PHOTO1_6000X4000 = 0xff123867, PHOTO2_3000X2000 = 0x8105a0e1;
constexpr uint32_t NOISE1_6000X4000 = 0x44ea6d67, PHOTO1_10000X10000 = 0xe29d46f5;
