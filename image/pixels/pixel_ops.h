// Moving 24-bit pixels between views: clipped copies, masked rows, flips.
// Pure pixel code: callers own the memory, and every view describes memory that is really there.
#pragma once

#include "image/pixels/bits_view.h"

// What one axis of a clipped copy comes to.
struct ClippedSpan {
    bool misses;  // nothing to copy; the other fields are 0
    int count;    // pixels to copy
    int skipped;  // pixels of the placed span that lie before `start`
    int start;    // first position inside the limit, never negative
};

// Places a span of `length` at `position` on an axis of `limit` pixels.
// A span that hangs over BOTH ends is cut to the limit and skips nothing: its pixels come from its beginning.
ClippedSpan clipSpan(int64_t position, int length, int limit);

// A view of bottom-up rows; `bottomRow` is the first stored byte, `stride` the padded row size.
BitsView bottomUpView(uint8_t* bottomRow, int width, int height, ptrdiff_t stride);

// memmove; blocks larger than the caches, which must not overlap, are written past them.
void copyBlock(void* to, const void* from, size_t bytes);

// Fills the destination with the source's pixels from (left, top) on. Destination pixels whose source
// would lie outside are left alone.
void copyFromOffset(const BitsView& destination, const BitsView& source, int left, int top);

// Copies the source's rectangle onto the destination at (left, top), clipped. The source's horizontal
// skip is counted in BYTES, not in pixels: a paste over the left edge comes out shifted, and stamps
// and applied selections with it.
// False when nothing of the source lies inside. The two may share memory.
bool pasteWithByteSkip(const BitsView& destination, const BitsView& source, int left, int top);

// The patch and the part of the image under it, its corner at (left, top), change places. False, and nothing is
// changed, when the patch does not lie inside the image. The two share no memory.
bool exchangePixels(const BitsView& image, const BitsView& patch, int left, int top);

// Sets pixels whose map cell is 0 to the colour; cells and pixels are matched from the top left corner.
void fillWhereMapIsZero(const BitsView& image, const MapView& map, Rgb colour);

// Takes the source pixels whose mask pixel has red 0 into the row. All three rows are `width` pixels.
void mergeMaskedRow(uint8_t* destination, const uint8_t* source, const uint8_t* mask, int width);

// mergeMaskedRow for whole images with the source's corner at (left, top) of the destination; what
// falls outside is skipped. Source and mask are of equal size.
void mergeMasked(const BitsView& destination, const BitsView& source, const BitsView& mask, int left, int top);

// Turns the first height - 1 stored rows around; the last stored row (the picture's top) stays. Against
// a true mirror the result is one row off: whoever flips pixels and their mask flips both with it.
void reverseAllButLastRow(uint8_t* storedRows, ptrdiff_t rowBytes, int height);

// Mirrors every row left to right; padding is left alone.
void mirrorRows(const BitsView& image);
