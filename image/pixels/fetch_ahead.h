// Rows of an image lie far apart in memory, where the processor does not look ahead by itself.
#pragma once

#include <cstddef>
#include <cstdint>

// Of a long row the processor foresees the rest by itself; to ask for that, too, would cost a fifth of a large blur.
constexpr size_t FORESEEN_FROM = 512;

// Asks for the bytes of a row that is worked on soon, by the lines of the cache that they lie in. A hint: any address
// will do.
inline void fetchAhead(const void* row, size_t count)
{
#ifdef __GNUC__
    // Nothing, so that GCC does not take a function that only asks ahead for one without effects and drop its calls.
    __asm__ volatile("");
    const char* const end = (const char*)row + (count < FORESEEN_FROM ? count : FORESEEN_FROM);
    for (const char* at = (const char*)((uintptr_t)row & ~(uintptr_t)63); at < end; at += 64)
        __builtin_prefetch(at);
#else
    (void)row;
    (void)count;
#endif
}

// Asks for the beginnings of the pages of memory in which a long row lies that is read next, far from the one before.
// From there on the processor foresees the rest, to the page's end. A row within one page is short.
inline void fetchPages(const void* row, size_t count)
{
#ifdef __GNUC__
    __asm__ volatile("");  // as above
    constexpr uintptr_t PAGE = 4096, BEGINNING = 1024;
    if (count < PAGE) return;
    const char* const end = (const char*)row + count;
    for (const char* at = (const char*)row; at < end; at = (const char*)(((uintptr_t)at | (PAGE - 1)) + 1))
        for (uintptr_t k = 0; k < BEGINNING; k += 64)
            __builtin_prefetch(at + k);
#else
    (void)row;
    (void)count;
#endif
}
