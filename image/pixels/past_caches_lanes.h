// The copy of large blocks, told once for vectors of any width; see image/pixels/vector_words.h.
//
// No ordinary header: included by the same files as image/pixels/pixel_rows_lanes.h.
#pragma once

constexpr size_t PAGE_BYTES = 4096, PAGES_IN_TURN = 4, LINE_BYTES = 64;

// A line of the caches as a whole: half a line written past them costs as much as a whole one.
LANES_INLINE void streamLine(uint8_t* to, const uint8_t* from)
{
    for (size_t i = 0; i < LINE_BYTES; i += VECTOR_SIZE)
        stream(to + i, load(from + i));
}

// A line of each page in turn: the processor looks ahead in each, but never beyond the page's end.
LANES_INLINE void copyPages(uint8_t* to, const uint8_t* from)
{
    for (size_t line = 0; line < PAGE_BYTES; line += LINE_BYTES)
        for (size_t page = 0; page < PAGES_IN_TURN; ++page)
            streamLine(to + page * PAGE_BYTES + line, from + page * PAGE_BYTES + line);
}

VECTOR_FUNCTION void copyLarge(uint8_t* to, const uint8_t* from, size_t count)
{
    const size_t upToLine = (size_t)(-(uintptr_t)to % LINE_BYTES), head = upToLine < count ? upToLine : count;
    memcpy(to, from, head);
    size_t done = head;
    for (; count - done >= PAGES_IN_TURN * PAGE_BYTES; done += PAGES_IN_TURN * PAGE_BYTES)
        copyPages(to + done, from + done);
    _mm_sfence();
    memcpy(to + done, from + done, count - done);
}
