#include "color/kernels/adjust.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "color/kernels/adjust_methods.h"
#include "image/pixels/pixel_row_variants.h"

static const ColourMethod* const methods[VECTOR_LEVEL_COUNT] = {
    &COLOUR_PLAIN,
#ifdef VECTOR_CODE
    &COLOUR_SSE2,
    &COLOUR_AVX2,
    &COLOUR_AVX512,
#endif
};

static const ColourMethod& methodFor(const ColourAdjustment& adjustment)
{
    return *methods[adjustment.inRange ? vectorLevel() : VECTOR_PLAIN];
}

void adjustPixels(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t pixelCount)
{
    const ColourMethod& method = methodFor(adjustment);
    if (adjustment.toneOnly) {
        method.toneBytes(adjustment, source, target, pixelCount * 3);
    } else {
        method.colourPixels(adjustment, source, target, pixelCount);
    }
}

// Where the rows lie one behind the other in memory, with their padding.
static bool isOneBlock(const BitsView& view)
{
    return std::abs(view.stride) == rowStride(view.width, 24);
}

static uint8_t* firstByte(const BitsView& view)
{
    return std::min(rowOf(view, 0), rowOf(view, view.height - 1));
}

static bool hasPadding(const BitsView& view)
{
    return view.width % 4 != 0;
}

// Images too large for the caches, all rows at once. Padding goes through the tone curve with them, but pixels must
// follow one another. False, and nothing done, when the rows are to be taken one by one.
static bool adjustAtOnce(const ColourAdjustment& adjustment, const BitsView& source, const BitsView& target)
{
    const size_t bytes = (size_t)rowStride(target.width, 24) * (size_t)target.height;
    if (bytes < LARGE_BLOCK || !isOneBlock(target) || source.stride != target.stride) return false;
    const ColourMethod& method = methodFor(adjustment);
    if (adjustment.toneOnly) {
        method.toneLarge(adjustment, firstByte(source), firstByte(target), bytes);
        return true;
    }
    if (hasPadding(target)) return false;
    method.colourLarge(adjustment, firstByte(source), firstByte(target), bytes / 3);
    return true;
}

static void clearPadding(const BitsView& view)
{
    const size_t rowBytes = (size_t)view.width * 3, padding = (size_t)rowStride(view.width, 24) - rowBytes;
    for (int y = 0; y < view.height; ++y)
        memset(rowOf(view, y) + rowBytes, 0, padding);
}

void adjustImage(const ColourAdjustment& adjustment, BitsView source, BitsView target)
{
    if (!adjustAtOnce(adjustment, source, target)) {
        for (int y = 0; y < target.height; ++y)
            adjustPixels(adjustment, rowOf(source, y), rowOf(target, y), (size_t)target.width);
    }
    if (hasPadding(target)) clearPadding(target);
}
