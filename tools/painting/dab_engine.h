// Strokes of the painting tools: from pointer positions to dabs, and from dabs to the kernels.
// Points and rectangles are image pixels.
#pragma once

#include <windows.h>

#include "image/pixels/bits_view.h"

// The Brush's stroke begins, with a coverage map that counts as zeroed. takeUndoSnapshot comes first: it is by
// the snapshot's tiles that the map is zeroed, and the Smooth edge paints over the snapshot. Returns 0 when the image
// cannot be read or memory is short.
int beginStroke();

// Paints between two pointer positions with the current tool and shows it at once. Brush and Spoonbill lay a dab at
// every point of the digital line, both ends included; when the two points are the same, and with every other tool,
// one dab falls on `to`. Stamp and Spoonbill pick their patch up around `from` when they have none; for Stamp that
// call ends there. Returns 0 when the current tool does not paint.
int strokeTo(HWND canvas, POINT from, POINT to);

// Clips one dab of a tool to the image and calls its kernel. Returns 0 when something it needs is
// missing, 1 otherwise, also when nothing of the dab lies on the image.
int paintDab(uint32_t tool, const PixelRect& dab);

void extendDirtyBox(PixelPoint at);
