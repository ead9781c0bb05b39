// The painting of rows, told once for vectors of any width; see image/pixels/vector_words.h.
//
// No ordinary header: a source includes this after the words of its width, and after WholeBlock or other places
// of its own for which there are
//   loadCells(at, place)              the cells of VECTOR_SIZE pixels, storeCells(at, cells, place)
//   loadPart(at, part, place)         the third of their bytes, and storePart(at, bytes, part, place)
// and of a vector's bytes [from, to) alone
//   loadBetween(at, from, to), storeBetween(at, bytes, from, to)
#pragma once

struct WholeBlock {};

LANES_INLINE Vector loadCells(const uint8_t* at, const WholeBlock&)
{
    return load(at);
}

LANES_INLINE void storeCells(uint8_t* at, Vector cells, const WholeBlock&)
{
    store(at, cells);
}

LANES_INLINE Vector loadPart(const uint8_t* at, int part, const WholeBlock&)
{
    return load(at + part * (int)VECTOR_SIZE);
}

LANES_INLINE void storePart(uint8_t* at, Vector bytes, int part, const WholeBlock&)
{
    store(at + part * (int)VECTOR_SIZE, bytes);
}

// A sum of at most 25500 divided by 100: the multiplication by 5243 / 2^19 gives the exact quotient.
LANES_INLINE Vector hundredth(Vector sum)
{
    return shiftRight<3>(multiplyHigh(sum, all(5243)));
}

// (under * (100 - weight) + over * weight) / 100 of bytes; weights 0 to 100.
LANES_INLINE Vector mixedBytes(Vector under, Vector over, Vector weight)
{
    const Vector rest = subtractBytes(allBytes(100), weight);
    return packBytes(hundredth(weighedLow(under, over, rest, weight)),
                     hundredth(weighedHigh(under, over, rest, weight)));
}

// Pixels with one weight each; where that is 0 the pixel keeps its bytes.
template <typename Place>
LANES_INLINE void mixCells(uint8_t* pixels, const uint8_t* under, const ColourRow& colour, Vector cells, Place place)
{
    Vector weights[3];
    threeTimesEach(cells, weights);
    for (int part = 0; part < 3; ++part) {
        const Vector over = load(colour.bytes + part * (int)VECTOR_SIZE);
        const Vector mixed = mixedBytes(loadPart(under, part, place), over, weights[part]);
        storePart(pixels, pickWhereZero(weights[part], loadPart(pixels, part, place), mixed), part, place);
    }
}

template <typename Place>
LANES_INLINE void mixFreshBlock(uint8_t* pixels, uint8_t* cells, const ColourRow& colour, Vector opacity, Place place)
{
    const Vector covered = loadCells(cells, place);
    if (noneZero(covered)) return;
    storeCells(cells, pickWhereZero(covered, allBytes(1), covered), place);
    mixCells(pixels, pixels, colour, pickWhereZero(covered, opacity, allBytes(0)), place);
}

template <typename Place>
LANES_INLINE void raiseBlock(uint8_t* pixels, const uint8_t* under, uint8_t* cells, const uint8_t* weights,
                             const ColourRow& colour, Place place)
{
    const Vector covered = loadCells(cells, place), wanted = loadCells(weights, place);
    const Vector above = subtractBytesDownToZero(wanted, covered);
    if (allZero(above)) return;
    storeCells(cells, largerBytes(covered, wanted), place);
    mixCells(pixels, under, colour, pickWhereZero(above, above, wanted), place);
}

// Mixing a byte twice would show, so what is left of a row goes to the narrower way.
LANES_INLINE size_t mixWholeVectors(uint8_t* pixels, const uint8_t* over, size_t count, int opacity)
{
    const Vector weight = allBytes(opacity);
    size_t i = 0;
    for (; i + VECTOR_SIZE <= count; i += VECTOR_SIZE)
        store(pixels + i, mixedBytes(load(pixels + i), load(over + i), weight));
    return i;
}

// ---- blur. The words of a block lie as lowBytes and highBytes give them; only blurLine reads them.

LANES_INLINE void sumBlock(uint16_t* sums, Vector left, Vector here, Vector right)
{
    const Vector low = lowBytes(here), high = highBytes(here);
    store((uint8_t*)sums, add(add(lowBytes(left), lowBytes(right)), add(low, low)));
    store((uint8_t*)sums + VECTOR_SIZE, add(add(highBytes(left), highBytes(right)), add(high, high)));
}

LANES_INLINE void sumBlocks(uint16_t* sums, const uint8_t* line, size_t count)
{
    size_t i = 0;
    for (; i + VECTOR_SIZE <= count; i += VECTOR_SIZE)
        sumBlock(sums + i, load(line + i - 3), load(line + i), load(line + i + 3));
    const int rest = (int)(count - i);
    if (rest == 0) return;
    const uint8_t* const last = line + i;
    sumBlock(sums + i, loadBetween(last - 3, 0, rest), loadBetween(last, 0, rest), loadBetween(last + 3, 0, rest));
}

LANES_INLINE Vector blurredWords(const SmoothSums& sums, size_t word)
{
    const Vector above = load((const uint8_t*)(sums.above + word)), line = load((const uint8_t*)(sums.line + word));
    const Vector below = load((const uint8_t*)(sums.below + word));
    return shiftRight<4>(add(add(add(above, below), add(line, line)), all(8)));
}

LANES_INLINE Vector blurredBlock(const SmoothSums& sums, size_t at)
{
    return packBytes(blurredWords(sums, at), blurredWords(sums, at + VECTOR_SIZE / 2));
}

LANES_INLINE void blurWhole(uint8_t* line, const SmoothSums& sums, size_t at, int opacity)
{
    const Vector blurred = blurredBlock(sums, at);
    store(line + at, opacity == 100 ? blurred : mixedBytes(load(line + at), blurred, allBytes(opacity)));
}

LANES_INLINE void blurBetween(uint8_t* line, const SmoothSums& sums, size_t at, int from, int to, int opacity)
{
    Vector blurred = blurredBlock(sums, at);
    if (opacity != 100) blurred = mixedBytes(loadBetween(line + at, from, to), blurred, allBytes(opacity));
    storeBetween(line + at, blurred, from, to);
}

LANES_INLINE void blurBlocks(uint8_t* line, const SmoothSums& sums, size_t first, size_t end, int opacity)
{
    for (size_t at = first / VECTOR_SIZE * VECTOR_SIZE; at < end; at += VECTOR_SIZE) {
        if (at >= first && at + VECTOR_SIZE <= end) {
            blurWhole(line, sums, at, opacity);
        } else {
            const int from = at < first ? (int)(first - at) : 0;
            const int to = end - at < VECTOR_SIZE ? (int)(end - at) : (int)VECTOR_SIZE;
            blurBetween(line, sums, at, from, to, opacity);
        }
    }
}
