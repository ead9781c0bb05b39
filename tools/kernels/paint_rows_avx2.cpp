#include "tools/kernels/paint_row_variants.h"

#ifdef VECTOR_CODE

#include <cstring>
#include <immintrin.h>

#define NARROWER PAINT_ROWS_SSE2

namespace {

#include "image/pixels/words_avx2.h"

#include "tools/kernels/paint_rows_maskless.h"

}  // namespace

const PaintRows PAINT_ROWS_AVX2 = {mixBytes, mixFresh, raise, sumLine, blurLine};

#endif
