// Making a stored selection the floating one.
#pragma once

#include <windows.h>

// Floats loaded pixels and mask (24-bit bitmaps of equal size, black inside) centred on an image point,
// kept inside the image with a margin of one pixel where it fits. The outline is traced from the mask.
// Takes both bitmaps, also when it fails. False, with no selection left, when the mask has no closed
// outline or memory is short.
bool placeStoredSelection(POINT at, HGLOBAL image, HGLOBAL mask);
