// The one way to make a bitmap with pixels in it: a bitmap that could not be filled is never handed out.
#pragma once

#include "image/bitmap_locks.h"
#include "image/kept_blocks.h"
#include "image/new_bitmap.h"

// The given 24-bit bitmap after `change`, which is given its LockedPixels and returns a bool, has worked on it.
// Null, and the bitmap is freed, when it cannot be locked or `change` says false.
template <typename Change>
HGLOBAL changedOrFreed(HGLOBAL bitmap, Change change)
{
    if (!bitmap) return nullptr;
    bool changed;
    {
        const LockedPixels pixels(bitmap);
        changed = pixels && change(pixels);
    }
    if (changed) return bitmap;
    releaseBlock(bitmap);
    return nullptr;
}

// A new bitmap, black until `fill`, which is given its LockedPixels and returns a bool, has worked on it.
// Null on failure.
template <typename Fill>
HGLOBAL makePixels(int width, int height, Fill fill)
{
    return changedOrFreed(createBitmap(width, height, 24), fill);
}

// The same for a `fill` that writes every pixel: nothing is made black first.
template <typename Fill>
HGLOBAL makeAllPixels(int width, int height, Fill fill)
{
    return changedOrFreed(createUnsetBitmap(width, height), fill);
}
