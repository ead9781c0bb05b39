// Rows of an image lie far apart in memory, where the processor does not look ahead by itself.
#pragma once

#include <cstddef>

// Asks for the bytes of a row that is worked on soon. A hint: any address will do.
inline void fetchAhead(const void* row, size_t count)
{
#ifdef __GNUC__
    for (size_t i = 0; i < count; i += 64)
        __builtin_prefetch((const char*)row + i);
#else
    (void)row;
    (void)count;
#endif
}
