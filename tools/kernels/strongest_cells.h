// Which cells of a soft dab matter, when more dabs lie before and behind it along a line.
//
// A dab need not be laid in a cell where one of the next two dabs has at least the same weight over that
// pixel, or one of the two before it a higher one. Nothing is lost: from a cell that is passed over, go to
// the dab that is the reason. Its weight is higher, or the same and it lies further ahead; so this cannot
// go on for ever, and it ends at a dab that lays the cell with at least the weight that was passed over.
// What is left is a narrow strip across the line: a cell or two in each row instead of all of them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tools/kernels/stroke_segment.h"

// The weights of a whole dab, in a frame of zeros that is as wide as two steps along a line.
struct WeightGrid {
    uint8_t* memory;
    uint8_t* first;  // cell (0, 0)
    ptrdiff_t stride;
    int width, height;
};

bool makeWeightGrid(WeightGrid* grid, int width, int height);  // all 0; false without memory
void freeWeightGrid(WeightGrid* grid);

inline uint8_t* weightRow(const WeightGrid& grid, int j)
{
    return grid.first + grid.stride * j;
}

struct StrongestCell {
    ptrdiff_t at;  // from the coverage cell under the dab's corner
    uint8_t weight;
};

struct StrongestCells {
    const StrongestCell* cells;
    int count;
};

// A search through the points of one segment. What it finds depends on the two steps behind a point and
// the two ahead of it only, of which a line has few arrangements: each is worked out when it first comes.
struct StrongestSearch {
    const WeightGrid* grid;
    const StrokeSegment* segment;
    ptrdiff_t coverageStride;
    StrongestCell* memory;  // null: every dab is laid whole
    int room;               // cells for each arrangement
    int counts[16];         // by the four steps, a bit each: 1 for a diagonal one; UNKNOWN or TOO_MANY
};

// Segments so short that the search would cost more than it saves are laid whole, and so are brushes
// narrower than a vector. The grid and the segment must stay until endStrongestSearch.
StrongestSearch beginStrongestSearch(const WeightGrid& grid, const StrokeSegment& segment, ptrdiff_t coverageStride);
void endStrongestSearch(StrongestSearch* search);

// The cells in which the dab at point n must be laid. False: lay it whole.
bool findStrongest(StrongestSearch& search, int n, StrongestCells* found);
