#include "color/kernels/adjust_selection.h"

#include <cstdlib>
#include <cstring>

#include "color/kernels/adjust.h"
#include "color/kernels/lift.h"
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

static void copyInside(const uint8_t* pixels, const uint8_t* mask, uint8_t* target, int width)
{
    for (int x = 0; x < width; ++x, pixels += 3, mask += 3, target += 3) {
        if (mask[2] == 0) {
            target[0] = pixels[0];
            target[1] = pixels[1];
            target[2] = pixels[2];
        }
    }
}

bool adjustSelection(const ColourAdjustment& adjustment, MaskedPixels source, MaskedPixels target)
{
    const int width = target.pixels.width, height = target.pixels.height;
    uint8_t* line = (uint8_t*)takeMemory((size_t)width * 3);
    if (!line) return false;

    for (int row = 0; row < height; ++row) {
        const int64_t sourceRow = sourceIndex(row, source.pixels.height, height);
        uint8_t* maskRow = storedRow(target.mask, row);
        scaleRow(storedRow(source.mask, sourceRow), source.mask.width, maskRow, width);
        scaleRow(storedRow(source.pixels, sourceRow), source.pixels.width, line, width);
        adjustPixels(adjustment, line, line, (size_t)width);
        for (const SelectionStep& step : selectionSteps)
            step.apply(line, (size_t)width, adjustment.values.*step.value);
        copyInside(line, maskRow, storedRow(target.pixels, row), width);
    }
    free(line);
    return true;
}
