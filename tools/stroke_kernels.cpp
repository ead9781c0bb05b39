#include "tools/stroke_kernels.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "tools/brush_kernels.h"
#include "tools/digital_line.h"
#include "tools/soft_falloff.h"
#include "tools/stroke_rows.h"

// Where two dabs overlap, the Full edge paints with the first and the Smooth edge with the stronger one.
// Neither depends on the pixels between, so all dabs of a segment first mark the coverage map, a few
// row operations a dab, and then each touched pixel is blended once.

// Dabs cut by the image's border have another falloff: they are laid the plain way at once. A segment
// with more lines than this is laid plainly as a whole.
constexpr int64_t MOST_LINES = 1 << 20;

static PixelRect brushRect(const BrushStroke& stroke, PixelPoint at)
{
    return dabRect(at, stroke.mask.width, stroke.mask.height, 1);
}

static void layBrush(const BrushStroke& stroke, PixelRect rect)
{
    const DabPlacement dab =
        placeDab(rect, stroke.mask.width, stroke.mask.height, stroke.image.width, stroke.image.height);
    if (stroke.soft)
        softBrushKernel(stroke.image, stroke.start, dab, stroke.mask, stroke.coverage, stroke.colour, stroke.opacity);
    else
        hardBrushKernel(stroke.image, dab, stroke.mask, stroke.coverage, stroke.colour, stroke.opacity);
}

void paintBrushDabs(const BrushStroke& stroke, PixelPoint from, PixelPoint to)
{
    DigitalLine line = beginLine(from, to);
    do
        layBrush(stroke, brushRect(stroke, PixelPoint{line.x, line.y}));
    while (nextPoint(line));
}

// The x values of the line's points in one picture line.
struct LineSpan {
    int first, last;
};

// A segment at work.
struct SegmentWork {
    LineSpan* spans;    // for each picture line from firstY on
    int firstY, lastY;  // of the line's points
    uint8_t* marks;     // what an uncut dab writes into the coverage: marks or weights, mask.width a row
};

// Weights fall alike to both sides of the middle: a line of cells is computed from the middle on, and
// the line opposite is a copy of it.
static void fillWeightRow(uint8_t* weights, const SoftFalloff& falloff, int j, int width, int opacity)
{
    for (int i = falloff.halfWidth; i < width; ++i) {
        const uint8_t weight = softBrushWeight(falloffDistance(falloff, i, j), opacity);
        weights[i] = weight;
        const int opposite = 2 * falloff.halfWidth - 1 - i;
        if (opposite >= 0) weights[opposite] = weight;
    }
}

static void fillWeights(uint8_t* weights, int width, int height, int opacity)
{
    const SoftFalloff falloff = softFalloff(width, height);
    memset(weights, 0, (size_t)width * height);
    if (!hasRoom(falloff)) return;
    for (int j = falloff.halfHeight; j < height; ++j) {
        uint8_t* row = weights + (size_t)j * width;
        fillWeightRow(row, falloff, j, width, opacity);
        const int opposite = 2 * falloff.halfHeight - 1 - j;
        if (opposite >= 0) memcpy(weights + (size_t)opposite * width, row, (size_t)width);
    }
}

static void fillMarks(const BrushStroke& stroke, uint8_t* marks)
{
    const MapView& mask = stroke.mask;
    if (stroke.soft)
        fillWeights(marks, mask.width, mask.height, stroke.opacity);
    else
        memset(marks, CELL_MARK, (size_t)mask.width * mask.height);
    for (int j = 0; j < mask.height; ++j) {
        const uint8_t* cells = rowOf(mask, j);
        for (int i = 0; i < mask.width; ++i, ++marks)
            if (!cells[i]) *marks = 0;
    }
}

static bool insideImage(const PixelRect& rect, const BitsView& image)
{
    return rect.left >= 0 && rect.top >= 0 && rect.right <= image.width && rect.bottom <= image.height;
}

static void markDab(const BrushStroke& stroke, const SegmentWork& work, const PixelRect& rect)
{
    const uint8_t* marks = work.marks;
    uint8_t* cells = rowOf(stroke.coverage, rect.top) + rect.left;
    for (int j = 0; j < stroke.mask.height; ++j, marks += stroke.mask.width, cells += stroke.coverage.stride)
        (stroke.soft ? raiseCells : markCells)(cells, marks, stroke.mask.width);
}

static void extendSpan(LineSpan* span, int x)
{
    span->first = std::min(span->first, x);
    span->last = std::max(span->last, x);
}

static void markSegment(const BrushStroke& stroke, const SegmentWork& work, PixelPoint from, PixelPoint to)
{
    for (int y = 0; y <= work.lastY - work.firstY; ++y)
        work.spans[y] = LineSpan{std::max(from.x, to.x), std::min(from.x, to.x)};
    DigitalLine line = beginLine(from, to);
    do {
        extendSpan(&work.spans[line.y - work.firstY], line.x);
        const PixelRect rect = brushRect(stroke, PixelPoint{line.x, line.y});
        if (insideImage(rect, stroke.image))
            markDab(stroke, work, rect);
        else
            layBrush(stroke, rect);
    } while (nextPoint(line));
}

static void blendRow(const BrushStroke& stroke, int y, int left, int right)
{
    uint8_t* cells = rowOf(stroke.coverage, y) + left;
    uint8_t* pixels = rowOf(stroke.image, y) + (ptrdiff_t)left * 3;
    if (stroke.soft)
        blendCoveredRow(pixels, rowOf(stroke.start, y) + (ptrdiff_t)left * 3, cells, right - left, stroke.colour);
    else
        mixMarkedRow(pixels, cells, right - left, stroke.colour, stroke.opacity);
}

// The dabs over picture line y have their middles in a run of lines; as the line only ever goes one way,
// the first and the last of these lines bound the dabs to both sides.
static void blendSegment(const BrushStroke& stroke, const SegmentWork& work)
{
    const int halfWidth = stroke.mask.width / 2, halfHeight = stroke.mask.height / 2;
    const int firstRow = std::max(work.firstY - halfHeight, 0);
    const int endRow = std::min(work.lastY - halfHeight + stroke.mask.height, stroke.image.height);
    for (int y = firstRow; y < endRow; ++y) {
        const LineSpan& one = work.spans[std::max(y + halfHeight - stroke.mask.height + 1, work.firstY) - work.firstY];
        const LineSpan& other = work.spans[std::min(y + halfHeight, work.lastY) - work.firstY];
        const int left = std::max(std::min(one.first, other.first) - halfWidth, 0);
        const int right =
            std::min(std::max(one.last, other.last) - halfWidth + stroke.mask.width, stroke.image.width);
        if (left < right) blendRow(stroke, y, left, right);
    }
}

void paintBrushSegment(const BrushStroke& stroke, PixelPoint from, PixelPoint to)
{
    const int64_t lines = std::abs((int64_t)to.y - from.y) + 1;
    const bool singleDab = from.x == to.x && from.y == to.y;
    void* memory = nullptr;
    const size_t spanBytes = lines <= MOST_LINES ? (size_t)lines * sizeof(LineSpan) : 0;
    if (!singleDab && spanBytes)
        memory = malloc(spanBytes + (size_t)stroke.mask.width * stroke.mask.height);
    if (!memory) {
        paintBrushDabs(stroke, from, to);
        return;
    }
    const SegmentWork work = {(LineSpan*)memory, std::min(from.y, to.y), std::max(from.y, to.y),
                              (uint8_t*)memory + spanBytes};
    fillMarks(stroke, work.marks);
    markSegment(stroke, work, from, to);
    blendSegment(stroke, work);
    free(memory);
}
