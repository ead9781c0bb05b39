// The painting of rows, told once for vectors of any width; see image/pixels/vector_words.h.
//
// No ordinary header: a source includes this after the words of its width, and after WholeBlock or other places
// of its own for which there are
//   loadCells(at, place)              the cells of VECTOR_SIZE pixels, storeCells(at, cells, place)
//   anyInPart(part, place)            whether there is any byte of theirs in that third
//   loadPart(at, part, place)         the third of their bytes, and storePart(at, bytes, part, place)
// and loadFirst(at, count), the first bytes of a vector alone.
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

LANES_INLINE bool anyInPart(int, const WholeBlock&)
{
    return true;
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
    for (int part = 0; part < 3 && anyInPart(part, place); ++part) {
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
    // Pixels that the stroke meets for the first time are still those under it, which then need not be fetched.
    if (allZero(covered)) under = pixels;
    mixCells(pixels, under, colour, pickWhereZero(above, above, wanted), place);
}

// ---- blur. The words of a block lie as lowBytes and highBytes give them; only the rows of one width read them.

struct Sums {
    Vector low, high;
};

LANES_INLINE Sums sumsOf(Vector left, Vector here, Vector right)
{
    const Vector low = lowBytes(here), high = highBytes(here);
    return {add(add(lowBytes(left), lowBytes(right)), add(low, low)),
            add(add(highBytes(left), highBytes(right)), add(high, high))};
}

LANES_INLINE Sums sumsAt(const uint8_t* at)
{
    return sumsOf(load(at - 3), load(at), load(at + 3));
}

LANES_INLINE Sums firstSumsAt(const uint8_t* at, int count)
{
    return sumsOf(loadFirst(at - 3, count), loadFirst(at, count), loadFirst(at + 3, count));
}

LANES_INLINE Sums loadSums(const uint16_t* at)
{
    return {load((const uint8_t*)at), load((const uint8_t*)at + VECTOR_SIZE)};
}

LANES_INLINE void storeSums(uint16_t* at, const Sums& sums)
{
    store((uint8_t*)at, sums.low);
    store((uint8_t*)at + VECTOR_SIZE, sums.high);
}

LANES_INLINE void sumBlocks(uint16_t* sums, const uint8_t* line, size_t count)
{
    size_t i = 0;
    for (; i + VECTOR_SIZE <= count; i += VECTOR_SIZE)
        storeSums(sums + i, sumsAt(line + i));
    if (i < count) storeSums(sums + i, firstSumsAt(line + i, (int)(count - i)));
}

LANES_INLINE Vector blurredWords(Vector above, Vector line, Vector below)
{
    return shiftRight<4>(add(add(add(above, below), add(line, line)), all(8)));
}

// A vector of blurred bytes; the sums below it take the place of those above.
LANES_INLINE Vector blurredBytes(const SmoothSums& sums, size_t at, const Sums& below)
{
    const Sums above = loadSums(sums.above + at), line = loadSums(sums.line + at);
    storeSums(sums.above + at, below);
    return packBytes(blurredWords(above.low, line.low, below.low), blurredWords(above.high, line.high, below.high));
}

// The vectors of a block, from byte `at` of the line on. What is wanted is three times each cell.
LANES_INLINE void blurBlock(uint8_t* line, const uint8_t* below, const SmoothSums& sums, size_t at, Vector cells,
                            int opacity)
{
    Vector wanted[3];
    threeTimesEach(cells, wanted);
    for (int part = 0; part < 3; ++part, at += VECTOR_SIZE) {
        const Vector before = load(line + at);
        Vector blurred = blurredBytes(sums, at, sumsAt(below + at));
        if (opacity != 100) blurred = mixedBytes(before, blurred, allBytes(opacity));
        store(line + at, pickWhereZero(wanted[part], before, blurred));
    }
}

// The same where all cells are wanted.
LANES_INLINE void blurAll(uint8_t* line, const uint8_t* below, const SmoothSums& sums, size_t at, int opacity)
{
    for (int part = 0; part < 3; ++part, at += VECTOR_SIZE) {
        const Vector blurred = blurredBytes(sums, at, sumsAt(below + at));
        store(line + at, opacity == 100 ? blurred : mixedBytes(load(line + at), blurred, allBytes(opacity)));
    }
}

// Whole blocks; returns how many pixels they are.
LANES_INLINE int blurBlocks(uint8_t* line, const uint8_t* below, const SmoothSums& sums, const uint8_t* cells,
                            int count, int opacity)
{
    const int block = (int)VECTOR_SIZE;
    int i = 0;
    for (; i + block <= count; i += block) {
        const Vector wanted = load(cells + i);
        if (noneZero(wanted))
            blurAll(line, below, sums, (size_t)i * 3, opacity);
        else
            blurBlock(line, below, sums, (size_t)i * 3, wanted, opacity);
    }
    return i;
}

// Less than a block, by way of a copy for the vectors without masks.
template <typename Place>
LANES_INLINE void blurRest(uint8_t* line, const uint8_t* below, const SmoothSums& sums, size_t at, int rest,
                           Vector cells, int opacity, Place place)
{
    Vector wanted[3];
    threeTimesEach(cells, wanted);
    for (int part = 0; part < 3; ++part) {
        const int done = part * (int)VECTOR_SIZE, left = rest * 3 - done;
        if (left <= 0) return;
        const Vector before = loadPart(line, part, place);
        const Sums beneath =
            left >= (int)VECTOR_SIZE ? sumsAt(below + at + done) : firstSumsAt(below + at + done, left);
        Vector blurred = blurredBytes(sums, at + (size_t)done, beneath);
        if (opacity != 100) blurred = mixedBytes(before, blurred, allBytes(opacity));
        storePart(line, pickWhereZero(wanted[part], before, blurred), part, place);
    }
}
