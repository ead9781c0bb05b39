// The freehand selection: from an outline's points to its mask, and pasting through a mask.
#include "bench/keys.h"

#include "bench/synthetic.h"
#include "image/kept_blocks.h"
#include "image/new_bitmap.h"
#include "image/packed_bitmap.h"
#include "selection/geometry/outline.h"
#include "selection/geometry/selection_images.h"

constexpr int IMAGE_ROWS = 2000;

static PixelPoint points[OUTLINE_POINTS];
static HGLOBAL mask;  // of the checked run; the pasting key keeps its own here too
static HGLOBAL source, destination;

static BitsView lockedView(HGLOBAL image)
{
    BYTE* bits = lockBitmapBits(image);
    return bits ? viewOfBits(bits, bitmapWidth(image), bitmapHeight(image)) : BitsView{};
}

static void preparePoints()
{
    for (int n = 0; n < OUTLINE_POINTS; ++n)
        points[n] = outlinePoint(n);
}

static void freeMask()
{
    releaseBlock(mask);
    mask = nullptr;
}

static bool makeMask(const RowHead* table, PixelRect rect)
{
    mask = createUnsetBitmap(rect.right - rect.left, rect.bottom - rect.top);
    const BitsView view = lockedView(mask);
    if (!view.row0) return false;
    fillSelectionMask(view, table, rect);
    unlockBitmap(mask);
    return true;
}

static bool prepareOutline(int)
{
    preparePoints();
    return true;
}

// The mask of the last run is freed at the beginning of this one: one is made and one freed in each.
static bool runOutline(int)
{
    freeMask();
    Outline outline = {};
    if (!replayOutline(outline, IMAGE_ROWS, points, OUTLINE_POINTS)) return false;
    PixelRect rect;
    const bool made = computeCrossingBounds(outline.crossings, rect) && makeMask(outline.crossings, rect);
    freeOutline(outline);
    return made;
}

static uint32_t checkOutline(int)
{
    const BitsView view = lockedView(mask);
    if (!view.row0) return 0;
    const uint32_t crc = crcOfImage(view);
    unlockBitmap(mask);
    return crc;
}

static void releaseOutline(int)
{
    freeMask();
}

static bool makePhoto(HGLOBAL& image, int width, int height, uint32_t seed, uint32_t expectedCrc)
{
    image = createBitmap(width, height, 24);
    const BitsView view = lockedView(image);
    if (!view.row0) return false;
    fillPhoto(view, seed);
    const bool right = inputIsRight(view, expectedCrc);
    unlockBitmap(image);
    return right;
}

static bool preparePaste(int)
{
    preparePoints();
    if (!makePhoto(source, 3000, 2000, 2, PHOTO2_3000X2000)) return false;
    if (!makePhoto(destination, 6000, 4000, 1, PHOTO1_6000X4000)) return false;
    RowHead* table = crossingsOfPoints(IMAGE_ROWS, points, OUTLINE_POINTS);
    const bool ready = table && makeMask(table, PixelRect{0, 0, 3000, 2000});
    freeCrossings(table);
    return ready;
}

static bool runPaste(int)
{
    const POINT at = {1500, 1000};
    pasteMasked(destination, source, mask, at);
    return true;
}

static uint32_t checkPaste(int)
{
    const BitsView view = lockedView(destination);
    if (!view.row0) return 0;
    const uint32_t crc = crcOfImage(view);
    unlockBitmap(destination);
    return crc;
}

static void releasePaste(int)
{
    freeMask();
    if (source) GlobalFree(source);
    if (destination) GlobalFree(destination);
    source = destination = nullptr;
}

static const BenchKey keys[] = {
    {"mask_evenodd_20k", "MP/s", 6, 0, prepareOutline, nullptr, runOutline, checkOutline, releaseOutline},
    {"masked_paste_3000x2000", "MP/s", 6, 0, preparePaste, nullptr, runPaste, checkPaste, releasePaste},
};

const BenchGroup selectionKeys = {keys, sizeof(keys) / sizeof(keys[0])};
