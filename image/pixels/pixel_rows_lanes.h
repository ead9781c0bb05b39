// The search through masks and the copy of large blocks, told once for vectors of any width; see
// image/pixels/vector_words.h.
//
// No ordinary header: included by one source a width, behind image/pixels/past_caches_lanes.h.
#pragma once

// A bit for each red byte of the vector that begins `part` vectors behind a pixel's first byte.
constexpr ByteBits redBits(int part)
{
    ByteBits bits = 0;
    for (int i = 0; i < (int)VECTOR_SIZE; ++i)
        bits |= (ByteBits)((ByteBits)((part * (int)VECTOR_SIZE + i) % 3 == 2) << i);
    return bits;
}

// Among VECTOR_SIZE pixels the first one that is looked for, or -1.
LANES_INLINE int findInBlock(const uint8_t* mask, bool inside)
{
    constexpr ByteBits reds[3] = {redBits(0), redBits(1), redBits(2)};
    const ByteBits other = inside ? (ByteBits)0 : (ByteBits) ~(ByteBits)0;
    for (int part = 0; part < 3; ++part) {
        const ByteBits found = (ByteBits)((zeroBytes(load(mask + part * (int)VECTOR_SIZE)) ^ other) & reds[part]);
        if (found) return (part * (int)VECTOR_SIZE + __builtin_ctzll(found)) / 3;
    }
    return -1;
}

VECTOR_FUNCTION ptrdiff_t findMask(const uint8_t* mask, ptrdiff_t x, ptrdiff_t width, bool inside)
{
    const ptrdiff_t many = (ptrdiff_t)VECTOR_SIZE;
    for (; x + many <= width; x += many) {
        const int found = findInBlock(mask + x * 3, inside);
        if (found >= 0) return x + found;
    }
    return findMaskPlain(mask, x, width, inside);
}

VECTOR_FUNCTION void copyLarge(uint8_t* to, const uint8_t* from, size_t count)
{
    const PagesInside pages = streamPagesInside(to, from, count, Unchanged());
    memcpy(to, from, pages.head);
    memcpy(to + pages.end, from + pages.end, count - pages.end);
}
