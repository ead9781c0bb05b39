// The one layout of a selection file: a little-endian TIFF of three uncompressed images in fixed places,
//
//     header | directory 1 | its values | pixels     24-bit RGB, rows from the top, no row padding
//            | directory 2 | its values | mask       1 bit a pixel, most significant first, rows padded to a byte
//            | directory 3 | its values | thumbnail  40 x 30 RGB
//
// Readers look at directory 1 only and find mask and thumbnail by computing their places, so every byte counts.
// Offsets are from the start of the file.
#pragma once

#include <cstdint>

enum TiffTag : uint16_t {
    TAG_NEW_SUBFILE_TYPE = 254,
    TAG_IMAGE_WIDTH = 256,
    TAG_IMAGE_LENGTH = 257,
    TAG_BITS_PER_SAMPLE = 258,
    TAG_COMPRESSION = 259,
    TAG_PHOTOMETRIC = 262,
    TAG_STRIP_OFFSETS = 273,
    TAG_SAMPLES_PER_PIXEL = 277,
    TAG_ROWS_PER_STRIP = 278,
    TAG_STRIP_BYTE_COUNTS = 279,
    TAG_X_RESOLUTION = 282,
    TAG_Y_RESOLUTION = 283,
    TAG_RESOLUTION_UNIT = 296,
};

enum TiffType : uint16_t { TYPE_BYTE = 1, TYPE_ASCII = 2, TYPE_SHORT = 3, TYPE_LONG = 4, TYPE_RATIONAL = 5 };

enum TiffUnit : uint16_t { UNIT_INCH = 2, UNIT_CENTIMETRE = 3 };

// The images of a file, in their order.
enum SelectionPart { PART_PIXELS, PART_MASK, PART_THUMBNAIL, PART_COUNT };

constexpr int THUMBNAIL_WIDTH = 40;
constexpr int THUMBNAIL_HEIGHT = 30;
constexpr uint32_t THUMBNAIL_BYTES = THUMBNAIL_WIDTH * THUMBNAIL_HEIGHT * 3;

constexpr uint32_t TIFF_HEADER_BYTES = 8;
constexpr int DIRECTORY_ENTRIES = 13;
constexpr uint32_t ENTRY_BYTES = 12;
constexpr uint32_t DIRECTORY_BYTES = 2 + DIRECTORY_ENTRIES * ENTRY_BYTES + 4;
constexpr uint32_t SAMPLE_BITS_BYTES = 3 * 2;  // three SHORTs, where an image has three samples
constexpr uint32_t RATIONAL_BYTES = 8;

// What follows directory 2 and directory 3 before their strips.
constexpr uint32_t MASK_HEAD_BYTES = DIRECTORY_BYTES + 2 * RATIONAL_BYTES;
constexpr uint32_t THUMBNAIL_HEAD_BYTES = DIRECTORY_BYTES + SAMPLE_BITS_BYTES + 2 * RATIONAL_BYTES;
constexpr uint32_t PIXEL_HEAD_BYTES = TIFF_HEADER_BYTES + THUMBNAIL_HEAD_BYTES;  // file header included

static_assert(DIRECTORY_BYTES == 162 && PIXEL_HEAD_BYTES == 192 && MASK_HEAD_BYTES == 178 &&
                  THUMBNAIL_HEAD_BYTES == 184,
              "places that files in the field rely on");

// Bytes of one value of a type; 0 for a type that selection files do not use.
uint32_t tiffTypeSize(uint16_t type);

// Bytes of a mask row.
constexpr uint64_t maskRowBytes(uint64_t width)
{
    return (width + 7) / 8;
}

struct PartPlace {
    uint32_t directory;    // offset of the directory
    uint32_t sampleBits;   // offset of the three BitsPerSample values, 0 for the mask, which has none
    uint32_t xResolution;  // offset of the rational; the vertical one follows
    uint32_t strip;        // offset of the rows
    uint32_t stripBytes;
    uint32_t nextDirectory;  // 0 after the last
};

// Where everything of a selection of width by height lies. False when it cannot be written: a size outside
// 1..65535 (the directory holds 16 bits) or an offset beyond 32 bits.
bool placeSelectionParts(int width, int height, PartPlace (&parts)[PART_COUNT]);

// Dots per inch, rounded, as written; computed in 64 bits.
uint32_t dotsPerInch(int32_t pixelsPerMetre);

// What a file's resolution means in pixels per metre. Takes 127 off where dotsPerInch adds it, so 3780 is
// written as 96 and comes back as 3779, as in every file that was ever read. 0 for other units and for a denominator of
// 0; what 31 bits cannot hold becomes the largest number.
int32_t pixelsPerMetre(uint32_t numerator, uint32_t denominator, uint32_t unit);
