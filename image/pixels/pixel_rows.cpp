#include "image/pixels/pixel_rows.h"

static const PixelRows* const variants[VECTOR_LEVEL_COUNT] = {
    &PIXEL_ROWS_PLAIN,
#ifdef VECTOR_CODE
    &PIXEL_ROWS_SSE2,
    &PIXEL_ROWS_AVX2,
    &PIXEL_ROWS_AVX512,
#endif
};

const PixelRows& pixelRows()
{
    return *variants[vectorLevel()];
}
