#include "tools/kernels/line_shapes.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "image/pixels/scarce_memory.h"

constexpr int MOST_ROWS = 64;  // of a brush whose arrangements fit a word
constexpr int SLOTS = 256;     // a power of two
constexpr int MOST_KEPT = 96;  // far below SLOTS, so that a search ends soon
constexpr size_t MOST_COLUMNS = 1024;

struct Kept {
    uint64_t arrangement;
    LineShape shape;
    bool taken;
};

static int halfHeight(const LineShapes& shapes)
{
    return shapes.brush->height / 2;
}

LineRange pointLinesAround(const LineShapes& shapes, int y)
{
    const int lowest = y + halfHeight(shapes);
    return {std::max(lowest - shapes.brush->height + 1, shapes.lines->firstY),
            std::min(lowest, shapes.lines->lastY) + 1};
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

bool beginLineShapes(LineShapes* shapes, const BrushRows& brush, const StrokeLines& lines)
{
    *shapes = {};
    shapes->brush = &brush;
    shapes->lines = &lines;
    shapes->mostColumns = (size_t)brush.height * (size_t)lines.mostPoints + (size_t)brush.width;
    const bool keep =
        brush.height <= MOST_ROWS && lineCount(lines) > 2 * brush.height && shapes->mostColumns <= MOST_COLUMNS;
    const size_t kept = keep ? SLOTS * sizeof(Kept) : 0;
    const size_t keptWeights = keep && brush.weights ? MOST_KEPT * shapes->mostColumns : 0;
    const size_t scratch = brush.weights ? (size_t)widestReach(lines, brush.width) : 0;
    shapes->memory = takeMemory(kept + keptWeights + scratch + 1);
    if (!shapes->memory) return false;
    if (keep) {
        shapes->kept = (Kept*)shapes->memory;
        memset(shapes->kept, 0, kept);
    }
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

static const CellRun& runFor(const LineShapes& shapes, int y, int line)
{
    return shapes.brush->runs[y - (line - halfHeight(shapes))];
}

static CellRun columnsOf(const LineShapes& shapes, int y, LineRange around)
{
    const int halfWidth = shapes.brush->width / 2;
    CellRun columns = {INT_MAX, INT_MIN};
    for (int line = around.first; line < around.end; ++line) {
        const CellRun& run = runFor(shapes, y, line);
        if (run.first == run.end) continue;
        const LineSpan& span = shapes.lines->spans[line - shapes.lines->firstY];
        columns.first = std::min(columns.first, span.first - halfWidth + run.first);
        columns.end = std::max(columns.end, span.last - halfWidth + run.end);
    }
    return columns;
}

static void raiseTo(uint8_t* weights, const uint8_t* others, int count)
{
    for (int i = 0; i < count; ++i)
        weights[i] = std::max(weights[i], others[i]);
}

// A row that is moved along a line of points: its rise lies at the first one, its fall at the last, and between
// them its peak.
static void raiseAlong(uint8_t* weights, const uint8_t* row, const CellRun& run, int peak, int points)
{
    const int count = run.end - run.first, top = peak - run.first;
    raiseTo(weights, row + run.first, count);
    if (points == 1) return;
    raiseTo(weights + points - 1, row + run.first, count);
    for (int i = top; i < top + points; ++i)
        weights[i] = std::max(weights[i], row[peak]);
}

static void fillWeights(const LineShapes& shapes, int y, LineRange around, const CellRun& columns, uint8_t* weights)
{
    const BrushRows& brush = *shapes.brush;
    memset(weights, 0, (size_t)(columns.end - columns.first));
    for (int line = around.first; line < around.end; ++line) {
        const int j = y - (line - halfHeight(shapes));
        const CellRun& run = brush.runs[j];
        if (run.first == run.end) continue;
        const LineSpan& span = shapes.lines->spans[line - shapes.lines->firstY];
        const int at = span.first - brush.width / 2 + run.first - columns.first;
        raiseAlong(weights + at, weightRow(brush, j), run, brush.peaks[j], span.last - span.first + 1);
    }
}

static LineShape makeShape(const LineShapes& shapes, int y, LineRange around, uint8_t* weights)
{
    const CellRun columns = columnsOf(shapes, y, around);
    if (columns.first >= columns.end) return {0, 0, weights};
    if (shapes.brush->weights) fillWeights(shapes, y, around, columns, weights);
    const int anchor = shapes.lines->spans[around.first - shapes.lines->firstY].first;
    return {columns.first - anchor, columns.end - columns.first, weights};
}

// ---- finding it again

static Kept* slotFor(const LineShapes& shapes, uint64_t arrangement)
{
    uint32_t slot = (uint32_t)((arrangement * 0x9E3779B97F4A7C15u) >> 56);
    while (shapes.kept[slot].taken && shapes.kept[slot].arrangement != arrangement)
        slot = (slot + 1) % SLOTS;
    return &shapes.kept[slot];
}

// Complete, and without the segment's ends, whose lengths are their own.
static bool isWhole(const LineShapes& shapes, LineRange around)
{
    return around.end - around.first == shapes.brush->height && around.first > shapes.lines->firstY &&
           around.end <= shapes.lines->lastY;
}

LineShape nextLineShape(LineShapes& shapes, int y)
{
    const LineRange around = pointLinesAround(shapes, y);
    const int newest = y + halfHeight(shapes);
    if (newest <= shapes.lines->lastY)
        shapes.arrangement = shapes.arrangement << 1 | shapes.lines->kinds[newest - shapes.lines->firstY];
    if (!shapes.kept || !isWhole(shapes, around)) return makeShape(shapes, y, around, shapes.scratch);

    const uint64_t arrangement = shapes.arrangement << (MOST_ROWS - shapes.brush->height);
    Kept* const kept = slotFor(shapes, arrangement);
    if (kept->taken) return kept->shape;
    if (shapes.keptCount == MOST_KEPT) return makeShape(shapes, y, around, shapes.scratch);
    uint8_t* const weights = shapes.keptWeights + shapes.mostColumns * (size_t)shapes.keptCount++;
    *kept = {arrangement, makeShape(shapes, y, around, weights), true};
    return kept->shape;
}
