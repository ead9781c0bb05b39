// The row operations of the level of vectors in use.
#pragma once

#include "image/pixels/pixel_row_variants.h"

// Of vectorLevel().
const PixelRows& pixelRows();
