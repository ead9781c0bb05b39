#include "color/colour_adjustment.h"

#include "color/kernels/adjust.h"
#include "color/kernels/adjust_selection.h"
#include "image/bitmap_block.h"

static bool sameSize(const BitsView& a, const BitsView& b)
{
    return a.width == b.width && a.height == b.height;
}

void adjustImageColours(HGLOBAL image, HGLOBAL target, const ColourValues& values)
{
    BitmapBlock imageBlock, targetBlock;
    BitsView from, onto;
    if (!lockPixels(image, &imageBlock, &from)) return;
    if (lockPixels(target ? target : image, &targetBlock, &onto)) {
        if (sameSize(from, onto)) adjustImage(imageAdjustment(values), from, onto);
        unlockBlock(targetBlock);
    }
    unlockBlock(imageBlock);
}

struct MaskedBlocks {
    BitmapBlock pixels, mask;
};

// Locks pixels and mask together. Returns false, with nothing locked, when they do not belong together.
static bool lockMasked(HGLOBAL pixels, HGLOBAL mask, MaskedBlocks* blocks, MaskedPixels* masked)
{
    if (!lockPixels(pixels, &blocks->pixels, &masked->pixels)) return false;
    if (lockPixels(mask, &blocks->mask, &masked->mask)) {
        if (sameSize(masked->pixels, masked->mask)) return true;
        unlockBlock(blocks->mask);
    }
    unlockBlock(blocks->pixels);
    return false;
}

static void unlockMasked(const MaskedBlocks& blocks)
{
    unlockBlock(blocks.mask);
    unlockBlock(blocks.pixels);
}

bool applyColourAdjustment(HGLOBAL source, HGLOBAL target, HGLOBAL sourceMask, HGLOBAL targetMask,
                           const ColourValues& values)
{
    MaskedBlocks fromBlocks, ontoBlocks;
    MaskedPixels from, onto;
    if (!lockMasked(source, sourceMask, &fromBlocks, &from)) return false;
    bool adjusted = false;
    if (lockMasked(target, targetMask ? targetMask : sourceMask, &ontoBlocks, &onto)) {
        adjusted = adjustSelection(selectionAdjustment(values), from, onto);
        unlockMasked(ontoBlocks);
    }
    unlockMasked(fromBlocks);
    return adjusted;
}
