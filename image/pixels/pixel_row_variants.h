// Operations on rows of 24-bit pixels that exist in a variant for each level of vectors. All variants give the
// same bytes and touch no byte outside the given rows. image/pixels/pixel_rows.h has the one in use.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixels/vector_level.h"

// Where the pixels of one result row come from, for the wide way: for every block of 64 result bytes the place of
// a window of source bytes, and for each byte its number inside that window.
struct GatherBlocks {
    static constexpr int BYTES = 64, NARROW = 128, WIDE = 256;  // a block, and the two sizes of a window
    int count;
    int window;             // NARROW or WIDE, for all blocks; 0: there is no wide way for this pair of sizes
    const uint32_t* to;     // of each block, its first byte in the result row
    const uint32_t* from;   // and its window's first byte in the source row
    const uint8_t* number;  // BYTES for each block
};

// Blocks of this size are more than the caches keep until the bytes are used again.
constexpr size_t LARGE_BLOCK = 8 * 1024 * 1024;

struct PixelRows {
    // First pixel from x on whose "the mask's red is 0" equals `inside`, or width.
    ptrdiff_t (*findMask)(const uint8_t* mask, ptrdiff_t x, ptrdiff_t width, bool inside);

    // memset and memcpy for runs of pixels, many of them short.
    void (*fill)(uint8_t* to, uint8_t value, size_t count);
    void (*copy)(uint8_t* to, const uint8_t* from, size_t count);

    // memcpy from LARGE_BLOCK on: what is written passes the caches by. Slower where they would serve.
    void (*copyLarge)(uint8_t* to, const uint8_t* from, size_t count);

    // Copies pixels with their first and third bytes exchanged. The rows do not overlap.
    void (*swapRedAndBlue)(uint8_t* to, const uint8_t* from, size_t pixels);

    // Fills a result row; null where vectors cannot pick bytes from so far.
    void (*gather)(uint8_t* to, const uint8_t* from, const GatherBlocks& blocks);
};

extern const PixelRows PIXEL_ROWS_PLAIN;
#ifdef VECTOR_CODE
extern const PixelRows PIXEL_ROWS_SSE2, PIXEL_ROWS_AVX2, PIXEL_ROWS_AVX512;
#endif
