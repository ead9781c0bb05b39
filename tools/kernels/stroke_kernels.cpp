#include "tools/kernels/stroke_kernels.h"

#include <algorithm>
#include <cstdlib>

#include "image/pixels/vector_bytes.h"
#include "tools/kernels/brush_kernels.h"
#include "tools/kernels/digital_line.h"
#include "tools/kernels/stroke_segment.h"

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

void paintBrushDabs(const BrushStroke& stroke, PixelPoint from, PixelPoint to)
{
    DigitalLine line = beginLine(from, to);
    do
        layBrush(stroke, PixelPoint{line.x, line.y});
    while (nextPoint(line));
}

static bool insideImage(const BrushStroke& stroke, PixelPoint at)
{
    const PixelRect rect = brushRect(stroke, at);
    return rect.left >= 0 && rect.top >= 0 && rect.right <= stroke.image.width && rect.bottom <= stroke.image.height;
}

// Dabs cut by the image's border have another falloff: they are laid the plain way at once. The points of
// the others are collected; returns how many there are.
static int layCutDabs(const BrushStroke& stroke, PixelPoint* inside, PixelPoint from, PixelPoint to)
{
    int count = 0;
    DigitalLine line = beginLine(from, to);
    do {
        const PixelPoint at = {line.x, line.y};
        if (insideImage(stroke, at))
            inside[count++] = at;
        else
            layBrush(stroke, at);
    } while (nextPoint(line));
    return count;
}

static StrokeSegment segmentOf(const PixelPoint* points, int count, LineSpan* spans)
{
    const int firstY = std::min(points[0].y, points[count - 1].y);
    const int lastY = std::max(points[0].y, points[count - 1].y);
    const int firstX = std::min(points[0].x, points[count - 1].x);
    const int lastX = std::max(points[0].x, points[count - 1].x);
    for (int y = 0; y <= lastY - firstY; ++y)
        spans[y] = LineSpan{lastX, firstX};
    for (int n = 0; n < count; ++n) {
        LineSpan& span = spans[points[n].y - firstY];
        span.first = std::min(span.first, points[n].x);
        span.last = std::max(span.last, points[n].x);
    }
    return StrokeSegment{points, count, spans, firstY, lastY};
}

LineRange linesTouched(const BrushStroke& stroke, const StrokeSegment& segment)
{
    const int top = segment.firstY - stroke.mask.height / 2;
    return LineRange{top, top + segment.lastY - segment.firstY + stroke.mask.height};
}

LineRange pointLinesAround(const BrushStroke& stroke, const StrokeSegment& segment, int y)
{
    const int lowest = y + stroke.mask.height / 2;
    return LineRange{std::max(lowest - stroke.mask.height + 1, segment.firstY), std::min(lowest, segment.lastY) + 1};
}

void fetchLineAhead(const BrushStroke& stroke, int y, int left, int right)
{
    if (y + 2 >= stroke.image.height) return;
    const ptrdiff_t at = (ptrdiff_t)left * 3;
    const size_t cells = (size_t)(right - left);
    fetchAhead(rowOf(stroke.coverage, y + 2) + left, cells);
    fetchAhead(rowOf(stroke.image, y + 2) + at, cells * 3);
    if (stroke.soft) fetchAhead(rowOf(stroke.start, y + 2) + at, cells * 3);
}

static void paintInside(const BrushStroke& stroke, const StrokeSegment& segment)
{
    const bool painted = stroke.soft ? paintSoftSegment(stroke, segment) : paintHardSegment(stroke, segment);
    for (int n = 0; !painted && n < segment.count; ++n)
        layBrush(stroke, segment.points[n]);
}

// A segment of more points is laid plainly as a whole.
constexpr int64_t MOST_POINTS = 1 << 20;

void paintBrushSegment(const BrushStroke& stroke, PixelPoint from, PixelPoint to)
{
    const int64_t steps = std::max(std::abs((int64_t)to.x - from.x), std::abs((int64_t)to.y - from.y));
    const size_t points = steps > 0 && steps < MOST_POINTS ? (size_t)steps + 1 : 0;
    void* const memory = points ? malloc(points * (sizeof(PixelPoint) + sizeof(LineSpan))) : nullptr;
    if (!memory) {
        paintBrushDabs(stroke, from, to);
        return;
    }
    PixelPoint* const inside = (PixelPoint*)memory;
    const int count = layCutDabs(stroke, inside, from, to);
    if (count > 0) paintInside(stroke, segmentOf(inside, count, (LineSpan*)(inside + points)));
    free(memory);
}
