#include <algorithm>
#include <cstdlib>

#include "tools/kernels/cell_runs.h"
#include "tools/kernels/stroke_rows.h"
#include "tools/kernels/stroke_segment.h"

// With the Full edge every pixel is painted once, by whichever dab comes first, so all that counts is
// which pixels the dabs of the segment cover together. In a picture line these are few stretches: the
// points of one line above or below, side by side, move one run of the brush's cells along.

// The only run of a mask row. False when there are more.
static bool singleRun(const uint8_t* cells, int count, CellRun* run)
{
    CellRun next = {};
    *run = next;
    if (!nextRun(cells, count, next)) return true;
    *run = next;
    return !nextRun(cells, count, next);
}

static bool findRuns(const MapView& mask, CellRun* runs)
{
    for (int j = 0; j < mask.height; ++j)
        if (!singleRun(rowOf(mask, j), mask.width, &runs[j])) return false;
    return true;
}

static void paintStretch(const BrushStroke& stroke, int y, const CellRun& columns)
{
    fetchLineAhead(stroke, y, columns.first, columns.end);
    mixFreshRow(rowOf(stroke.image, y) + (ptrdiff_t)columns.first * 3, rowOf(stroke.coverage, y) + columns.first,
                columns.end - columns.first, stroke.colour, stroke.opacity);
}

// Stretches that meet are painted as one; one that comes back to what is painted already changes nothing.
static void paintLine(const BrushStroke& stroke, const StrokeSegment& segment, const CellRun* runs, int y)
{
    const int halfWidth = stroke.mask.width / 2, halfHeight = stroke.mask.height / 2;
    const LineRange lines = pointLinesAround(stroke, segment, y);
    CellRun open = {};
    for (int line = lines.first; line < lines.end; ++line) {
        const CellRun& run = runs[y - (line - halfHeight)];
        if (run.first == run.end) continue;
        const LineSpan& span = segment.spans[line - segment.firstY];
        const CellRun reach = {span.first - halfWidth + run.first, span.last - halfWidth + run.end};
        if (reach.first > open.end || reach.end < open.first) {
            paintStretch(stroke, y, open);
            open = reach;
        } else {
            open = CellRun{std::min(open.first, reach.first), std::max(open.end, reach.end)};
        }
    }
    paintStretch(stroke, y, open);
}

bool paintHardSegment(const BrushStroke& stroke, const StrokeSegment& segment)
{
    CellRun* const runs = (CellRun*)malloc((size_t)stroke.mask.height * sizeof(CellRun));
    const bool paintable = runs && findRuns(stroke.mask, runs);
    const LineRange touched = linesTouched(stroke, segment);
    for (int y = touched.first; paintable && y < touched.end; ++y)
        paintLine(stroke, segment, runs, y);
    free(runs);
    return paintable;
}
