#include "host/codecs/bitmap_facts.h"

#include <climits>
#include <cstring>
#include <windows.h>

constexpr DWORD EMBEDDED_PROFILE = 0x4D424544;  // 'MBED'
constexpr DWORD LARGEST_PROFILE = 16 << 20;

static std::vector<uint8_t> bytesAt(FILE* file, uint64_t place, DWORD size)
{
    std::vector<uint8_t> bytes(size <= LARGEST_PROFILE ? size : 0);
    const bool there = place <= LONG_MAX && fseek(file, (long)place, SEEK_SET) == 0;
    bytes.resize(there ? fread(bytes.data(), 1, bytes.size(), file) : 0);
    if (bytes.size() != size) bytes.clear();
    return bytes;
}

void collectBitmapFacts(FILE* file, PhotoFacts* facts)
{
    struct {
        char mark[2];
        uint8_t rest[12];
    } head;
    BITMAPV5HEADER info = {};
    if (fread(&head, 1, sizeof head, file) == sizeof head && memcmp(head.mark, "BM", 2) == 0 &&
        fread(&info, 1, sizeof info, file) >= sizeof(BITMAPINFOHEADER)) {
        facts->palette = info.bV5BitCount <= 8;
        facts->alpha =
            info.bV5Size >= sizeof(BITMAPV4HEADER) && info.bV5Compression == BI_BITFIELDS && info.bV5AlphaMask;
        if (info.bV5Size >= sizeof info && info.bV5CSType == EMBEDDED_PROFILE)
            facts->profile = bytesAt(file, sizeof head + (uint64_t)info.bV5ProfileData, info.bV5ProfileSize);
    }
    rewind(file);
}
