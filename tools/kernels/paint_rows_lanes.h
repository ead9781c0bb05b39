// The painting of rows, told once for vectors of any width; see image/pixels/vector_words.h.
//
// No ordinary header: a source includes this after the words of its width, and after WholeBlock or other places
// of its own for which there are
//   loadCells(at, place)              the cells of VECTOR_SIZE pixels, storeCells(at, cells, place)
//   loadPart(at, part, place)         the third of their bytes, and storePart(at, bytes, part, place)
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
