#include "color/colour_adjustment.h"

#include "color/kernels/adjust.h"
#include "color/kernels/adjust_selection.h"
#include "image/bitmap_locks.h"

static bool sameSize(const BitsView& a, const BitsView& b)
{
    return a.width == b.width && a.height == b.height;
}

void adjustImageColours(HGLOBAL image, HGLOBAL target, const ColourValues& values)
{
    const LockedPixels from(image), onto(target ? target : image);
    if (from && onto && sameSize(from.view, onto.view)) adjustImage(imageAdjustment(values), from.view, onto.view);
}

// Pixels and their mask together; they test as false when they do not belong together.
struct LockedMasked {
    LockedMasked(HGLOBAL pixelBlock, HGLOBAL maskBlock) : pixels(pixelBlock), mask(maskBlock) {}
    explicit operator bool() const { return pixels && mask && sameSize(pixels.view, mask.view); }
    MaskedPixels views() const { return {pixels.view, mask.view}; }

    LockedPixels pixels, mask;
};

bool applyColourAdjustment(HGLOBAL source, HGLOBAL target, HGLOBAL sourceMask, HGLOBAL targetMask,
                           const ColourValues& values)
{
    const LockedMasked from(source, sourceMask), onto(target, targetMask ? targetMask : sourceMask);
    return from && onto && adjustSelection(selectionAdjustment(values), from.views(), onto.views());
}
