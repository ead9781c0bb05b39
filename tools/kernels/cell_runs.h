// Stretches of mask cells: masks are made of long runs, so kernels work on whole runs of pixels.
#pragma once

#include <cstdint>

#include "image/pixels/vector_bytes.h"

struct CellRun {
    int first, end;  // end is one past the last cell; both 0 before the first run
};

// First cell from i on whose "is zero" equals `zero`, or count. Sixteen equal ones are passed at once.
inline int firstCell(const uint8_t* cells, int i, int count, bool zero)
{
    const int passed = zero ? 0 : 0xFFFF;
    for (; i + 16 <= count; i += 16) {
        const __m128i block = loadBytes(cells + i);
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_setzero_si128())) != passed) break;
    }
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
