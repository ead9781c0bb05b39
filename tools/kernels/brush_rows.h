// What the rows of a brush lay, so that a row can be moved along a picture line as a whole.
#pragma once

#include "tools/kernels/brush_stroke.h"
#include "tools/kernels/cell_runs.h"

constexpr int WEIGHT_BLOCK = 16;  // weights that are looked at together

struct BrushRows {
    int width, height;
    CellRun* runs;     // of each row, the cells that lay anything; first == end: none
    uint8_t* weights;  // Smooth edge: see weightRow; each row rises to its peak and then falls. Else null
    int* peaks;        // the column of each row's highest weight
    void* memory;
};

// False, and nothing to free, without memory and for brushes whose rows cannot be moved so: with gaps or more than
// one peak in a row, or (Full edge) with rows that do not overlap the next one.
bool makeBrushRows(BrushRows* rows, const BrushStroke& stroke);
void freeBrushRows(BrushRows* rows);

// The weights of a row. There is a block of zeros before the first one and another one behind the last.
inline uint8_t* weightRow(const BrushRows& rows, int j)
{
    return rows.weights + (ptrdiff_t)(rows.width + WEIGHT_BLOCK) * j + WEIGHT_BLOCK;
}
