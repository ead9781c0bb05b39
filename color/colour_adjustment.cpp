#include "color/colour_adjustment.h"

#include "color/kernels/adjust.h"
#include "color/kernels/adjust_selection.h"
#include "image/packed_bitmap.h"

// Locks a 24-bit bitmap. Returns false, with nothing locked, when it is none.
static bool lockView(HGLOBAL bitmap, BitsView* view)
{
    int width = 0, height = 0;
    DWORD bitCount = 0;
    if (!bitmap || !lockBitmapInfo(bitmap, &width, &height, &bitCount)) return false;
    if (bitCount != 24 || width < 1 || height < 1) return false;
    BYTE* bits = lockBitmapBits(bitmap);
    if (!bits) return false;
    *view = viewOfBits(bits, width, height);
    return true;
}

static bool sameSize(const BitsView& a, const BitsView& b)
{
    return a.width == b.width && a.height == b.height;
}

void adjustImageColours(HGLOBAL image, HGLOBAL target, int contrast, int brightness, int saturation, int hue)
{
    const HGLOBAL written = target ? target : image;
    BitsView from, onto;
    if (!lockView(image, &from)) return;
    if (lockView(written, &onto)) {
        if (sameSize(from, onto)) {
            adjustImage(imageAdjustment(contrast, brightness, saturation, hue), from, onto);
        }
        unlockBitmap(written);
    }
    unlockBitmap(image);
}

// Locks pixels and mask together. Returns false, with nothing locked, when they do not belong together.
static bool lockMasked(HGLOBAL pixels, HGLOBAL mask, MaskedPixels* masked)
{
    if (!lockView(pixels, &masked->pixels)) return false;
    if (lockView(mask, &masked->mask)) {
        if (sameSize(masked->pixels, masked->mask)) return true;
        unlockBitmap(mask);
    }
    unlockBitmap(pixels);
    return false;
}

void applyColourAdjustment(HGLOBAL source, HGLOBAL target, HGLOBAL sourceMask, HGLOBAL targetMask, int contrast,
                           int brightness, int saturation, int hue, int lift)
{
    const HGLOBAL writtenMask = targetMask ? targetMask : sourceMask;
    MaskedPixels from, onto;
    if (!lockMasked(source, sourceMask, &from)) return;
    if (lockMasked(target, writtenMask, &onto)) {
        adjustSelection(selectionAdjustment(contrast, brightness, saturation, hue), lift, from, onto);
        unlockBitmap(writtenMask);
        unlockBitmap(target);
    }
    unlockBitmap(sourceMask);
    unlockBitmap(source);
}
