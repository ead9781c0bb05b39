#include "tools/painting/dab_engine.h"

#include <cstring>

#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/cursor_outline.h"
#include "image/bitmap_block.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "tools/kernels/brush_kernels.h"
#include "tools/brush/brush_mask.h"
#include "tools/kernels/dab_placement.h"
#include "tools/kernels/digital_line.h"
#include "tools/kernels/patch_kernel.h"
#include "tools/kernels/rubber_kernels.h"
#include "tools/kernels/smooth_kernel.h"
#include "tools/kernels/spray_kernels.h"
#include "tools/kernels/stroke_kernels.h"

namespace {

// What a kernel is given besides the tool's own sources.
struct Dab {
    BitsView image;
    MapView mask;
    DabPlacement place;
    Rgb colour;
    int opacity;
    bool softEdge;
};

void noteCovered(int top, int bottom)
{
    CoveredLines& covered = sessionExtras.covered;
    const bool none = covered.top >= covered.bottom;
    if (none || top < covered.top) covered.top = top;
    if (none || bottom > covered.bottom) covered.bottom = bottom;
}

// The image as it was when the stroke began is the undo snapshot: both are taken at the press.
int paintBrush(const Dab& dab)
{
    noteCovered(dab.place.imageY, dab.place.imageY + dab.place.height);
    BitmapBlock coverageBlock, startBlock;
    MapView coverage;
    BitsView start;
    if (!lockMap(session->strokeCoverage, &coverageBlock, &coverage)) return 0;
    const bool ready = !dab.softEdge || lockPixels(session->undoSnapshot, &startBlock, &start);
    if (ready && dab.softEdge) {
        softBrushKernel(dab.image, start, dab.place, dab.mask, coverage, dab.colour, dab.opacity);
        unlockBlock(startBlock);
    } else if (ready) {
        hardBrushKernel(dab.image, dab.place, dab.mask, coverage, dab.colour, dab.opacity);
    }
    unlockBlock(coverageBlock);
    return ready;
}

int paintSmooth(const Dab& dab)
{
    return smoothKernel(dab.image, dab.place, dab.mask, dab.opacity);
}

int paintPatch(const Dab& dab)
{
    BitmapBlock block;
    BitsView patch;
    if (!lockPixels(session->maskCache, &block, &patch)) return 1;
    patchKernel(dab.image, dab.place, dab.mask, patch, dab.opacity);
    unlockBlock(block);
    return 1;
}

int paintRubber(const Dab& dab)
{
    BitmapBlock block;
    BitsView original;
    if (!lockPixels(session->originalImage, &block, &original)) return 1;
    const auto kernel = dab.softEdge ? softRubberKernel : hardRubberKernel;
    kernel(dab.image, dab.place, dab.mask, original, dab.opacity);
    unlockBlock(block);
    return 1;
}

int paintSpray(const Dab& dab)
{
    const auto kernel = dab.softEdge ? softSprayKernel : hardSprayKernel;
    kernel(dab.image, dab.place, dab.mask, dab.colour, dab.opacity);
    return 1;
}

struct PaintingTool {
    uint32_t tool;
    int (*paint)(const Dab& dab);
    RECT (*layDabs)(const PaintingTool& tool, PixelPoint from, PixelPoint to);  // returns what they may have touched
    bool carriesPatch;
};

RECT layDabAtEnd(const PaintingTool& tool, PixelPoint from, PixelPoint to);
RECT layDabsAlong(const PaintingTool& tool, PixelPoint from, PixelPoint to);
RECT layBrushSegment(const PaintingTool& tool, PixelPoint from, PixelPoint to);

const PaintingTool paintingTools[] = {
    {TOOL_BRUSH, paintBrush, layBrushSegment, false}, {TOOL_SMOOTH, paintSmooth, layDabAtEnd, false},
    {TOOL_STAMP, paintPatch, layDabAtEnd, true},      {TOOL_SPOONBILL, paintPatch, layDabsAlong, true},
    {TOOL_RUBBER, paintRubber, layDabAtEnd, false},   {TOOL_AEROGRAPHE, paintSpray, layDabAtEnd, false},
};

const PaintingTool* findPaintingTool(uint32_t tool)
{
    for (const PaintingTool& row : paintingTools) {
        if (row.tool == tool) return &row;
    }
    return nullptr;
}

int paintOn(const PaintingTool& tool, const PixelRect& rect, const BitsView& image, const MapView& mask)
{
    const Dab dab = {image,
                     mask,
                     placeDab(rect, mask.width, mask.height, image.width, image.height),
                     rgbFromColorref(session->paintColour),
                     (int)session->opacity,
                     session->edgeMode == EDGE_SMOOTH};
    return dab.place.visible ? tool.paint(dab) : 1;
}

// The Aerographe's halves are taken before scaling, so its soft dab stays centred.
PixelRect dabRectAt(int x, int y)
{
    return dabRect({x, y}, (int)session->brushWidth, (int)session->brushHeight, (int)session->maskScale);
}

RECT rectOfDab(PixelPoint at)
{
    const PixelRect rect = dabRectAt(at.x, at.y);
    return {rect.left, rect.top, rect.right, rect.bottom};
}

RECT layDab(const PaintingTool& tool, int x, int y)
{
    extendDirtyBox(x, y);
    paintDab(tool.tool, dabRectAt(x, y));
    return rectOfDab({x, y});
}

// Positions only, nothing in between.
RECT layDabAtEnd(const PaintingTool& tool, PixelPoint, PixelPoint to)
{
    return layDab(tool, to.x, to.y);
}

// A dab at every point of the digital line, both ends included.
RECT layDabsAlong(const PaintingTool& tool, PixelPoint from, PixelPoint to)
{
    RECT touched = {0, 0, 0, 0};
    DigitalLine line = beginLine(from, to);
    do {
        const RECT dab = layDab(tool, line.x, line.y);
        UnionRect(&touched, &touched, &dab);
    } while (nextPoint(line));
    return touched;
}

void paintSegmentOf(BrushStroke& stroke, PixelPoint from, PixelPoint to)
{
    BitmapBlock start;
    if (stroke.soft && !lockPixels(session->undoSnapshot, &start, &stroke.start)) return;
    paintBrushSegment(stroke, from, to);
    if (stroke.soft) unlockBlock(start);
}

// The same dabs as layDabsAlong, with the blocks locked once for all of them.
RECT layBrushSegment(const PaintingTool&, PixelPoint from, PixelPoint to)
{
    extendDirtyBox(from.x, from.y);
    extendDirtyBox(to.x, to.y);
    const RECT first = rectOfDab(from), last = rectOfDab(to);
    RECT touched;
    UnionRect(&touched, &first, &last);
    noteCovered((int)touched.top, (int)touched.bottom);
    BrushStroke stroke = {};
    stroke.colour = rgbFromColorref(session->paintColour);
    stroke.opacity = (int)session->opacity;
    stroke.soft = session->edgeMode == EDGE_SMOOTH;
    BitmapBlock image, mask, coverage;
    if (lockPixels(editedImage(), &image, &stroke.image)) {
        if (lockMap(session->brushMask, &mask, &stroke.mask)) {
            if (lockMap(session->strokeCoverage, &coverage, &stroke.coverage)) {
                paintSegmentOf(stroke, from, to);
                unlockBlock(coverage);
            }
            unlockBlock(mask);
        }
        unlockBlock(image);
    }
    return touched;
}

void pickUpPatch(HWND canvas, int x, int y)
{
    const int width = (int)session->brushWidth, height = (int)session->brushHeight;
    session->maskCache = extractRectMasked(editedImage(), session->brushMask, x - width / 2, y - height / 2, width,
                                           height, session->previewBackground);
    buildBrushMask(width, height);
    rebuildOutline(canvas, 0);
}

void clearCovered(const MapView& map)
{
    const CoveredLines& covered = sessionExtras.covered;
    const int top = covered.top > 0 ? covered.top : 0;
    const int bottom = covered.bottom < map.height ? covered.bottom : map.height;
    if (top < bottom) memset(rowOf(map, bottom - 1), 0, (size_t)-map.stride * (size_t)(bottom - top));
}

// A zeroed map of the image's size; the block of the stroke before is used again when it fits.
HGLOBAL freshCoverage(HGLOBAL old, int width, int height)
{
    CoveredLines& covered = sessionExtras.covered;
    BitmapBlock block;
    MapView map;
    bool fits = false;
    if (old == covered.map && lockMap(old, &block, &map)) {
        fits = map.width == width && map.height == height;
        if (fits) clearCovered(map);
        unlockBlock(block);
    }
    if (!fits) releaseBlock(old);
    covered = {fits ? old : createBitmap(width, height, 8), 0, 0};
    return covered.map;
}

}  // namespace

int beginStroke()
{
    int width, height;
    if (!lockBitmapInfo(editedImage(), &width, &height, nullptr)) return 0;
    session->strokeCoverage = freshCoverage(session->strokeCoverage, width, height);
    return session->strokeCoverage != nullptr;
}

void extendDirtyBox(int x, int y)
{
    DirtyBox& box = session->dirtyBox;
    if (x < box.minX) box.minX = x;
    if (x > box.maxX) box.maxX = x;
    if (y < box.minY) box.minY = y;
    if (y > box.maxY) box.maxY = y;
}

int paintDab(uint32_t toolId, const PixelRect& dab)
{
    const PaintingTool* tool = findPaintingTool(toolId);
    BitmapBlock imageBlock, maskBlock;
    BitsView image;
    MapView mask;
    if (!tool || !lockPixels(editedImage(), &imageBlock, &image)) return 0;
    int painted = 0;
    if (lockMap(session->brushMask, &maskBlock, &mask)) {
        painted = paintOn(*tool, dab, image, mask);
        unlockBlock(maskBlock);
    }
    unlockBlock(imageBlock);
    return painted;
}

int strokeTo(HWND canvas, int previousX, int previousY, int x, int y)
{
    const PaintingTool* tool = findPaintingTool(session->currentTool);
    if (!tool) return 0;
    if (tool->carriesPatch && !session->maskCache) {
        pickUpPatch(canvas, previousX, previousY);
        if (tool->tool == TOOL_STAMP) return 1;
    }
    buildBrushMask((int)session->brushWidth, (int)session->brushHeight);
    const RECT touched = tool->layDabs(*tool, {previousX, previousY}, {x, y});
    invalidateImageRect(canvas, touched);
    UpdateWindow(canvas);
    return 1;
}
