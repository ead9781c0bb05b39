#include "tools/kernels/line_shapes.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "image/pixels/scarce_memory.h"

constexpr int MOST_ROWS = 64;  // of a brush whose arrangements fit a word
constexpr int MOST_KEPT = 96;
constexpr size_t MOST_COLUMNS = 1024;

static int halfHeight(const LineShapes& shapes)
{
    return shapes.brush->height / 2;
}

// Point lines that reach a picture line.
struct LineRange {
    int first, end;
};

static LineRange pointLinesAround(const LineShapes& shapes, int y)
{
    const int lowest = y + halfHeight(shapes);
    return {std::max(lowest - shapes.brush->height + 1, shapes.lines->firstY),
            std::min(lowest, shapes.lines->lastY) + 1};
}

static const LineSpan& spanOfLine(const LineShapes& shapes, int line)
{
    return shapes.lines->spans[line - shapes.lines->firstY];
}

int firstTouched(const LineShapes& shapes)
{
    return shapes.lines->firstY - halfHeight(shapes);
}

int endTouched(const LineShapes& shapes)
{
    return shapes.lines->lastY - halfHeight(shapes) + shapes.brush->height;
}

static int lineCount(const StrokeLines& lines)
{
    return lines.lastY - lines.firstY + 1;
}

static int widestReach(const StrokeLines& lines, int brushWidth)
{
    const LineSpan& one = lines.spans[0];
    const LineSpan& other = lines.spans[lineCount(lines) - 1];
    return std::max(one.last, other.last) - std::min(one.first, other.first) + brushWidth;
}

// Room for the weights of that many columns, which are worked out in whole blocks.
static size_t roomForWeights(size_t columns)
{
    return columns + WEIGHT_BLOCK;
}

bool beginLineShapes(LineShapes* shapes, const BrushRows& brush, const StrokeLines& lines)
{
    *shapes = {};
    shapes->brush = &brush;
    shapes->lines = &lines;
    const size_t mostColumns = (size_t)brush.height * (size_t)lines.mostPoints + (size_t)brush.width;
    const bool keep = brush.height <= MOST_ROWS && lineCount(lines) > 2 * brush.height && mostColumns <= MOST_COLUMNS;
    shapes->roomForShape = brush.weights ? roomForWeights(mostColumns) : 0;
    const size_t kept = keep ? MOST_KEPT * sizeof(KeptShape) : 0;
    const size_t keptWeights = keep ? MOST_KEPT * shapes->roomForShape : 0;
    const size_t scratch = brush.weights ? roomForWeights((size_t)widestReach(lines, brush.width)) : 0;
    shapes->memory = takeMemory(kept + keptWeights + scratch + 1);
    if (!shapes->memory) return false;
    if (keep) shapes->kept = (KeptShape*)shapes->memory;
    shapes->keptWeights = (uint8_t*)shapes->memory + kept;
    shapes->scratch = shapes->keptWeights + keptWeights;
    return true;
}

void endLineShapes(LineShapes* shapes)
{
    free(shapes->memory);
    *shapes = {};
}

// ---- working a shape out

static CellRun columnsOf(const LineShapes& shapes, int y, LineRange around)
{
    const int halfWidth = shapes.brush->width / 2;
    CellRun columns = {INT_MAX, INT_MIN};
    for (int line = around.first; line < around.end; ++line) {
        const CellRun& run = shapes.brush->runs[y - (line - halfHeight(shapes))];
        if (run.first == run.end) continue;
        const LineSpan& span = spanOfLine(shapes, line);
        columns.first = std::min(columns.first, span.first - halfWidth + run.first);
        columns.end = std::max(columns.end, span.last - halfWidth + run.end);
    }
    return columns;
}

static void raiseBlock(uint8_t* weights, const uint8_t* others)
{
    uint8_t highest[WEIGHT_BLOCK], other[WEIGHT_BLOCK];
    memcpy(highest, weights, sizeof highest);
    memcpy(other, others, sizeof other);
    for (int i = 0; i < WEIGHT_BLOCK; ++i)
        highest[i] = std::max(highest[i], other[i]);
    memcpy(weights, highest, sizeof highest);
}

// A brush row whose first cell lies at column `at`. The blocks are the same for all rows, as a processor waits when
// it reads bytes that were just written as parts of two others.
static void raiseRow(uint8_t* weights, const uint8_t* row, const CellRun& run, int at)
{
    const int end = at + run.end;
    for (int i = (at + run.first) & -WEIGHT_BLOCK; i < end; i += WEIGHT_BLOCK)
        raiseBlock(weights + i, row + (i - at));
}

// A row that is moved along a line of points: it rises at the first one and falls at the last, and between them is its
// peak.
static void raiseAlong(uint8_t* weights, const uint8_t* row, const CellRun& run, int peak, int at, int points)
{
    raiseRow(weights, row, run, at);
    if (points > 1) raiseRow(weights, row, run, at + points - 1);
    for (int i = at + peak + 1; i < at + peak + points - 1; ++i)
        weights[i] = std::max(weights[i], row[peak]);
}

static void fillWeights(const LineShapes& shapes, int y, LineRange around, const CellRun& columns, uint8_t* weights)
{
    const BrushRows& brush = *shapes.brush;
    const int left = columns.first + brush.width / 2;
    memset(weights, 0, roomForWeights((size_t)(columns.end - columns.first)));
    for (int line = around.first; line < around.end; ++line) {
        const int j = y - (line - halfHeight(shapes));
        const CellRun run = brush.runs[j];
        if (run.first == run.end) continue;
        const LineSpan& span = spanOfLine(shapes, line);
        raiseAlong(weights, weightRow(brush, j), run, brush.peaks[j], span.first - left, span.last - span.first + 1);
    }
}

static LineShape makeShape(const LineShapes& shapes, int y, LineRange around, uint8_t* weights)
{
    const CellRun columns = columnsOf(shapes, y, around);
    if (columns.first >= columns.end) return {0, 0, weights};
    if (shapes.brush->weights) fillWeights(shapes, y, around, columns, weights);
    return {columns.first, columns.end - columns.first, weights};
}

// ---- finding it again

// Complete, and without the segment's ends, whose lengths are their own.
static bool isWhole(const LineShapes& shapes, LineRange around)
{
    return around.end - around.first == shapes.brush->height && around.first > shapes.lines->firstY &&
           around.end <= shapes.lines->lastY;
}

static KeptShape* findKept(const LineShapes& shapes, uint64_t arrangement)
{
    for (int i = 0; i < shapes.keptCount; ++i)
        if (shapes.kept[i].arrangement == arrangement) return &shapes.kept[i];
    return nullptr;
}

// Null when there is no room for one more.
static KeptShape* keepShape(LineShapes& shapes, uint64_t arrangement, int y, LineRange around)
{
    if (shapes.keptCount == MOST_KEPT) return nullptr;
    uint8_t* const weights = shapes.keptWeights + shapes.roomForShape * (size_t)shapes.keptCount;
    KeptShape* const kept = &shapes.kept[shapes.keptCount++];
    *kept = {arrangement, makeShape(shapes, y, around, weights), {nullptr, nullptr}};
    kept->shape.left -= spanOfLine(shapes, around.first).first;
    return kept;
}

static KeptShape* keptShapeOf(LineShapes& shapes, int y, LineRange around)
{
    const uint64_t arrangement = shapes.arrangement << (MOST_ROWS - shapes.brush->height);
    KeptShape* const kept = findKept(shapes, arrangement);
    return kept ? kept : keepShape(shapes, arrangement, y, around);
}

// The shape after the present one, from what is known to follow it if that came before.
static KeptShape* nextKeptShape(LineShapes& shapes, int y, LineRange around, uint8_t newestKind)
{
    KeptShape* const before = shapes.present;
    if (before && before->after[newestKind]) return before->after[newestKind];
    KeptShape* const next = keptShapeOf(shapes, y, around);
    if (before) before->after[newestKind] = next;
    return next;
}

LineShape nextLineShape(LineShapes& shapes, int y)
{
    const LineRange around = pointLinesAround(shapes, y);
    const int newest = y + halfHeight(shapes);
    const uint8_t kind = newest <= shapes.lines->lastY ? shapes.lines->kinds[newest - shapes.lines->firstY] : 0;
    shapes.arrangement = shapes.arrangement << 1 | kind;
    if (shapes.kept && isWhole(shapes, around)) {
        shapes.present = nextKeptShape(shapes, y, around, kind);
        if (const KeptShape* const kept = shapes.present)
            return {spanOfLine(shapes, around.first).first + kept->shape.left, kept->shape.count, kept->shape.weights};
    }
    return makeShape(shapes, y, around, shapes.scratch);
}
