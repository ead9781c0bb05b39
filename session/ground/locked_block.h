// A movable global memory block that stays locked until the scope ends.
//
//     const LockedBlock block(handle);
//     if (!block) return;      // a null handle, or the system could not lock it
#pragma once

#include <windows.h>

struct LockedBlock {
    explicit LockedBlock(HGLOBAL handle);
    ~LockedBlock();
    LockedBlock(const LockedBlock&) = delete;
    LockedBlock& operator=(const LockedBlock&) = delete;
    explicit operator bool() const { return bytes != nullptr; }

    const HGLOBAL handle;
    void* const bytes;  // first byte of the block; null when it is not locked
};
