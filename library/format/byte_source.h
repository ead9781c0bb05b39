// Reading pieces of a file whose length is known and whose bytes are not to be trusted.
#pragma once

#include <cstdint>

// A file of which any piece can be read.
struct ByteSource {
    uint64_t size;  // bytes in the file
    // Reads exactly `count` bytes at `offset`; both lie inside `size`. False when that fails.
    bool (*read)(void* context, uint64_t offset, void* bytes, uint32_t count);
    void* context;
};

// In 64 bits, so that no offset and count of a file can overflow.
bool liesInside(const ByteSource& source, uint64_t offset, uint64_t count);

// Asks for nothing outside the file. False then, and when the reading fails.
bool readAt(const ByteSource& source, uint64_t offset, void* bytes, uint32_t count);
