// Stretches of mask cells: masks are made of long runs, so kernels work on whole runs of pixels.
#pragma once

#include <cstdint>
#include <cstring>

struct CellRun {
    int first, end;  // end is one past the last cell; both 0 before the first run
};

// Whether eight cells are all zero, or all not zero.
inline bool eightCellsAre(const uint8_t* cells, bool zero)
{
    constexpr uint64_t ONES = 0x0101010101010101u, HIGHEST = 0x8080808080808080u;
    uint64_t eight;
    memcpy(&eight, cells, sizeof eight);
    return zero ? eight == 0 : ((eight - ONES) & ~eight & HIGHEST) == 0;
}

// First cell from i on whose "is zero" equals `zero`, or count.
inline int firstCell(const uint8_t* cells, int i, int count, bool zero)
{
    while (i + 8 <= count && eightCellsAre(cells + i, !zero))
        i += 8;
    while (i < count && (cells[i] == 0) != zero)
        ++i;
    return i;
}

// Walks the runs of cells that are not zero, from the left:
//     for (CellRun run = {}; nextRun(cells, count, run);) ...
inline bool nextRun(const uint8_t* cells, int count, CellRun& run)
{
    run.first = firstCell(cells, run.end, count, false);
    run.end = firstCell(cells, run.first, count, true);
    return run.first < count;
}
