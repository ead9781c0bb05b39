#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "tools/kernels/brush_kernels.h"
#include "tools/kernels/soft_falloff.h"
#include "tools/kernels/strongest_cells.h"
#include "tools/kernels/stroke_rows.h"
#include "tools/kernels/stroke_segment.h"

// With the Smooth edge the strongest dab counts at every pixel. So all dabs of the segment first raise the
// coverage to their weights, and then each touched pixel is blended once.

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

static void fillWeights(const WeightGrid& grid, int opacity)
{
    const SoftFalloff falloff = softFalloff(grid.width, grid.height);
    if (!hasRoom(falloff)) return;
    for (int j = falloff.halfHeight; j < grid.height; ++j) {
        uint8_t* row = weightRow(grid, j);
        fillWeightRow(row, falloff, j, grid.width, opacity);
        const int opposite = 2 * falloff.halfHeight - 1 - j;
        if (opposite >= 0) memcpy(weightRow(grid, opposite), row, (size_t)grid.width);
    }
}

static void clearOutside(const WeightGrid& grid, const MapView& mask)
{
    for (int j = 0; j < grid.height; ++j) {
        const uint8_t* cells = rowOf(mask, j);
        uint8_t* row = weightRow(grid, j);
        for (int i = 0; i < grid.width; ++i)
            if (!cells[i]) row[i] = 0;
    }
}

static uint8_t* cornerOf(const BrushStroke& stroke, PixelPoint at)
{
    return rowOf(stroke.coverage, at.y - stroke.mask.height / 2) + at.x - stroke.mask.width / 2;
}

static void raiseWhole(const BrushStroke& stroke, const WeightGrid& grid, PixelPoint at)
{
    uint8_t* cells = cornerOf(stroke, at);
    for (int j = 0; j < grid.height; ++j, cells += stroke.coverage.stride)
        raiseCells(cells, weightRow(grid, j), grid.width);
}

static void raiseStrongest(uint8_t* corner, const StrongestCells& list)
{
    for (int k = 0; k < list.count; ++k) {
        uint8_t& cell = corner[list.cells[k].at];
        cell = std::max(cell, list.cells[k].weight);
    }
}

// Dabs with others before and behind them are laid only where they may be the strongest.
static void raiseSegment(const BrushStroke& stroke, const StrokeSegment& segment, const WeightGrid& grid)
{
    StrongestSearch search = beginStrongestSearch(grid, segment, stroke.coverage.stride);
    for (int n = 0; n < segment.count; ++n) {
        StrongestCells list;
        if (findStrongest(search, n, &list))
            raiseStrongest(cornerOf(stroke, segment.points[n]), list);
        else
            raiseWhole(stroke, grid, segment.points[n]);
    }
    endStrongestSearch(&search);
}

// In a picture line the dabs lie between those of the first and the last point line around it.
static void blendLine(const BrushStroke& stroke, const StrokeSegment& segment, int y)
{
    const LineRange lines = pointLinesAround(stroke, segment, y);
    const LineSpan& one = segment.spans[lines.first - segment.firstY];
    const LineSpan& other = segment.spans[lines.end - 1 - segment.firstY];
    const int left = std::min(one.first, other.first) - stroke.mask.width / 2;
    const int right = std::max(one.last, other.last) - stroke.mask.width / 2 + stroke.mask.width;
    const ptrdiff_t at = (ptrdiff_t)left * 3;
    fetchLineAhead(stroke, y, left, right);
    blendCoveredRow(rowOf(stroke.image, y) + at, rowOf(stroke.start, y) + at, rowOf(stroke.coverage, y) + left,
                    right - left, stroke.colour);
}

bool paintSoftSegment(const BrushStroke& stroke, const StrokeSegment& segment)
{
    WeightGrid grid;
    if (!makeWeightGrid(&grid, stroke.mask.width, stroke.mask.height)) return false;
    fillWeights(grid, stroke.opacity);
    clearOutside(grid, stroke.mask);
    raiseSegment(stroke, segment, grid);
    const LineRange touched = linesTouched(stroke, segment);
    for (int y = touched.first; y < touched.end; ++y)
        blendLine(stroke, segment, y);
    freeWeightGrid(&grid);
    return true;
}
