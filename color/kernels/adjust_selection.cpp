#include "color/kernels/adjust_selection.h"

#include <cstdlib>
#include <cstring>

#include "color/kernels/adjust.h"
#include "color/kernels/lift.h"
#include "image/pixels/pixel_rows.h"
#include "image/pixels/scarce_memory.h"

// What only floating selections have, done after all else, in this order.
struct SelectionStep {
    int ColourValues::*value;
    void (*apply)(uint8_t* pixels, size_t pixelCount, int value);
};
static const SelectionStep selectionSteps[] = {
    {&ColourValues::lift, liftPixels},
};

static uint8_t* storedRow(const BitsView& view, int64_t row)
{
    return rowOf(view, (int)(view.height - 1 - row));
}

static int64_t sourceIndex(int64_t targetIndex, int sourceSize, int targetSize)
{
    return targetIndex * sourceSize / targetSize;
}

// Nearest pixels of a source row for every pixel of a target row. The index x * sourceWidth / targetWidth is
// carried on with its remainder: a 64-bit division for each pixel is slow in 32-bit code.
static void scaleRow(const uint8_t* sourceRow, int sourceWidth, uint8_t* targetRow, int targetWidth)
{
    if (sourceWidth == targetWidth) {
        memmove(targetRow, sourceRow, (size_t)targetWidth * 3);
        return;
    }
    const size_t wholeStep = (size_t)(sourceWidth / targetWidth) * 3;
    const int restStep = sourceWidth % targetWidth;
    int rest = 0;
    for (int x = 0; x < targetWidth; ++x, targetRow += 3) {
        targetRow[0] = sourceRow[0];
        targetRow[1] = sourceRow[1];
        targetRow[2] = sourceRow[2];
        sourceRow += wholeStep;
        rest += restStep - targetWidth;  // never above targetWidth, so that no width overflows
        if (rest >= 0) {
            sourceRow += 3;
        } else {
            rest += targetWidth;
        }
    }
}

// The inside pixels of a row, one run behind the other.
static size_t gatherInside(const uint8_t* pixels, const uint8_t* mask, int width, uint8_t* line)
{
    const PixelRows& rows = pixelRows();
    size_t count = 0;
    for (ptrdiff_t x = rows.findMask(mask, 0, width, true); x < width;) {
        const ptrdiff_t end = rows.findMask(mask, x, width, false);
        rows.copy(line + count * 3, pixels + x * 3, (size_t)(end - x) * 3);
        count += (size_t)(end - x);
        x = rows.findMask(mask, end, width, true);
    }
    return count;
}

static void scatterInside(const uint8_t* line, const uint8_t* mask, int width, uint8_t* pixels)
{
    const PixelRows& rows = pixelRows();
    for (ptrdiff_t x = rows.findMask(mask, 0, width, true); x < width;) {
        const ptrdiff_t end = rows.findMask(mask, x, width, false);
        rows.copy(pixels + x * 3, line, (size_t)(end - x) * 3);
        line += (end - x) * 3;
        x = rows.findMask(mask, end, width, true);
    }
}

static void adjustInside(const ColourAdjustment& adjustment, const uint8_t* source, const uint8_t* mask, int width,
                         uint8_t* target, uint8_t* line)
{
    const size_t count = gatherInside(source, mask, width, line);
    if (count == 0) return;
    adjustPixels(adjustment, line, line, count);
    for (const SelectionStep& step : selectionSteps)
        step.apply(line, count, adjustment.values.*step.value);
    scatterInside(line, mask, width, target);
}

bool adjustSelection(const ColourAdjustment& adjustment, MaskedPixels source, MaskedPixels target)
{
    const int width = target.pixels.width, height = target.pixels.height;
    const size_t lineBytes = (size_t)width * 3;
    uint8_t* const lines = (uint8_t*)takeMemory(lineBytes * 2);
    if (!lines) return false;

    for (int row = 0; row < height; ++row) {
        const int64_t sourceRow = sourceIndex(row, source.pixels.height, height);
        const uint8_t *pixels = storedRow(source.pixels, sourceRow), *mask = storedRow(source.mask, sourceRow);
        uint8_t* const targetMask = storedRow(target.mask, row);
        if (mask != targetMask) scaleRow(mask, source.mask.width, targetMask, width);
        if (source.pixels.width != width) {
            scaleRow(pixels, source.pixels.width, lines, width);
            pixels = lines;
        }
        adjustInside(adjustment, pixels, targetMask, width, storedRow(target.pixels, row), lines + lineBytes);
    }
    free(lines);
    return true;
}
