// Blocks too large for the caches, told once for vectors of any width; see image/pixels/vector_words.h. What is written
// passes the caches by.
//
// No ordinary header: included by one source a folder and width. What is written for what is read is said by a type of
// its own, How, for which there is changed(how, bytes).
#pragma once

constexpr size_t PAGE_BYTES = 4096, PAGES_IN_TURN = 4, LINE_BYTES = 64;

struct Unchanged {};

LANES_INLINE Vector changed(const Unchanged&, Vector bytes)
{
    return bytes;
}

// A line of the caches as a whole: half a line written past them costs as much as a whole one.
template <typename How>
LANES_INLINE void streamLine(uint8_t* to, const uint8_t* from, const How& how)
{
    for (size_t i = 0; i < LINE_BYTES; i += VECTOR_SIZE)
        stream(to + i, changed(how, load(from + i)));
}

// A line of each page in turn: the processor looks ahead in each, but never beyond the page's end.
template <typename How>
LANES_INLINE void streamPages(uint8_t* to, const uint8_t* from, const How& how)
{
    for (size_t line = 0; line < PAGE_BYTES; line += LINE_BYTES)
        for (size_t page = 0; page < PAGES_IN_TURN; ++page)
            streamLine(to + page * PAGE_BYTES + line, from + page * PAGE_BYTES + line, how);
}

// The pages of a block, behind bytes up to a line of the target and before those that are left at its end.
struct PagesInside {
    size_t head, end;
};

template <typename How>
LANES_INLINE PagesInside streamPagesInside(uint8_t* to, const uint8_t* from, size_t count, const How& how)
{
    constexpr size_t several = PAGES_IN_TURN * PAGE_BYTES;
    const size_t upToLine = (size_t)(-(uintptr_t)to % LINE_BYTES), head = upToLine < count ? upToLine : count;
    size_t done = head;
    for (; count - done >= several; done += several)
        streamPages(to + done, from + done, how);
    _mm_sfence();
    return {head, done};
}
