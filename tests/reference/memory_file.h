// A file in memory behind the library's source and sink, counting what is asked of it.
#pragma once

#include <cstring>
#include <vector>

#include "library/format/tiff_reader.h"
#include "library/format/tiff_writer.h"

struct MemoryFile {
    std::vector<uint8_t> bytes;
    uint64_t reads = 0, bytesRead = 0;
    uint64_t bytesTaken = UINT64_MAX;  // writing fails beyond this many
    bool outside = false;              // something asked for bytes that are not there

    ByteSource source() { return {bytes.size(), read, this}; }
    ByteSink sink() { return {write, this}; }

    static bool read(void* context, uint64_t offset, void* to, uint32_t count)
    {
        MemoryFile* const file = (MemoryFile*)context;
        ++file->reads;
        file->bytesRead += count;
        if (offset > file->bytes.size() || count > file->bytes.size() - offset) {
            file->outside = true;
            return false;
        }
        if (count) memcpy(to, file->bytes.data() + offset, count);
        return true;
    }
    static bool write(void* context, const void* from, uint32_t count)
    {
        MemoryFile* const file = (MemoryFile*)context;
        if (count > file->bytesTaken - file->bytes.size()) return false;
        file->bytes.insert(file->bytes.end(), (const uint8_t*)from, (const uint8_t*)from + count);
        return true;
    }
};

// A 24-bit image of exactly the memory that its rows need, bottom-up, so that a checker sees every byte outside.
struct MemoryImage {
    std::vector<uint8_t> rows;
    BitsView view;

    MemoryImage(int width, int height) : rows((size_t)(rowStride(width, 24) * height), 0xCC)
    {
        const ptrdiff_t stride = (ptrdiff_t)rowStride(width, 24);
        view = {rows.data() + stride * (height - 1), -stride, width, height};
    }
    MemoryImage(const MemoryImage&) = delete;
    MemoryImage& operator=(const MemoryImage&) = delete;
};
