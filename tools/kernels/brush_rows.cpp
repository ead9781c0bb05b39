#include "tools/kernels/brush_rows.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "image/pixels/scarce_memory.h"
#include "tools/kernels/brush_kernels.h"
#include "tools/kernels/soft_falloff.h"

// ---- weights of the Smooth edge

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

static size_t roomForWeights(int width, int height)
{
    return (size_t)(width + WEIGHT_BLOCK) * (size_t)height + WEIGHT_BLOCK;
}

static void fillWeights(const BrushRows& rows, int opacity)
{
    memset(rows.weights, 0, roomForWeights(rows.width, rows.height));
    const SoftFalloff falloff = softFalloff(rows.width, rows.height);
    if (!hasRoom(falloff)) return;
    for (int j = falloff.halfHeight; j < rows.height; ++j) {
        uint8_t* const row = weightRow(rows, j);
        fillWeightRow(row, falloff, j, rows.width, opacity);
        const int opposite = 2 * falloff.halfHeight - 1 - j;
        if (opposite >= 0) memcpy(weightRow(rows, opposite), row, (size_t)rows.width);
    }
}

static void clearOutside(uint8_t* weights, const uint8_t* cells, int width)
{
    for (int i = 0; i < width; ++i)
        if (!cells[i]) weights[i] = 0;
}

// ---- rows

// The only run of a row. False when there are more.
static bool singleRun(const uint8_t* cells, int count, CellRun* run)
{
    CellRun next = {};
    *run = next;
    if (!nextRun(cells, count, next)) return true;
    *run = next;
    return !nextRun(cells, count, next);
}

static bool risesAndFalls(const uint8_t* weights, const CellRun& run, int* peak)
{
    int at = run.first;
    while (at + 1 < run.end && weights[at + 1] >= weights[at])
        ++at;
    *peak = at;
    while (at + 1 < run.end && weights[at + 1] <= weights[at])
        ++at;
    return at + 1 >= run.end;
}

static bool fillSoftRows(const BrushRows& rows, const BrushStroke& stroke)
{
    fillWeights(rows, stroke.opacity);
    for (int j = 0; j < rows.height; ++j) {
        uint8_t* const row = weightRow(rows, j);
        clearOutside(row, rowOf(stroke.mask, j), rows.width);
        if (!singleRun(row, rows.width, &rows.runs[j]) || !risesAndFalls(row, rows.runs[j], &rows.peaks[j]))
            return false;
    }
    return true;
}

static bool isEmpty(const CellRun& run)
{
    return run.first == run.end;
}

static bool overlap(const CellRun& one, const CellRun& other)
{
    return one.first < other.end && other.first < one.end;
}

// Rows that lay anything follow on one another, each overlapping the next: then what a picture line gets from
// points in neighbouring lines always hangs together.
static bool hangTogether(const CellRun* runs, int height)
{
    int j = 0;
    while (j < height && isEmpty(runs[j]))
        ++j;
    while (j + 1 < height && overlap(runs[j], runs[j + 1]))
        ++j;
    for (++j; j < height; ++j)
        if (!isEmpty(runs[j])) return false;
    return true;
}

static bool fillHardRows(const BrushRows& rows, const BrushStroke& stroke)
{
    for (int j = 0; j < rows.height; ++j)
        if (!singleRun(rowOf(stroke.mask, j), rows.width, &rows.runs[j])) return false;
    return hangTogether(rows.runs, rows.height);
}

bool makeBrushRows(BrushRows* rows, const BrushStroke& stroke)
{
    const size_t height = (size_t)stroke.mask.height;
    const size_t weights = stroke.soft ? roomForWeights(stroke.mask.width, stroke.mask.height) : 0;
    *rows = {stroke.mask.width, stroke.mask.height, nullptr, nullptr, nullptr, nullptr};
    rows->memory = takeMemory(height * (sizeof(CellRun) + sizeof(int)) + weights);
    if (!rows->memory) return false;
    rows->runs = (CellRun*)rows->memory;
    rows->peaks = (int*)(rows->runs + height);
    if (stroke.soft) rows->weights = (uint8_t*)(rows->peaks + height);
    if (stroke.soft ? fillSoftRows(*rows, stroke) : fillHardRows(*rows, stroke)) return true;
    freeBrushRows(rows);
    return false;
}

void freeBrushRows(BrushRows* rows)
{
    free(rows->memory);
    *rows = {};
}
