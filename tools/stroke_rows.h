// Row operations of a Brush segment: every dab only marks the coverage map, and the pixels are blended
// once, when all dabs of the segment have marked it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/bits_view.h"

// cells[i] = max(cells[i], weights[i])
void raiseCells(uint8_t* cells, const uint8_t* weights, int count);

// cells[i] |= marks[i]
void markCells(uint8_t* cells, const uint8_t* marks, int count);

// Soft edge: every pixel whose coverage cell is not 0 becomes the colour laid over `under` with the
// cell's weight. Both rows are of `count` pixels; the others keep every bit.
void blendCoveredRow(uint8_t* pixels, const uint8_t* under, const uint8_t* cells, int count, Rgb colour);

// Full edge: every pixel whose cell is the bare mark (so that it was 0 before) is mixed with the colour,
// and the mark goes: a bare mark becomes 1, a mark on a covered cell leaves the cell as it was.
constexpr uint8_t CELL_MARK = 0x80;
void mixMarkedRow(uint8_t* pixels, uint8_t* cells, int count, Rgb colour, int opacity);
