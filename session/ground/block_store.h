// The large memory blocks of a session, in use and kept for the next use: image/kept_blocks.h takes and releases them.
#pragma once

#include <windows.h>

struct BlockList {
    static constexpr int ROOM = 32;
    struct Entry {
        HGLOBAL block;
        SIZE_T size;  // as asked for
        SIZE_T real;  // as the system said
        int owners;
    };
    Entry entries[ROOM];
    int count;
    SIZE_T bytes;
};

struct BlockStore {
    BlockList used, kept;  // owns the kept ones
    SIZE_T mostUsed;       // bytes in use at one time
};
