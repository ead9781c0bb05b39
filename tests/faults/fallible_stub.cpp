#include "tests/faults/fallible_stub.h"

#include <cstring>

static int change(const Fallible& entry, const intptr_t* arguments, intptr_t result)
{
    switch (entry.rule) {
    case MAKES: return result != entry.failure;
    case RELEASES: return -(result != 0);
    case RELEASES_FIRST: return -(arguments[0] && !result);
    case FREES: return -(arguments[0] != 0);
    case RESIZES: return !arguments[0] && result;
    case GIVES_SECOND: return -(arguments[1] && result);
    case NO_ENTRY: break;
    }
    return 0;
}

void bookCall(const Fallible& entry, const intptr_t* arguments, intptr_t result)
{
    const int by = change(entry, arguments, result);
    book(entry.kind, by);
    if (by && entry.kind == MEMORY_BLOCKS) bookBlock((HGLOBAL)(by > 0 ? result : arguments[0]), by);
}

// Wide enough for a character of either width.
void emptyBuffer(const Fallible& entry, const intptr_t* arguments)
{
    if (entry.emptied >= 0 && arguments[entry.emptied]) memset((void*)arguments[entry.emptied], 0, sizeof(wchar_t));
}
