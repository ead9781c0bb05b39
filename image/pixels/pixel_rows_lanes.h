// The search through masks, told once for vectors of any width; see image/pixels/vector_words.h. The file that
// includes this has RED_BYTES besides: three vectors' worth of bytes, 255 where a pixel's red lies, else 0.
#pragma once

// Whether "the mask's red is 0" differs from `inside` for all of VECTOR_SIZE pixels.
LANES_INLINE bool noneIs(const uint8_t* mask, bool inside)
{
    const Vector reds[3] = {load(RED_BYTES), load(RED_BYTES + VECTOR_SIZE), load(RED_BYTES + 2 * VECTOR_SIZE)};
    const Vector a = load(mask), b = load(mask + VECTOR_SIZE), c = load(mask + 2 * VECTOR_SIZE);
    if (!inside) return allZero(either(either(both(a, reds[0]), both(b, reds[1])), both(c, reds[2])));
    // The other bytes are made 255, so that the smallest one is 0 only where a red is.
    const Vector others = allBytes(255);
    const Vector smallest =
        smallerBytes(smallerBytes(either(a, subtractBytes(others, reds[0])), either(b, subtractBytes(others, reds[1]))),
                     either(c, subtractBytes(others, reds[2])));
    return noneZero(smallest);
}

LANES_INLINE ptrdiff_t findMask(const uint8_t* mask, ptrdiff_t x, ptrdiff_t width, bool inside)
{
    const ptrdiff_t many = (ptrdiff_t)VECTOR_SIZE;
    while (x + many <= width && noneIs(mask + x * 3, inside))
        x += many;
    return findMaskPlain(mask, x, width, inside);
}
