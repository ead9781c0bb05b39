#include "tools/kernels/paint_row_variants.h"

#ifdef VECTOR_CODE

#include <cstring>
#include <emmintrin.h>

#define NARROWER PAINT_ROWS_PLAIN

namespace {

#include "image/pixels/words_sse2.h"

#include "tools/kernels/paint_rows_maskless.h"

}  // namespace

const PaintRows PAINT_ROWS_SSE2 = {mixBytes, mixFresh, raise, sumLine, blurLine};

#endif
