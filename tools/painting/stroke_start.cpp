#include "tools/painting/stroke_start.h"

#include <cstring>

#include "image/bitmap_locks.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"
#include "session/ground/locked_block.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "tools/kernels/stroke_tiles.h"

static uint64_t packedSize(int width, int height)
{
    return sizeof(BITMAPINFOHEADER) + (uint64_t)rowStride(width, 24) * (uint64_t)height;
}

// The snapshot is a packed bitmap with the marks of the kept tiles behind its rows. Null when it is not one of
// that image.
static uint8_t* tileMarks(const LockedPixels& snapshot, const BitsView& image)
{
    if (!snapshot || snapshot.view.width != image.width || snapshot.view.height != image.height) return nullptr;
    const uint64_t marks = packedSize(image.width, image.height);
    const bool whole = marks + strokeTileCount(image.width, image.height) <= snapshot.bitmap.block.size;
    return whole ? (uint8_t*)snapshot.header() + marks : nullptr;
}

// What a stroke of the current tool keeps, locked. Only the Brush paints by a coverage map.
struct LockedStart {
    explicit LockedStart(const BitsView& image)
        : snapshot(session->undoSnapshot),
          coverage(session->currentTool == TOOL_BRUSH ? session->strokeCoverage : nullptr), start{snapshot.view,
                                                                                                  coverage.view,
                                                                                                  tileMarks(snapshot,
                                                                                                            image)}
    {
        const bool covers = coverage.view.width == image.width && coverage.view.height == image.height;
        if (session->currentTool == TOOL_BRUSH && !covers) start.keptTile = nullptr;
    }
    explicit operator bool() const { return start.keptTile != nullptr; }

    LockedPixels snapshot;
    LockedMap coverage;
    StrokeStart start;
};

static bool forgetTiles(const BitsView& image)
{
    const LockedPixels snapshot(session->undoSnapshot);
    uint8_t* const marks = tileMarks(snapshot, image);
    if (marks) memset(marks, 0, strokeTileCount(image.width, image.height));
    return marks != nullptr;
}

static bool writeHeader(HGLOBAL snapshot, int width, int height)
{
    const LockedBlock block(snapshot);
    if (!block) return false;
    memset(block.bytes, 0, sizeof(BITMAPINFOHEADER));
    initBitmapHeader((BITMAPINFOHEADER*)block.bytes, width, height, 24);
    return true;
}

// Its pages cost no memory where the stroke does not come.
static HGLOBAL newSnapshot(const BitsView& image)
{
    const uint64_t size = packedSize(image.width, image.height) + strokeTileCount(image.width, image.height);
    const HGLOBAL snapshot = size <= SIZE_MAX / 2 ? takeBlock((SIZE_T)size) : nullptr;
    if (snapshot && writeHeader(snapshot, image.width, image.height)) return snapshot;
    releaseBlock(snapshot);
    return nullptr;
}

static void dropSnapshot()
{
    releaseBlock(session->undoSnapshot);
    session->undoSnapshot = nullptr;
}

static HGLOBAL fixedBitmap(LONG width, LONG height)
{
    const uint64_t size = packedSize((int)width, (int)height);
    BITMAPINFOHEADER* const header =
        size <= SIZE_MAX / 2 ? (BITMAPINFOHEADER*)takeUnkeptBlock(GPTR, (SIZE_T)size) : nullptr;
    initBitmapHeader(header, (int)width, (int)height, 24);
    return header;
}

static bool fillFromStart(HGLOBAL patch, const BitsView& image, const RECT& rect)
{
    const LockedPixels cut(patch), snapshot(session->undoSnapshot);
    uint8_t* const marks = tileMarks(snapshot, image);
    if (!cut || !marks) return false;
    copyFromStart(cut.view, image, {snapshot.view, {}, marks}, (int)rect.left, (int)rect.top);
    return true;
}

static bool liesInside(const RECT& rect, const BitsView& image)
{
    return rect.left >= 0 && rect.top >= 0 && rect.right <= image.width && rect.bottom <= image.height &&
           rect.left < rect.right && rect.top < rect.bottom;
}

void takeUndoSnapshot()
{
    const LockedPixels image(editedImage());
    if (image && forgetTiles(image.view)) return;
    dropSnapshot();
    if (!image) return;
    session->undoSnapshot = newSnapshot(image.view);
    if (!forgetTiles(image.view)) dropSnapshot();
}

bool keepForUndo(const BitsView& image, const PixelRect& rect)
{
    const LockedStart locked(image);
    if (locked) keepTiles(locked.start, image, rect);
    return (bool)locked;
}

bool keepForUndoAlong(const BitsView& image, PixelPoint from, PixelPoint to)
{
    const LockedStart locked(image);
    if (locked) keepTilesAlong(locked.start, image, from, to, (int)session->brushWidth, (int)session->brushHeight);
    return (bool)locked;
}

RECT putBackStroke()
{
    const LockedPixels image(editedImage());
    if (!image) return {};
    const LockedStart locked(image.view);
    if (!locked) return {};
    const PixelRect changed = putBackTiles(locked.start, image.view);
    return {changed.left, changed.top, changed.right, changed.bottom};
}

HGLOBAL cutFromSnapshot(const RECT& rect)
{
    const LockedPixels image(editedImage());
    if (!image || !liesInside(rect, image.view)) return nullptr;
    const HGLOBAL patch = fixedBitmap(rect.right - rect.left, rect.bottom - rect.top);
    if (!patch || fillFromStart(patch, image.view, rect)) return patch;
    GlobalFree(patch);
    return nullptr;
}
