#include "tools/kernels/stroke_rows.h"

#include <algorithm>

#include "tools/kernels/mix_vectors.h"
#include "tools/kernels/pixel_mix.h"

// No operation here does more when it is applied twice, so the last block of a row simply overlaps the
// one before it; only rows shorter than a block go cell by cell.
constexpr int BLOCK = 16;

void raiseCells(uint8_t* cells, const uint8_t* weights, int count)
{
    if (count < BLOCK) {
        for (int i = 0; i < count; ++i)
            cells[i] = std::max(cells[i], weights[i]);
        return;
    }
    for (int i = 0; i < count; i += BLOCK) {
        const int at = std::min(i, count - BLOCK);
        storeBytes(cells + at, _mm_max_epu8(loadBytes(cells + at), loadBytes(weights + at)));
    }
}

// 24 words, one for each byte of eight pixels.
struct EightPixels {
    __m128i words[3];
};

static EightPixels eightTimes(Rgb colour)
{
    const PixelBytes pixel = pixelBytes(colour);
    uint16_t words[24];
    for (int k = 0; k < 24; ++k)
        words[k] = pixel.byte[k % 3];
    return EightPixels{{loadBytes(words), loadBytes(words + 8), loadBytes(words + 16)}};
}

// Words w0 ... w7, one a pixel, become w0 w0 w0 w1 w1 w1 w2 w2, w2 w3 w3 w3 w4 w4 w4 w5, w5 w5 w6 w6 w6 w7 w7 w7.
static EightPixels threeTimesEach(__m128i w)
{
    const __m128i first = _mm_unpacklo_epi64(_mm_shufflelo_epi16(w, _MM_SHUFFLE(1, 0, 0, 0)),
                                             _mm_shufflelo_epi16(w, _MM_SHUFFLE(2, 2, 1, 1)));
    const __m128i middle =
        _mm_shufflehi_epi16(_mm_shufflelo_epi16(w, _MM_SHUFFLE(3, 3, 3, 2)), _MM_SHUFFLE(1, 0, 0, 0));
    const __m128i last = _mm_unpackhi_epi64(_mm_shufflehi_epi16(w, _MM_SHUFFLE(2, 2, 1, 1)),
                                            _mm_shufflehi_epi16(w, _MM_SHUFFLE(3, 3, 3, 2)));
    return EightPixels{{first, middle, last}};
}

static __m128i choose(__m128i first, __m128i second, __m128i takeFirst)
{
    return _mm_or_si128(_mm_and_si128(takeFirst, first), _mm_andnot_si128(takeFirst, second));
}

// Eight pixels with one weight each; where that is 0 the pixel keeps its bytes.
static void mixEight(uint8_t* pixels, const uint8_t* under, const EightPixels& colour, __m128i weights)
{
    const __m128i zero = _mm_setzero_si128();
    const EightPixels w = threeTimesEach(weights);
    const __m128i u01 = loadBytes(under), u2 = _mm_loadl_epi64((const __m128i*)(under + 16));
    const __m128i mixed01 = _mm_packus_epi16(mixWords(_mm_unpacklo_epi8(u01, zero), colour.words[0], w.words[0]),
                                             mixWords(_mm_unpackhi_epi8(u01, zero), colour.words[1], w.words[1]));
    const __m128i mixed2 = _mm_packus_epi16(mixWords(_mm_unpacklo_epi8(u2, zero), colour.words[2], w.words[2]), zero);
    const __m128i keep01 = _mm_cmpeq_epi8(_mm_packus_epi16(w.words[0], w.words[1]), zero);
    const __m128i keep2 = _mm_cmpeq_epi8(_mm_packus_epi16(w.words[2], zero), zero);
    storeBytes(pixels, choose(loadBytes(pixels), mixed01, keep01));
    uint8_t* const rest = pixels + 16;
    _mm_storel_epi64((__m128i*)rest, choose(_mm_loadl_epi64((const __m128i*)rest), mixed2, keep2));
}

static void mixBlock(uint8_t* pixels, const uint8_t* under, const EightPixels& colour, __m128i weights)
{
    const __m128i zero = _mm_setzero_si128();
    mixEight(pixels, under, colour, _mm_unpacklo_epi8(weights, zero));
    mixEight(pixels + 24, under + 24, colour, _mm_unpackhi_epi8(weights, zero));
}

static __m128i zeroCells(__m128i cells)
{
    return _mm_cmpeq_epi8(cells, _mm_setzero_si128());
}

void blendCoveredRow(uint8_t* pixels, const uint8_t* under, const uint8_t* cells, int count, Rgb colour)
{
    if (count < BLOCK) {
        const PixelBytes over = pixelBytes(colour);
        for (int i = 0; i < count; ++i)
            if (cells[i]) mixPixel(pixels + i * 3, under + i * 3, over.byte, cells[i]);
        return;
    }
    const EightPixels over = eightTimes(colour);
    for (int i = 0; i < count; i += BLOCK) {
        const int at = std::min(i, count - BLOCK);
        const __m128i weights = loadBytes(cells + at);
        if (_mm_movemask_epi8(zeroCells(weights)) == 0xFFFF) continue;
        mixBlock(pixels + at * 3, under + at * 3, over, weights);
    }
}

void mixFreshRow(uint8_t* pixels, uint8_t* cells, int count, Rgb colour, int opacity)
{
    if (count < BLOCK) {
        const PixelBytes over = pixelBytes(colour);
        for (int i = 0; i < count; ++i) {
            if (cells[i]) continue;
            mixPixel(pixels + i * 3, pixels + i * 3, over.byte, opacity);
            cells[i] = 1;
        }
        return;
    }
    const EightPixels over = eightTimes(colour);
    for (int i = 0; i < count; i += BLOCK) {
        const int at = std::min(i, count - BLOCK);
        const __m128i covered = loadBytes(cells + at), fresh = zeroCells(covered);
        if (_mm_movemask_epi8(fresh) == 0) continue;
        mixBlock(pixels + at * 3, pixels + at * 3, over, _mm_and_si128(fresh, _mm_set1_epi8((char)opacity)));
        storeBytes(cells + at, _mm_or_si128(covered, _mm_and_si128(fresh, _mm_set1_epi8(1))));
    }
}
