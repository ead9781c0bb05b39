#include "tests/session/hostile_files.h"

#include <algorithm>

static const uint32_t telling[] = {0,          1,          2,          3,          4,          7,          8,
                                   16,         255,        256,        32766,      32767,      32768,      65535,
                                   65536,      0x10001,    0x55555555, 0x55555556, 0x7FFFFFFF, 0x80000000, 0xAAAAAAAB,
                                   0xFFFFFF00, 0xFFFFFFF8, 0xFFFFFFFE, 0xFFFFFFFF};
constexpr size_t TELLING_COUNT = sizeof telling / sizeof *telling;

constexpr size_t HEAD_BYTES = 192, FIRST_ENTRY = 10, ENTRY_BYTES = 12, ENTRY_COUNT = 13;
constexpr int WIDTH_ENTRY = 1, LENGTH_ENTRY = 2, STRIP_BYTES_ENTRY = 9;

static bool isBigEndian(const FileBytes& bytes)
{
    return !bytes.empty() && bytes[0] == 'M';
}

static void put(FileBytes& bytes, size_t at, uint32_t value, size_t size)
{
    for (size_t i = 0; i < size; ++i) {
        const size_t shift = 8 * (isBigEndian(bytes) ? size - 1 - i : i);
        if (at + i < bytes.size()) bytes[at + i] = (uint8_t)(value >> shift);
    }
}

static void putLongEntry(FileBytes& bytes, size_t entry, uint32_t value)
{
    put(bytes, FIRST_ENTRY + entry * ENTRY_BYTES + 2, 4, 2);
    put(bytes, FIRST_ENTRY + entry * ENTRY_BYTES + 8, value, 4);
}

HostileFiles::HostileFiles(unsigned seed) : random(seed)
{
    const int sizes[][2] = {{60, 40}, {17, 9}, {1, 1}, {100, 10}, {3, 120}};
    for (const auto& size : sizes)
        for (const bool bigEndian : {false, true})
            sound.push_back(referenceTiff(randomSelection(seed++, size[0], size[1]), bigEndian));
}

void HostileFiles::cut(FileBytes& bytes)
{
    bytes.resize(below(bytes.size() + 1));
}

void HostileFiles::turnBits(FileBytes& bytes)
{
    const size_t end = below(2) && bytes.size() > HEAD_BYTES ? HEAD_BYTES : bytes.size();
    for (unsigned n = 1 + below(40); n > 0 && end > 0; --n)
        bytes[below(end)] ^= (uint8_t)(1 << below(8));
}

// Type, count or value of some entries.
void HostileFiles::lieInEntries(FileBytes& bytes)
{
    for (unsigned n = 1 + below(3); n > 0; --n) {
        const size_t entry = FIRST_ENTRY + below(ENTRY_COUNT) * ENTRY_BYTES;
        const uint32_t value = below(3) ? telling[below(TELLING_COUNT)] : (uint32_t)random();
        switch (below(4)) {
        case 0: put(bytes, entry + 2, value, 2); break;
        case 1: put(bytes, entry + 4, value, 4); break;
        default: put(bytes, entry + 8, value, 4); break;
        }
    }
}

// Width, length and bytes of the strip that fit together, in 32 bits at least.
void HostileFiles::lieAboutSizes(FileBytes& bytes)
{
    static const uint32_t sizes[] = {1, 2, 40, 41, 255, 4096, 32766, 32767, 65536, 0x10001, 0x40000000, 0x80000001};
    const size_t count = sizeof sizes / sizeof *sizes;
    const uint32_t width = sizes[below(count)], height = sizes[below(count)];
    putLongEntry(bytes, WIDTH_ENTRY, width);
    putLongEntry(bytes, LENGTH_ENTRY, height);
    putLongEntry(bytes, STRIP_BYTES_ENTRY, width * height * 3);
    if ((uint64_t)width * height < 20000 && below(2)) bytes.resize(bytes.size() + width * height * 4, 0x55);
}

void HostileFiles::moveDirectory(FileBytes& bytes)
{
    put(bytes, 4, below(2) ? below(bytes.size() + 8) : telling[below(TELLING_COUNT)], 4);
    if (below(2)) put(bytes, 8, telling[below(TELLING_COUNT)], 2);  // how many entries
}

FileBytes HostileFiles::next()
{
    FileBytes bytes = sound[below(sound.size())];
    switch (below(7)) {
    case 0: cut(bytes); break;
    case 1: turnBits(bytes); break;
    case 2: lieInEntries(bytes); break;
    case 3: lieAboutSizes(bytes); break;
    case 4: moveDirectory(bytes); break;
    case 5: bytes[below(2)] ^= 'I' ^ 'M'; break;
    default:
        turnBits(bytes);
        lieInEntries(bytes);
        cut(bytes);
    }
    return bytes;
}

typedef bool (*MaskRule)(int x, int y, int width, int height);

static bool checkerboard(int x, int y, int, int)
{
    return (x + y) % 2 == 0;
}

static bool scattered(int x, int y, int, int)
{
    return x % 3 == 0 && y % 3 == 0;
}

static bool comb(int x, int y, int, int height)
{
    return x % 2 == 0 || y == height / 2;
}

static bool frameOnly(int x, int y, int width, int height)
{
    return x == 0 || y == 0 || x == width - 1 || y == height - 1;
}

static bool everything(int, int, int, int)
{
    return true;
}

// Square rings, one pixel wide, two apart, each joined to the next in one corner.
static bool spiral(int x, int y, int width, int height)
{
    const int ring = std::min(std::min(x, width - 1 - x), std::min(y, height - 1 - y));
    return ring % 2 == 0 || (x == ring && y == ring);
}

static bool noise(int x, int y, int, int)
{
    return ((unsigned)x * 2654435761u ^ (unsigned)y * 2246822519u) >> 13 & 1;
}

std::vector<ReferenceSelection> selectionsWithOddMasks(int width, int height)
{
    std::vector<ReferenceSelection> selections;
    for (MaskRule rule : {checkerboard, scattered, comb, frameOnly, everything, spiral, noise}) {
        ReferenceSelection selection = randomSelection((unsigned)selections.size() + 70, width, height);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const uint8_t value = rule(x, y, width, height) ? 0 : 255;
                selection.mask.at(x, y) = {value, value, value};
            }
        selections.push_back(selection);
    }
    return selections;
}
