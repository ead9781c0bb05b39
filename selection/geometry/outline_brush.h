// The outline brush: one dab of a round brush that adds its disk to the selected region or cuts it away,
// on the outline's points alone.
//
// Each run of points strictly inside the circle gives way to an arc of the circle, from where the
// outline enters to where it leaves. Once every point inside is gone the whole disk is either selected
// or not (even-odd), so which of its two arcs a run takes decides only that: every run takes its shorter
// one, and when the disk comes out wrong, the run with the longest arc takes the other one.
#pragma once

#include "selection/geometry/outline.h"

enum BrushResult {
    BRUSH_MISSED,    // no point inside the circle: nothing to do
    BRUSH_RESHAPED,  // there is a new outline
    BRUSH_CLEARED,   // all points inside and cut away: nothing of the selection is left
    BRUSH_NO_MEMORY,
};

struct BrushDab {
    PixelPoint centre;  // image pixels
    int radius;         // half the brush's width, pixels
    bool adds;          // pressed inside the selection: the disk is added; else cut away
};

// Makes the points of the reshaped outline, whose neighbours may lie apart: replay them. New points are
// clamped to the canvas as pointer positions are. On BRUSH_RESHAPED the caller owns `reshaped`
// (freeOutlinePoints); else it is null and the count 0.
BrushResult reshapeOutline(const PixelPoint* points, int count, BrushDab dab, PixelRect canvas, PixelPoint*& reshaped,
                           int& reshapedCount);
