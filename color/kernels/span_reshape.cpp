#include "color/kernels/span_reshape.h"

#include <algorithm>
#include <cstring>

constexpr int NO_CROSSING = 32766;  // the end mark of a row's list, and everything above it

struct Span {
    int entry, exit;
};

static bool isCrossing(int x)
{
    return x != 0 && x < NO_CROSSING;
}

static bool usablePair(const RowSpans& spans, int index, Span* pair)
{
    const int entry = spans.crossings[2 * index], exit = spans.crossings[2 * index + 1];
    *pair = Span{entry, exit};
    return isCrossing(entry) && isCrossing(exit);
}

// Rows with equally many spans belong together span by span; otherwise the first usable one serves all.
static bool pairForSpan(const RowSpans& from, const RowSpans& onto, int index, Span* pair)
{
    const int pairs = from.count / 2;
    if (pairs == onto.count / 2 && usablePair(from, index, pair)) return true;
    for (int i = 0; i < pairs; ++i) {
        if (usablePair(from, i, pair)) return true;
    }
    return false;
}

static int sourceRowFor(int row, const PixelRect& source, const PixelRect& target)
{
    const double sourceHeight = source.bottom - source.top;
    const double targetHeight = target.bottom - target.top;
    const int sourceRow = (int)((source.top + 1) + (row - (target.top + 1)) * sourceHeight / targetHeight);
    return std::max(source.top, std::min(sourceRow, source.bottom - 1));
}

// Source columns per target column. The last pixel of one span meets the last pixel of the other, which
// a span of one pixel has no room for.
static double stretchOf(const Span& from, const Span& onto)
{
    if (onto.exit - 1 == onto.entry) {
        return (double)(from.exit - from.entry) / (onto.exit - onto.entry);
    }
    return (double)(from.exit - 1 - from.entry) / (onto.exit - 1 - onto.entry);
}

struct RowPair {
    const uint8_t *sourcePixels, *sourceMask;
    uint8_t *targetPixels, *targetMask;
    int sourceLeft, sourceWidth;  // image column of the first pixel, pixels
    int targetLeft, targetWidth;
};

static void copyPixel(uint8_t* to, const uint8_t* from)
{
    to[0] = from[0];
    to[1] = from[1];
    to[2] = from[2];
}

static void stretchSpan(const RowPair& rows, const Span& from, const Span& onto)
{
    const double stretch = stretchOf(from, onto);
    const int begin = std::max(onto.entry, rows.targetLeft);
    const int end = std::min(onto.exit, rows.targetLeft + rows.targetWidth);
    for (int x = begin; x < end; ++x) {
        const int sourceX = (int)(from.entry + (x - onto.entry) * stretch) - rows.sourceLeft;
        if (sourceX < 0 || sourceX >= rows.sourceWidth) continue;
        const int targetX = x - rows.targetLeft;
        copyPixel(rows.targetMask + targetX * 3, rows.sourceMask + sourceX * 3);
        copyPixel(rows.targetPixels + targetX * 3, rows.sourcePixels + sourceX * 3);
    }
}

static void reshapeRow(const MaskedPixels& source, const MaskedPixels& target, const SpanOutline& sourceOutline,
                       const SpanOutline& targetOutline, int imageRow, int targetY)
{
    const int sourceRow = sourceRowFor(imageRow, sourceOutline.rect, targetOutline.rect);
    // Stored rows count from the rectangle's bottom.
    const int sourceY = source.pixels.height - 1 - (sourceOutline.rect.bottom - 1 - sourceRow);
    if (sourceY < 0 || sourceY >= source.pixels.height) return;
    if (sourceRow < 0 || sourceRow >= sourceOutline.spans.rowCount) return;
    const RowSpans& fromSpans = sourceOutline.spans.rows[sourceRow];

    const RowPair rows = {rowOf(source.pixels, sourceY), rowOf(source.mask, sourceY), rowOf(target.pixels, targetY),
                          rowOf(target.mask, targetY),   sourceOutline.rect.left,     source.pixels.width,
                          targetOutline.rect.left,       target.pixels.width};
    const RowSpans& spans = targetOutline.spans.rows[imageRow];
    for (int i = 0; 2 * i + 1 < spans.count; ++i) {
        Span from;
        if (!pairForSpan(fromSpans, spans, i, &from)) continue;
        stretchSpan(rows, from, Span{spans.crossings[2 * i], spans.crossings[2 * i + 1]});
    }
}

void reshapeSelectionSpans(MaskedPixels source, MaskedPixels target, const SpanOutline& sourceOutline,
                           const SpanOutline& targetOutline)
{
    const PixelRect& rect = targetOutline.rect;
    const int height = target.pixels.height;
    for (int y = 0; y < height; ++y) {
        memset(rowOf(target.mask, y), 255, (size_t)rowStride(target.mask.width, 24));
        const int imageRow = rect.bottom - height + y;
        if (rect.bottom > rect.top && imageRow >= 0 && imageRow < targetOutline.spans.rowCount) {
            reshapeRow(source, target, sourceOutline, targetOutline, imageRow, y);
        }
    }
}
