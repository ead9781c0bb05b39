#include "tools/painting/dab_engine.h"

#include <algorithm>

#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/cursor_outline.h"
#include "image/bitmap_locks.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"
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
#include "tools/painting/stroke_start.h"

// What a kernel is given besides the tool's own sources.
struct Dab {
    BitsView image;
    MapView mask;
    DabPlacement place;
    Rgb colour;
    int opacity;
    bool softEdge;
};

// The image as it was when the stroke began is the undo snapshot, kept where the dab falls.
static int paintBrush(const Dab& dab)
{
    const LockedMap coverage(session->strokeCoverage);
    const LockedPixels start(dab.softEdge ? session->undoSnapshot : nullptr);
    if (!coverage || (dab.softEdge && !start)) return 0;
    if (dab.softEdge) {
        softBrushKernel(dab.image, start.view, dab.place, dab.mask, coverage.view, dab.colour, dab.opacity);
    } else {
        hardBrushKernel(dab.image, dab.place, dab.mask, coverage.view, dab.colour, dab.opacity);
    }
    return 1;
}

static int paintSmooth(const Dab& dab)
{
    return smoothKernel(dab.image, dab.place, dab.mask, dab.opacity);
}

static int paintPatch(const Dab& dab)
{
    const LockedPixels patch(session->maskCache);
    if (patch) patchKernel(dab.image, dab.place, dab.mask, patch.view, dab.opacity);
    return 1;
}

static int paintRubber(const Dab& dab)
{
    const LockedPixels original(session->originalImage);
    const auto kernel = dab.softEdge ? softRubberKernel : hardRubberKernel;
    if (original) kernel(dab.image, dab.place, dab.mask, original.view, dab.opacity);
    return 1;
}

static int paintSpray(const Dab& dab)
{
    const auto kernel = dab.softEdge ? softSprayKernel : hardSprayKernel;
    kernel(dab.image, dab.place, dab.mask, dab.colour, dab.opacity);
    return 1;
}

// What a tool does when it has no patch of the image yet.
enum PickUp {
    PICKS_UP_NOTHING,
    PICKS_UP_AND_PAINTS,
    PICKS_UP_ONLY,
};

// One row a painting tool.
struct PaintingTool {
    uint32_t tool;
    int (*paint)(const Dab& dab);
    RECT (*layDabs)(const PaintingTool& tool, PixelPoint from, PixelPoint to);  // returns what they may have touched
    PickUp pickUp;
};

static RECT layDabAtEnd(const PaintingTool& tool, PixelPoint from, PixelPoint to);
static RECT layDabsAlong(const PaintingTool& tool, PixelPoint from, PixelPoint to);
static RECT layBrushSegment(const PaintingTool& tool, PixelPoint from, PixelPoint to);

static const PaintingTool paintingTools[] = {
    {TOOL_BRUSH, paintBrush, layBrushSegment, PICKS_UP_NOTHING},
    {TOOL_SMOOTH, paintSmooth, layDabAtEnd, PICKS_UP_NOTHING},
    {TOOL_STAMP, paintPatch, layDabAtEnd, PICKS_UP_ONLY},
    {TOOL_SPOONBILL, paintPatch, layDabsAlong, PICKS_UP_AND_PAINTS},
    {TOOL_RUBBER, paintRubber, layDabAtEnd, PICKS_UP_NOTHING},
    {TOOL_AEROGRAPHE, paintSpray, layDabAtEnd, PICKS_UP_NOTHING},
};

static const PaintingTool* findPaintingTool(uint32_t tool)
{
    for (const PaintingTool& row : paintingTools) {
        if (row.tool == tool) return &row;
    }
    return nullptr;
}

static int paintOn(const PaintingTool& tool, const PixelRect& rect, const BitsView& image, const MapView& mask)
{
    const Dab dab = {image,
                     mask,
                     placeDab(rect, mask.width, mask.height, image.width, image.height),
                     rgbFromColorref(session->paintColour),
                     (int)session->opacity,
                     session->edgeMode == EDGE_SMOOTH};
    if (!dab.place.visible) return 1;
    const PixelRect painted = {dab.place.imageX, dab.place.imageY, dab.place.imageX + dab.place.width,
                               dab.place.imageY + dab.place.height};
    return keepForUndo(image, painted) ? tool.paint(dab) : 0;
}

// The Aerographe's halves are taken before scaling, so its soft dab stays centred.
static PixelRect dabRectAt(PixelPoint at)
{
    return dabRect(at, (int)session->brushWidth, (int)session->brushHeight, (int)session->maskScale);
}

static RECT rectOfDab(PixelPoint at)
{
    const PixelRect rect = dabRectAt(at);
    return {rect.left, rect.top, rect.right, rect.bottom};
}

static RECT layDab(const PaintingTool& tool, PixelPoint at)
{
    extendDirtyBox(at);
    paintDab(tool.tool, dabRectAt(at));
    return rectOfDab(at);
}

// Positions only, nothing in between.
static RECT layDabAtEnd(const PaintingTool& tool, PixelPoint, PixelPoint to)
{
    return layDab(tool, to);
}

// A dab at every point of the digital line, both ends included.
static RECT layDabsAlong(const PaintingTool& tool, PixelPoint from, PixelPoint to)
{
    RECT touched = {0, 0, 0, 0};
    DigitalLine line = beginLine(from, to);
    do {
        const RECT dab = layDab(tool, {line.x, line.y});
        UnionRect(&touched, &touched, &dab);
    } while (nextPoint(line));
    return touched;
}

static void paintSegment(PixelPoint from, PixelPoint to)
{
    const bool soft = session->edgeMode == EDGE_SMOOTH;
    const LockedPixels image(editedImage()), start(soft ? session->undoSnapshot : nullptr);
    const LockedMap mask(session->brushMask), coverage(session->strokeCoverage);
    if (!image || !mask || !coverage || (soft && !start) || !keepForUndoAlong(image.view, from, to)) return;
    BrushStroke stroke = {};
    stroke.image = image.view;
    stroke.start = start.view;
    stroke.coverage = coverage.view;
    stroke.mask = mask.view;
    stroke.colour = rgbFromColorref(session->paintColour);
    stroke.opacity = (int)session->opacity;
    stroke.soft = soft;
    paintBrushSegment(stroke, from, to);
}

// The same dabs as layDabsAlong, with the blocks locked once for all of them.
static RECT layBrushSegment(const PaintingTool&, PixelPoint from, PixelPoint to)
{
    extendDirtyBox(from);
    extendDirtyBox(to);
    paintSegment(from, to);
    const RECT first = rectOfDab(from), last = rectOfDab(to);
    RECT touched;
    UnionRect(&touched, &first, &last);
    return touched;
}

static void pickUpPatch(HWND canvas, PixelPoint at)
{
    const int width = (int)session->brushWidth, height = (int)session->brushHeight;
    session->maskCache = extractRectMasked(editedImage(), session->brushMask, at.x - width / 2, at.y - height / 2,
                                           width, height, session->previewBackground);
    buildBrushMask(width, height);
    rebuildOutline(canvas, 0);
}

static bool isMapOf(HGLOBAL coverage, int width, int height)
{
    const LockedMap map(coverage);
    return map && map.view.width == width && map.view.height == height;
}

int beginStroke()
{
    int width, height;
    if (!lockBitmapInfo(editedImage(), &width, &height, nullptr)) return 0;
    if (!isMapOf(session->strokeCoverage, width, height)) {
        releaseBlock(session->strokeCoverage);
        session->strokeCoverage = createBitmap(width, height, 8);
    }
    return session->strokeCoverage != nullptr;
}

void extendDirtyBox(PixelPoint at)
{
    DirtyBox& box = session->dirtyBox;
    box = {std::min(box.minX, at.x), std::max(box.maxX, at.x), std::min(box.minY, at.y), std::max(box.maxY, at.y)};
}

int paintDab(uint32_t toolId, const PixelRect& dab)
{
    const PaintingTool* tool = findPaintingTool(toolId);
    const LockedPixels image(editedImage());
    const LockedMap mask(session->brushMask);
    return tool && image && mask ? paintOn(*tool, dab, image.view, mask.view) : 0;
}

int strokeTo(HWND canvas, POINT from, POINT to)
{
    const PaintingTool* tool = findPaintingTool(session->currentTool);
    if (!tool) return 0;
    const PixelPoint first = {(int)from.x, (int)from.y}, last = {(int)to.x, (int)to.y};
    if (tool->pickUp != PICKS_UP_NOTHING && !session->maskCache) {
        pickUpPatch(canvas, first);
        if (tool->pickUp == PICKS_UP_ONLY) return 1;
    }
    buildBrushMask((int)session->brushWidth, (int)session->brushHeight);
    const RECT touched = tool->layDabs(*tool, first, last);
    invalidateImageRect(canvas, touched);
    UpdateWindow(canvas);
    return 1;
}
