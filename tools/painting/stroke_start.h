// The image as it was at the press, for undo and for the soft Brush: undoSnapshot. A press copies nothing; a part
// of the image is kept just before the stroke first paints in it, and where nothing is kept the image itself still
// is what it was.
#pragma once

#include <windows.h>

#include "image/pixels/bits_view.h"

// At the press: the snapshot is of the image from now on. Without memory, or without an image of 24 bits, there is
// none (and undoSnapshot is null).
void takeUndoSnapshot();

// Before anything is painted inside the rectangle, or by dabs of the current brush between two points. `image` is
// the edited image. With the Brush, its coverage map is zeroed there, too. False when that cannot be: then nothing
// may be painted, for it could not be undone.
bool keepForUndo(const BitsView& image, const PixelRect& rect);
bool keepForUndoAlong(const BitsView& image, PixelPoint from, PixelPoint to);

// The image is what it was at the press. The rectangle that may have changed, empty: none of it was painted.
RECT putBackStroke();

// A rectangle that lies inside the image, as it was at the press, as a 24-bit packed bitmap in FIXED memory: the
// steps of a long session would use up the process's movable handles. 0 on failure.
HGLOBAL cutFromSnapshot(const RECT& rect);
