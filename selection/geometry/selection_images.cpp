#include "selection/geometry/selection_images.h"

#include <algorithm>

#include "image/pixels/pixel_ops.h"
#include "image/pixels/pixel_rows.h"

static int clampColumn(int64_t column, int width)
{
    return column < 0 ? 0 : column > width ? width : (int)column;
}

static void fillPixels(uint8_t* row, int from, int to, int value)
{
    if (to > from) pixelRows().fill(row + (size_t)from * 3, (uint8_t)value, (size_t)(to - from) * 3);
}

static void fillMaskRow(uint8_t* row, int width, SpanWalk walk, int left)
{
    int done = 0;
    for (CrossingSpan span; nextSpan(walk, span);) {
        const int from = clampColumn((int64_t)span.left - left, width);
        const int to = clampColumn((int64_t)span.right - left, width);
        fillPixels(row, done, from, 255);
        fillPixels(row, from, to, 0);
        done = to;
    }
    pixelRows().fill(row + (size_t)done * 3, 255, (size_t)(rowStride(width, 24) - (int64_t)done * 3));
}

static void cutImageRow(uint8_t* row, int width, SpanWalk walk, int left)
{
    int done = 0;
    for (CrossingSpan span; nextSpan(walk, span);) {
        fillPixels(row, done, clampColumn((int64_t)span.left - left, width), 0);
        done = clampColumn((int64_t)span.right - left, width);
    }
    fillPixels(row, done, width, 0);
}

static void liftImageRow(uint8_t* row, const uint8_t* imageRow, int first, int end, SpanWalk walk, int left)
{
    for (CrossingSpan span; nextSpan(walk, span);) {
        const int from = std::max(span.left, first), to = std::min(span.right, end);
        if (to <= from) continue;
        pixelRows().copy(row + (size_t)from * 3, imageRow + ((ptrdiff_t)left + from) * 3, (size_t)(to - from) * 3);
    }
}

void fillSelectionMask(const BitsView& mask, const RowHead* table, PixelRect rect)
{
    for (int y = 0; y < mask.height; ++y)
        fillMaskRow(rowOf(mask, y), mask.width, beginSpans(crossingsOfRow(table, rect.top + y)), rect.left);
}

void liftSelectionImage(const BitsView& pixels, const RowHead* table, const BitsView& image, int left, int top)
{
    const int first = clampColumn(-(int64_t)left, pixels.width);
    const int end = clampColumn((int64_t)image.width - left, pixels.width);
    for (int y = std::max(-top, 0); y < pixels.height && top + y < image.height; ++y)
        liftImageRow(rowOf(pixels, y), rowOf(image, top + y), first, end, beginSpans(crossingsOfRow(table, y)), left);
}

void cutSelectionImage(const BitsView& pixels, const RowHead* table, PixelRect rect)
{
    for (int y = 0; y < pixels.height; ++y)
        cutImageRow(rowOf(pixels, y), pixels.width, beginSpans(crossingsOfRow(table, rect.top + y)), rect.left);
}

void applySelection(const BitsView& image, const BitsView& pixels, const BitsView& mask, int left, int top)
{
    mergeMasked(image, pixels, mask, left, top);
}

static bool isCoveredBy(const BitsView& image, const BitsView& target, PixelRect rect)
{
    return rect.left >= 0 && rect.top >= 0 && (int64_t)rect.left + target.width <= image.width &&
           (int64_t)rect.top + target.height <= image.height;
}

static void copyImageAt(const BitsView& target, const BitsView& image, PixelRect rect)
{
    for (int y = 0; !isCoveredBy(image, target, rect) && y < target.height; ++y)
        fillPixels(rowOf(target, y), 0, target.width, 0);
    copyFromOffset(target, image, rect.left, rect.top);
}

void composeSelection(const BitsView& target, const BitsView& image, const BitsView& pixels, const BitsView& mask,
                      PixelRect rect)
{
    copyImageAt(target, image, rect);
    mergeMasked(target, pixels, mask, 0, 0);
}

void rebuildSelectionImage(const BitsView& pixels, PixelRect rect, const BitsView& image, const BitsView& oldPixels,
                           const BitsView& oldMask, PixelRect oldRect)
{
    copyImageAt(pixels, image, rect);
    mergeMasked(pixels, oldPixels, oldMask, oldRect.left - rect.left, oldRect.top - rect.top);
}
