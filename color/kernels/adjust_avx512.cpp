#include "color/kernels/adjust_methods.h"

#ifdef VECTOR_CODE

#include <cstring>

#include "color/kernels/adjust_arithmetic.h"
#include "image/pixels/avx512_intrinsics.h"

namespace {

#include "image/pixels/words_avx512.h"

#include "color/kernels/tone_lanes.h"

}  // namespace

VECTOR_FUNCTION void toneBytesAvx512(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target,
                                     size_t byteCount)
{
    toneBytes(adjustment, source, target, byteCount);
}

#endif
