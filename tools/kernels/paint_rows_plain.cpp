#include "tools/kernels/paint_row_variants.h"
#include "tools/kernels/pixel_mix.h"

static void mixBytes(uint8_t* pixels, const uint8_t* over, size_t count, int opacity)
{
    for (size_t i = 0; i < count; ++i)
        pixels[i] = mixByte(pixels[i], over[i], opacity);
}

static void mixFresh(uint8_t* pixels, uint8_t* cells, int count, const ColourRow& colour, int opacity)
{
    for (int i = 0; i < count; ++i, pixels += 3) {
        if (cells[i]) continue;
        mixPixel(pixels, pixels, colour.bytes, opacity);
        cells[i] = 1;
    }
}

static void raise(uint8_t* pixels, const uint8_t* under, uint8_t* cells, const uint8_t* weights, int count,
                  const ColourRow& colour)
{
    for (int i = 0; i < count; ++i, pixels += 3, under += 3) {
        if (weights[i] <= cells[i]) continue;
        mixPixel(pixels, under, colour.bytes, weights[i]);
        cells[i] = weights[i];
    }
}

static void sumLine(uint16_t* sums, const uint8_t* line, size_t count)
{
    for (size_t i = 0; i < count; ++i, ++line)
        sums[i] = (uint16_t)(line[-3] + 2 * line[0] + line[3]);
}

static void blurLine(uint8_t* line, const uint8_t* below, const SmoothSums& sums, const uint8_t* cells, int count,
                     int opacity)
{
    for (int i = 0; i < count * 3; ++i) {
        const int above = sums.above[i], beneath = below[i - 3] + 2 * below[i] + below[i + 3];
        sums.above[i] = (uint16_t)beneath;
        if (!cells[i / 3]) continue;
        const int blurred = (above + 2 * sums.line[i] + beneath + 8) >> 4;
        line[i] = mixByte(line[i], blurred, opacity);
    }
}

const PaintRows PAINT_ROWS_PLAIN = {mixBytes, mixFresh, raise, sumLine, blurLine};
