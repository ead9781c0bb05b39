// Packed bitmaps: nearest-neighbour scaling and duplicates.
#include "bench/keys.h"

#include "bench/synthetic.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"

static HGLOBAL photo;

static BitsView lockedView(HGLOBAL image)
{
    BYTE* bits = lockBitmapBits(image);
    return bits ? viewOfBits(bits, bitmapWidth(image), bitmapHeight(image)) : BitsView{};
}

static bool preparePhoto(int width, int height, uint32_t expectedCrc)
{
    photo = createBitmap(width, height, 24);
    const BitsView view = lockedView(photo);
    if (!view.row0) return false;
    fillPhoto(view, 1);
    const bool right = inputIsRight(view, expectedCrc);
    unlockBitmap(photo);
    return right;
}

static bool prepare24(int)
{
    return preparePhoto(6000, 4000, PHOTO1_6000X4000);
}

static bool prepare100(int)
{
    return preparePhoto(10000, 10000, PHOTO1_10000X10000);
}

static void releasePhoto(int)
{
    releaseBlock(photo);
    releaseKeptBlocks();
    photo = nullptr;
}

// The timed runs free their results, so the checksum is taken over one made for it.
static uint32_t crcAndFree(HGLOBAL result)
{
    const BitsView view = lockedView(result);
    const uint32_t crc = view.row0 ? crcOfImage(view) : 0;
    if (view.row0) unlockBitmap(result);
    releaseBlock(result);
    return crc;
}

static bool freed(HGLOBAL result)
{
    releaseBlock(result);
    return result != nullptr;
}

// Variant of scaling: how many times the result is smaller than the photo.
static HGLOBAL scaled(int divisor)
{
    return scaleBitmap(photo, 6000 / divisor, 4000 / divisor);
}

static bool scaleAndFree(int divisor)
{
    return freed(scaled(divisor));
}

static uint32_t crcOfScaled(int divisor)
{
    return crcAndFree(scaled(divisor));
}

static bool duplicateAndFree(int)
{
    return freed(duplicateBitmap(photo, 1));
}

static uint32_t crcOfDuplicate(int)
{
    return crcAndFree(duplicateBitmap(photo, 1));
}

static const BenchKey keys[] = {
    {"nearest_6000x4000_1500x1000", "MP/s", 1.5, 4, prepare24, nullptr, scaleAndFree, crcOfScaled, releasePhoto},
    {"nearest_6000x4000_3000x2000", "MP/s", 6, 2, prepare24, nullptr, scaleAndFree, crcOfScaled, releasePhoto},
    {"duplicate_24mp", "MP/s", 24, 0, prepare24, nullptr, duplicateAndFree, crcOfDuplicate, releasePhoto},
    {"duplicate_100mp", "MP/s", 100, 0, prepare100, nullptr, duplicateAndFree, crcOfDuplicate, releasePhoto},
};

const BenchGroup imageKeys = {keys, sizeof keys / sizeof keys[0]};
