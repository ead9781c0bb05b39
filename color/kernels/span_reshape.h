// Redrawing a floating selection's pixels from one outline's spans onto another's. No windows, no handles.
#pragma once

#include "color/kernels/adjust_selection.h"
#include "image/pixels/bits_view.h"

// Where an outline crosses one image row: x values in pairs (entry, exit), ascending.
struct RowSpans {
    const int* crossings;
    int count;  // values, not pairs; an odd last one is ignored
};

// One entry for each image row, from the top.
struct SpanTable {
    const RowSpans* rows;
    int rowCount;
};

// An outline, with the rectangle of its floating image in image pixels.
struct SpanOutline {
    SpanTable spans;
    PixelRect rect;
};

// Redraws the target row by row. Every row of its mask is first set to outside (all bytes 255, padding
// too); then each target span is filled by stretching over it a span of the matching source row (kept
// inside the source's rectangle), pixels and mask alike: the k-th goes to the k-th where both rows have
// equally many and it is usable, else the first usable one serves.
// A pair is usable when both values are neither 0 nor 32766 and above. A span whose source row has no
// usable pair stays outside. Target pixels outside all spans, and columns and rows that fall outside
// either image, keep their bytes.
void reshapeSelectionSpans(MaskedPixels source, MaskedPixels target, const SpanOutline& sourceOutline,
                           const SpanOutline& targetOutline);
