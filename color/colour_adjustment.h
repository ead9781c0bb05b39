// Colour adjustment of whole packed bitmaps, given by handle. Pixels lie directly behind the header,
// whatever colour table it announces.
//
// When a handle is null, a size or depth does not fit or memory is short, nothing is changed.
#pragma once

#include <windows.h>

#include "color/values/colour_values.h"

// Adjusts every pixel of a 24-bit image into `target`, a bitmap of the same size, or in place when
// `target` is null. The padding bytes of the written rows become 0. At neutral values the result is a
// little brighter than the image: OK on untouched bars is a step that users see and undo.
void adjustImageColours(HGLOBAL image, HGLOBAL target, const ColourValues& values);

// Derives a floating selection from its untouched source: scales `source` and `sourceMask` to the size
// of `target` (nearest neighbour), rewrites `targetMask`, and writes the adjusted colours into `target`
// wherever the scaled mask is inside (red byte 0). The lift comes last.
// A null `targetMask` stands for `sourceMask`, which is possible only when the sizes are equal.
// False when nothing was changed.
bool applyColourAdjustment(HGLOBAL source, HGLOBAL target, HGLOBAL sourceMask, HGLOBAL targetMask,
                           const ColourValues& values);
