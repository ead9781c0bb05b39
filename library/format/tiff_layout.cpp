#include "library/format/tiff_layout.h"

#include <algorithm>

uint32_t tiffTypeSize(uint16_t type)
{
    static const uint8_t sizes[] = {0, 1, 1, 2, 4, 8};
    return type < sizeof sizes ? sizes[type] : 0;
}

bool placeSelectionParts(int width, int height, PartPlace (&parts)[PART_COUNT])
{
    if (width < 1 || height < 1 || width > UINT16_MAX || height > UINT16_MAX) return false;
    const uint64_t pixelBytes = (uint64_t)width * (unsigned)height * 3;
    const uint64_t maskBytes = maskRowBytes((unsigned)width) * (unsigned)height;
    const uint64_t maskDirectory = PIXEL_HEAD_BYTES + pixelBytes;
    const uint64_t thumbnailDirectory = maskDirectory + MASK_HEAD_BYTES + maskBytes;
    if (thumbnailDirectory + THUMBNAIL_HEAD_BYTES + THUMBNAIL_BYTES > UINT32_MAX) return false;

    const uint32_t first = TIFF_HEADER_BYTES;
    const uint32_t second = (uint32_t)maskDirectory;
    const uint32_t third = (uint32_t)thumbnailDirectory;
    parts[PART_PIXELS] = {first,
                          first + DIRECTORY_BYTES,
                          first + DIRECTORY_BYTES + SAMPLE_BITS_BYTES,
                          PIXEL_HEAD_BYTES,
                          (uint32_t)pixelBytes,
                          second};
    parts[PART_MASK] = {second, 0, second + DIRECTORY_BYTES, second + MASK_HEAD_BYTES, (uint32_t)maskBytes, third};
    parts[PART_THUMBNAIL] = {third,
                             third + DIRECTORY_BYTES,
                             third + DIRECTORY_BYTES + SAMPLE_BITS_BYTES,
                             third + THUMBNAIL_HEAD_BYTES,
                             THUMBNAIL_BYTES,
                             0};
    return true;
}

uint32_t dotsPerInch(int32_t pixelsPerMetre)
{
    return (uint32_t)(((int64_t)pixelsPerMetre * 254 + 127) / 10000);
}

int32_t pixelsPerMetre(uint32_t numerator, uint32_t denominator, uint32_t unit)
{
    if (numerator == 0 || denominator == 0) return 0;
    const int64_t whole = numerator / denominator;
    int64_t result = 0;
    if (unit == UNIT_INCH) result = (whole * 10000 - 127) / 254;
    if (unit == UNIT_CENTIMETRE) result = whole * 100;
    return (int32_t)std::min<int64_t>(result, INT32_MAX);
}
