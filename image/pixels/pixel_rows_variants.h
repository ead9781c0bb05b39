// The vector variants of image/pixels/pixel_rows.h, one source each.
#pragma once

#include "image/pixels/pixel_rows.h"
#include "image/pixels/vector_level.h"

#ifdef VECTOR_CODE
extern const PixelRows PIXEL_ROWS_SSE2, PIXEL_ROWS_AVX2, PIXEL_ROWS_AVX512;
#endif
