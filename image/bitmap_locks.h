// Packed bitmaps that stay locked until the scope ends.
//
//     const LockedPixels image(editedImage());
//     if (!image) return false;      // nothing is locked
//     fillRows(image.view);
//
// They test as false for a null handle, a block that cannot be locked, and a block that does not hold what
// its header promises.
#pragma once

#include "image/bitmap_block.h"

// Any block with room for a header; sizes and depth as the header says, unchecked.
struct LockedBitmap {
    explicit LockedBitmap(HGLOBAL image);
    ~LockedBitmap();
    LockedBitmap(const LockedBitmap&) = delete;
    LockedBitmap& operator=(const LockedBitmap&) = delete;
    explicit operator bool() const { return block.header != nullptr; }

    BitmapBlock block;
};

// Where the rows of a 24-bit image begin.
enum PixelPlace {
    BEHIND_BI_SIZE,   // behind as many bytes as the header says it has
    BEHIND_40_BYTES,  // whatever the header says
};

// A 24-bit image whose rows are all there.
struct LockedPixels {
    explicit LockedPixels(HGLOBAL image, PixelPlace place = BEHIND_BI_SIZE);
    explicit operator bool() const { return view.row0 != nullptr; }
    BITMAPINFOHEADER* header() const { return bitmap.block.header; }  // only while locked

    LockedBitmap bitmap;
    BitsView view;  // row0 null when the test is false
};

// An 8-bit map (brush mask, stroke coverage), whose rows follow a header of biSize bytes directly. Maps store
// no colour table, so lockBitmapBits, which counts one, does not find their rows.
struct LockedMap {
    explicit LockedMap(HGLOBAL map);
    explicit operator bool() const { return view.row0 != nullptr; }

    LockedBitmap bitmap;
    MapView view;  // row0 null when the test is false
};
