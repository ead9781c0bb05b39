// The vector variants of tools/kernels/paint_rows.h, one source each. Rows too short for a variant go to the one
// below it.
#pragma once

#include "image/pixels/vector_level.h"
#include "tools/kernels/paint_rows.h"

extern const PaintRows PAINT_ROWS_PLAIN;
#ifdef VECTOR_CODE
extern const PaintRows PAINT_ROWS_SSE2, PAINT_ROWS_AVX2, PAINT_ROWS_AVX512;
#endif
