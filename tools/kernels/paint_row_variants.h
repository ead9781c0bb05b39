// Operations on rows of pixels for the painting tools, in a variant for each level of vectors. All variants give
// the same bytes, those of pixel_mix.h, and change no byte outside the given rows. tools/kernels/paint_rows.h has
// the one in use.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixels/vector_level.h"

// A colour as a row of pixels to lay over others.
constexpr int COLOUR_ROW_PIXELS = 64;
struct ColourRow {
    uint8_t bytes[COLOUR_ROW_PIXELS * 3];
};

// Sums of the line above and of the line itself, as sumLine of the same variant makes them.
struct SmoothSums {
    uint16_t* above;
    const uint16_t* line;
};
constexpr size_t roomForSums(size_t count)
{
    return (count + 191) / 192 * 192;
}

struct PaintRows {
    // Lays `count` bytes of `over` over the pixels with one opacity (percent). The two do not overlap.
    void (*mixBytes)(uint8_t* pixels, const uint8_t* over, size_t count, int opacity);

    // Full edge: every pixel whose coverage cell is 0 is mixed with the colour, and its cell becomes 1.
    void (*mixFresh)(uint8_t* pixels, uint8_t* cells, int count, const ColourRow& colour, int opacity);

    // Smooth edge: where the weight (percent) is above the coverage cell, the cell takes it, and the pixel becomes
    // the colour laid over the pixel of `under` with it. The others keep every bit. Where the cell is 0 the pixel must
    // be that of `under`, as either may be read.
    void (*raise)(uint8_t* pixels, const uint8_t* under, uint8_t* cells, const uint8_t* weights, int count,
                  const ColourRow& colour);

    // The blur, first across and then down, so that no sum is made more than once. Takes 1 2 1 of each byte and of
    // those a pixel to either side, which are read too; `sums` has room for `count` bytes' and is for blurLine.
    void (*sumLine)(uint16_t* sums, const uint8_t* line, size_t count);

    // The pixels of the line whose cell is not 0 become 1 2 1 of the sums above, in and below it, rounded to
    // sixteenths and mixed over the line with `opacity` percent. `below` is the next line, not yet changed; its sums
    // take the place of those above.
    void (*blurLine)(uint8_t* line, const uint8_t* below, const SmoothSums& sums, const uint8_t* cells, int count,
                     int opacity);
};

// Rows too short for a variant go to the one below it.
extern const PaintRows PAINT_ROWS_PLAIN;
#ifdef VECTOR_CODE
extern const PaintRows PAINT_ROWS_SSE2, PAINT_ROWS_AVX2, PAINT_ROWS_AVX512;
#endif
