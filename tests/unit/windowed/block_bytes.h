#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

// The bytes of a memory block, for comparing whole bitmaps; none when there is no block.
inline std::vector<uint8_t> bytesOf(HGLOBAL block)
{
    const uint8_t* const bytes = (const uint8_t*)GlobalLock(block);
    if (!bytes) return {};
    const std::vector<uint8_t> copy(bytes, bytes + GlobalSize(block));
    GlobalUnlock(block);
    return copy;
}
