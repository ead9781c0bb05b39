// Colour adjustment of whole images. Beside each way that users get, the plain one: the measure for the
// faster ones, in the same run.
#include "bench/keys.h"

#include "bench/synthetic.h"
#include "color/colour_adjustment.h"
#include "image/packed_bitmap.h"
#include "image/pixels/vector_level.h"

enum ColourWork { TONE, HLS, HLS_NOISE, TONE_PLAIN, HLS_PLAIN, PREVIEW };

static HGLOBAL image, target;

static ColourValues valuesOf(int work)
{
    const bool toneOnly = work == TONE || work == TONE_PLAIN;
    return toneOnly ? ColourValues{-20, -10, 50, 0, 0} : ColourValues{-20, -10, 35, 20, 0};
}

static bool fillInput(int work, int width, int height)
{
    image = createBitmap(width, height, 24);
    BYTE* bits = lockBitmapBits(image);
    if (!bits) return false;
    const BitsView view = viewOfBits(bits, width, height);
    bool right = true;
    if (work == HLS_NOISE) {
        fillNoise(view, 1);
        right = inputIsRight(view, NOISE1_6000X4000);
    } else {
        fillPhoto(view, 1);
        right = work == PREVIEW || inputIsRight(view, PHOTO1_6000X4000);
    }
    unlockBitmap(image);
    return right;
}

// Written before: the target begins as a copy, so that no run meets fresh pages.
static bool prepareImages(int work)
{
    const bool small = work == PREVIEW;
    if (!fillInput(work, small ? 150 : 6000, small ? 150 : 4000)) return false;
    target = duplicateBitmap(image, 1);
    return target != nullptr;
}

static void releaseImages(int)
{
    if (image) GlobalFree(image);
    if (target) GlobalFree(target);
    image = target = nullptr;
}

static bool adjust(int work)
{
    adjustImageColours(image, target, valuesOf(work));
    return true;
}

static bool adjustPlainly(int work)
{
    const VectorLevel before = vectorLevel();
    forceVectorLevel(VECTOR_PLAIN);
    adjust(work);
    forceVectorLevel(before);
    return true;
}

static uint32_t crcOfTarget(int)
{
    const int width = bitmapWidth(target), height = bitmapHeight(target);
    const uint32_t crc = crcOfImage(viewOfBits(lockBitmapBits(target), width, height));
    unlockBitmap(target);
    return crc;
}

static const BenchKey keys[] = {
    {"tone_24mp", "MP/s", 24, TONE, prepareImages, nullptr, adjust, crcOfTarget, releaseImages},
    {"hls_24mp", "MP/s", 24, HLS, prepareImages, nullptr, adjust, crcOfTarget, releaseImages},
    {"hls_noise_24mp", "MP/s", 24, HLS_NOISE, prepareImages, nullptr, adjust, crcOfTarget, releaseImages},
    {"tone_scalar_24mp", "MP/s", 24, TONE_PLAIN, prepareImages, nullptr, adjustPlainly, crcOfTarget, releaseImages},
    {"hls_scalar_24mp", "MP/s", 24, HLS_PLAIN, prepareImages, nullptr, adjustPlainly, crcOfTarget, releaseImages},
    {"hls_preview_150x150", "previews/s", 1, PREVIEW, prepareImages, nullptr, adjust, crcOfTarget, releaseImages},
};

const BenchGroup colourKeys = {keys, sizeof keys / sizeof keys[0]};
