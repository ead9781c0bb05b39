#include "tools/kernels/stroke_kernels.h"

#include "image/pixels/fetch_ahead.h"
#include "tools/kernels/brush_kernels.h"
#include "tools/kernels/digital_line.h"
#include "tools/kernels/line_shapes.h"
#include "tools/kernels/paint_rows.h"

static PixelRect brushRect(const BrushStroke& stroke, PixelPoint at)
{
    return dabRect(at, stroke.mask.width, stroke.mask.height, 1);
}

static void layBrush(const BrushStroke& stroke, PixelPoint at)
{
    const DabPlacement dab =
        placeDab(brushRect(stroke, at), stroke.mask.width, stroke.mask.height, stroke.image.width, stroke.image.height);
    if (stroke.soft)
        softBrushKernel(stroke.image, stroke.start, dab, stroke.mask, stroke.coverage, stroke.colour, stroke.opacity);
    else
        hardBrushKernel(stroke.image, dab, stroke.mask, stroke.coverage, stroke.colour, stroke.opacity);
}

static void layDabs(const BrushStroke& stroke, DigitalLine line)
{
    do
        layBrush(stroke, PixelPoint{line.x, line.y});
    while (nextPoint(line));
}

void paintBrushDabs(const BrushStroke& stroke, PixelPoint from, PixelPoint to)
{
    layDabs(stroke, beginLine(from, to));
}

static bool insideImage(const BrushStroke& stroke, PixelPoint at)
{
    const PixelRect rect = brushRect(stroke, at);
    return rect.left >= 0 && rect.top >= 0 && rect.right <= stroke.image.width && rect.bottom <= stroke.image.height;
}

// ---- the fast way: picture line by picture line, each pixel once

constexpr int STROKE_LINES_AHEAD = 4;

static void fetchLine(const BrushStroke& stroke, int y, int left, int count)
{
    if (y >= stroke.image.height) return;
    const ptrdiff_t at = (ptrdiff_t)left * 3;
    fetchAhead(rowOf(stroke.coverage, y) + left, (size_t)count);
    fetchAhead(rowOf(stroke.image, y) + at, (size_t)count * 3);
}

static void paintLine(const BrushStroke& stroke, const PaintRows& rows, const ColourRow& colour, int y,
                      const LineShape& shape)
{
    const ptrdiff_t at = (ptrdiff_t)shape.left * 3;
    uint8_t *const pixels = rowOf(stroke.image, y) + at, *const cells = rowOf(stroke.coverage, y) + shape.left;
    fetchLine(stroke, y + STROKE_LINES_AHEAD, shape.left, shape.count);
    if (stroke.soft) {
        rows.raise(pixels, rowOf(stroke.start, y) + at, cells, shape.weights, shape.count, colour);
    } else {
        rows.mixFresh(pixels, cells, shape.count, colour, stroke.opacity);
    }
}

static bool paintLines(const BrushStroke& stroke, const BrushRows& brush, const StrokeLines& lines)
{
    LineShapes shapes;
    if (!beginLineShapes(&shapes, brush, lines)) return false;
    const ColourRow colour = colourRow(stroke.colour);
    const PaintRows& rows = paintRows();
    const int end = endTouched(shapes);
    for (int y = firstTouched(shapes); y < end; ++y) {
        const LineShape shape = nextLineShape(shapes, y);
        if (shape.count > 0) paintLine(stroke, rows, colour, y, shape);
    }
    endLineShapes(&shapes);
    return true;
}

// The points from the walk's present one to its last, whose dabs all lie inside the image.
static bool paintInside(const BrushStroke& stroke, const DigitalLine& line, PixelPoint end)
{
    BrushRows brush;
    StrokeLines lines;
    if (!makeBrushRows(&brush, stroke)) return false;
    bool painted = false;
    if (makeStrokeLines(&lines, line, end)) {
        painted = paintLines(stroke, brush, lines);
        freeStrokeLines(&lines);
    }
    freeBrushRows(&brush);
    return painted;
}

// ---- dabs that the image's border cuts

// The stretch of a segment whose dabs lie wholly inside the image: one, as the line only ever goes one way.
struct InsideStretch {
    DigitalLine line;  // at its first point, with the steps to its last one left
    PixelPoint end;
    bool any;
};

// Dabs cut by the border have another falloff: they are laid the plain way at once.
static InsideStretch layCutDabs(const BrushStroke& stroke, DigitalLine line)
{
    InsideStretch stretch = {};
    int64_t points = 0;
    do {
        const PixelPoint at = {line.x, line.y};
        if (!insideImage(stroke, at)) {
            layBrush(stroke, at);
            continue;
        }
        if (!stretch.any) stretch.line = line;
        stretch.any = true;
        stretch.end = at;
        ++points;
    } while (nextPoint(line));
    stretch.line.left = points - 1;
    return stretch;
}

static InsideStretch insideStretch(const BrushStroke& stroke, PixelPoint from, PixelPoint to)
{
    const DigitalLine line = beginLine(from, to);
    // With both ends inside, all are.
    if (insideImage(stroke, from) && insideImage(stroke, to)) return {line, to, true};
    return layCutDabs(stroke, line);
}

void paintBrushSegment(const BrushStroke& stroke, PixelPoint from, PixelPoint to)
{
    const InsideStretch stretch = insideStretch(stroke, from, to);
    if (stretch.any && !paintInside(stroke, stretch.line, stretch.end)) layDabs(stroke, stretch.line);
}
