#include "tools/stroke_rows.h"

#include <algorithm>
#include <cstring>

#include "tools/pixel_mix.h"
#include "tools/vector_bytes.h"

// Both operations may be applied twice to the same cell, so the last block simply overlaps the one
// before it; only rows shorter than a block go cell by cell.
void raiseCells(uint8_t* cells, const uint8_t* weights, int count)
{
    if (count < 16) {
        for (int i = 0; i < count; ++i)
            cells[i] = std::max(cells[i], weights[i]);
        return;
    }
    for (int i = 0; i < count; i += 16) {
        const int at = std::min(i, count - 16);
        storeBytes(cells + at, _mm_max_epu8(loadBytes(cells + at), loadBytes(weights + at)));
    }
}

void markCells(uint8_t* cells, const uint8_t* marks, int count)
{
    if (count < 16) {
        for (int i = 0; i < count; ++i)
            cells[i] |= marks[i];
        return;
    }
    for (int i = 0; i < count; i += 16) {
        const int at = std::min(i, count - 16);
        storeBytes(cells + at, _mm_or_si128(loadBytes(cells + at), loadBytes(marks + at)));
    }
}

// The colour's bytes over 16 pixels.
struct ColourBlock {
    uint8_t bytes[48];
};

static ColourBlock colourBlock(Rgb colour)
{
    const PixelBytes pixel = pixelBytes(colour);
    ColourBlock block;
    for (int k = 0; k < 48; ++k)
        block.bytes[k] = pixel.byte[k % 3];
    return block;
}

// 16 bytes, each with its own weight; a weight of 0 keeps the pixel's byte.
static void mixBytes(uint8_t* pixels, const uint8_t* under, const uint8_t* over, const uint8_t* weights)
{
    const __m128i zero = _mm_setzero_si128(), u = loadBytes(under), o = loadBytes(over), w = loadBytes(weights);
    const __m128i low = mixWords(_mm_unpacklo_epi8(u, zero), _mm_unpacklo_epi8(o, zero), _mm_unpacklo_epi8(w, zero));
    const __m128i high = mixWords(_mm_unpackhi_epi8(u, zero), _mm_unpackhi_epi8(o, zero), _mm_unpackhi_epi8(w, zero));
    const __m128i keep = _mm_cmpeq_epi8(w, zero);
    storeBytes(pixels, _mm_or_si128(_mm_and_si128(keep, loadBytes(pixels)),
                                    _mm_andnot_si128(keep, _mm_packus_epi16(low, high))));
}

// 16 pixels, one weight each.
static void mixBlock(uint8_t* pixels, const uint8_t* under, const ColourBlock& colour, const uint8_t* weights)
{
    uint8_t spread[52]; // three bytes a pixel; each store writes one too many
    for (int i = 0; i < 16; ++i) {
        const uint32_t three = weights[i] * 0x010101u;
        memcpy(spread + i * 3, &three, 4);
    }
    for (int at = 0; at < 48; at += 16)
        mixBytes(pixels + at, under + at, colour.bytes + at, spread + at);
}

void blendCoveredRow(uint8_t* pixels, const uint8_t* under, const uint8_t* cells, int count, Rgb colour)
{
    const ColourBlock block = colourBlock(colour);
    int i = 0;
    for (; i + 16 <= count; i += 16) {
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(loadBytes(cells + i), _mm_setzero_si128())) == 0xFFFF) continue;
        mixBlock(pixels + i * 3, under + i * 3, block, cells + i);
    }
    for (; i < count; ++i)
        if (cells[i]) mixPixel(pixels + i * 3, under + i * 3, block.bytes, cells[i]);
}

static uint8_t unmarked(uint8_t cell)
{
    return cell == CELL_MARK ? 1 : (uint8_t)(cell & ~CELL_MARK);
}

void mixMarkedRow(uint8_t* pixels, uint8_t* cells, int count, Rgb colour, int opacity)
{
    const ColourBlock block = colourBlock(colour);
    const __m128i mark = _mm_set1_epi8((char)CELL_MARK), strength = _mm_set1_epi8((char)opacity);
    int i = 0;
    for (; i + 16 <= count; i += 16) {
        const __m128i cell = loadBytes(cells + i);
        if (_mm_movemask_epi8(cell) == 0) continue;
        const __m128i fresh = _mm_cmpeq_epi8(cell, mark);
        uint8_t weights[16];
        storeBytes(weights, _mm_and_si128(fresh, strength));
        if (_mm_movemask_epi8(fresh)) mixBlock(pixels + i * 3, pixels + i * 3, block, weights);
        storeBytes(cells + i, _mm_or_si128(_mm_andnot_si128(mark, cell), _mm_and_si128(fresh, _mm_set1_epi8(1))));
    }
    for (; i < count; ++i) {
        if (cells[i] == CELL_MARK) mixPixel(pixels + i * 3, pixels + i * 3, block.bytes, opacity);
        cells[i] = unmarked(cells[i]);
    }
}
