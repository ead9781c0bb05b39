// Selection files that lie: cut short, with every field corrupted, with random damage. A reader may refuse
// them or read something; it must stay inside the file, inside the image that it fills, and within an
// amount of work and memory that the file's own size bounds.
#include <gtest/gtest.h>

#include <random>

#include "tests/reference/memory_file.h"
#include "tests/reference/tiff_reference.h"

// Opens the bytes as the library does. True when the file could be loaded whole.
static bool tryFile(const std::vector<uint8_t>& bytes)
{
    MemoryFile file;
    file.bytes = bytes;
    SelectionDescription d = {};
    bool loaded = false;
    if (readSelectionDescription(file.source(), &d)) {
        // The directory is read in one pass, with a handful of values outside it.
        EXPECT_LE(file.bytesRead, bytes.size() + 64);
        EXPECT_GE(d.width, 1);
        EXPECT_GE(d.height, 1);
        EXPECT_LE((uint64_t)d.width * (uint64_t)d.height * 3, bytes.size());
        EXPECT_LE((uint64_t)rowStride(d.width, 24) * (uint64_t)d.height, bytes.size() * 2);
        MemoryImage image(d.width, d.height), thumbnail(THUMBNAIL_WIDTH, THUMBNAIL_HEIGHT);
        readThumbnailPixels(file.source(), d, thumbnail.view);
        loaded = readSelectionPixels(file.source(), d, image.view);
        EXPECT_TRUE(loaded) << "an accepted file holds its pixels";
        if (hasMaskBytes(file.source(), d)) {
            EXPECT_TRUE(readSelectionMaskPixels(file.source(), d, image.view));
        } else {
            EXPECT_FALSE(readSelectionMaskPixels(file.source(), d, image.view));
            loaded = false;
        }
    }
    EXPECT_FALSE(file.outside) << "asked for bytes behind the file's end";
    EXPECT_LE(file.bytesRead, bytes.size() * 4 + 4096);
    return loaded;
}

static void put(std::vector<uint8_t>& bytes, size_t at, uint32_t value, int size, bool bigEndian)
{
    for (int i = 0; i < size; ++i) {
        if (at + i < bytes.size()) bytes[at + i] = (uint8_t)(value >> (8 * (bigEndian ? size - 1 - i : i)));
    }
}

static const uint32_t telling[] = {0,          1,          2,          3,          7,          8,          9,
                                   16,         255,        256,        32767,      32768,      65535,      65536,
                                   0x10001,    0x5555555,  0x55555555, 0x55555556, 0x7FFFFFFE, 0x7FFFFFFF, 0x80000000,
                                   0xAAAAAAAB, 0xFFFFFF00, 0xFFFFFFF8, 0xFFFFFFFD, 0xFFFFFFFE, 0xFFFFFFFF};

// Offsets of the first directory's parts.
constexpr size_t FIRST_DIRECTORY = 8, FIRST_ENTRY = 10, NEXT_DIRECTORY = 166;

TEST(SelectionTiffFuzz, CutAtEveryByte)
{
    for (const bool bigEndian : {false, true}) {
        const std::vector<uint8_t> whole = referenceTiff(randomSelection(1, 17, 9), bigEndian);
        ASSERT_TRUE(tryFile(whole));
        for (size_t length = 0; length < whole.size(); ++length) {
            const bool loaded = tryFile(std::vector<uint8_t>(whole.begin(), whole.begin() + (ptrdiff_t)length));
            EXPECT_EQ(loaded, length >= 856) << "pixels and mask end at 856; length " << length;
        }
    }
}

TEST(SelectionTiffFuzz, EveryFieldWithEveryTellingValue)
{
    for (const bool bigEndian : {false, true}) {
        const std::vector<uint8_t> whole = referenceTiff(randomSelection(2, 17, 9), bigEndian);
        for (const uint32_t value : telling) {
            for (size_t at = 0; at < 192; at += 2) {
                for (const int size : {1, 2, 4}) {
                    std::vector<uint8_t> bytes = whole;
                    put(bytes, at, value, size, bigEndian);
                    tryFile(bytes);
                }
            }
        }
    }
}

// Two fields that lie together: sizes, counts and offsets that agree with each other but not with the file.
TEST(SelectionTiffFuzz, PairsOfLyingEntries)
{
    const std::vector<uint8_t> whole = referenceTiff(randomSelection(3, 17, 9));
    for (int first = 0; first < 13; ++first) {
        for (int second = 0; second < 13; ++second) {
            for (const uint32_t a : telling) {
                std::vector<uint8_t> bytes = whole;
                put(bytes, FIRST_ENTRY + (size_t)first * 12 + 2, 4, 2, false);
                put(bytes, FIRST_ENTRY + (size_t)second * 12 + 2, 4, 2, false);
                put(bytes, FIRST_ENTRY + (size_t)first * 12 + 8, a, 4, false);
                put(bytes, FIRST_ENTRY + (size_t)second * 12 + 8, telling[(a ^ (uint32_t)first) % 27], 4, false);
                tryFile(bytes);
                put(bytes, FIRST_ENTRY + (size_t)first * 12 + 4, a, 4, false);
                tryFile(bytes);
            }
        }
    }
}

TEST(SelectionTiffFuzz, AWidthTimesHeightThatOverflows32BitsIsRefused)
{
    // 0x10001 x 0x10000 x 3 is 0x30000 in 32 bits: a file of that size must not pass for the picture.
    std::vector<uint8_t> bytes = referenceTiff(randomSelection(4, 256, 256));
    const auto setLong = [&](int index, uint32_t value) {
        put(bytes, FIRST_ENTRY + (size_t)index * 12 + 2, 4, 2, false);
        put(bytes, FIRST_ENTRY + (size_t)index * 12 + 8, value, 4, false);
    };
    setLong(1, 0x10001);
    setLong(2, 0x10000);
    setLong(9, 0x30000);
    EXPECT_FALSE(tryFile(bytes));
    setLong(1, 0x80000001);
    setLong(2, 0x80000001);
    EXPECT_FALSE(tryFile(bytes));
}

TEST(SelectionTiffFuzz, HugeCountsCostNothing)
{
    for (int index = 0; index < 13; ++index) {
        std::vector<uint8_t> bytes = referenceTiff(randomSelection(5, 17, 9));
        put(bytes, FIRST_ENTRY + (size_t)index * 12 + 4, 0xFFFFFFFF, 4, false);
        MemoryFile file;
        file.bytes = bytes;
        SelectionDescription d;
        readSelectionDescription(file.source(), &d);
        EXPECT_LE(file.bytesRead, 512u) << "entry " << index;
    }
}

TEST(SelectionTiffFuzz, ADirectoryOf65535EntriesIsReadOnce)
{
    std::vector<uint8_t> bytes = referenceTiff(randomSelection(6, 17, 9));
    const uint32_t directory = (uint32_t)bytes.size();
    put(bytes, 4, directory, 4, false);
    bytes.push_back(0xFF);
    bytes.push_back(0xFF);
    for (int i = 0; i < 65535; ++i) {  // the same thirteen entries again and again
        const size_t from = FIRST_ENTRY + (size_t)(i % 13) * 12;
        for (size_t k = 0; k < 12; ++k)
            bytes.push_back(bytes[from + k]);
    }
    for (const uint8_t b : {1, 0, 0, 0})
        bytes.push_back(b);
    MemoryFile file;
    file.bytes = bytes;
    SelectionDescription d;
    EXPECT_TRUE(readSelectionDescription(file.source(), &d));
    EXPECT_LE(file.reads, 1100u);
    EXPECT_LE(file.bytesRead, bytes.size());
    EXPECT_TRUE(tryFile(bytes));
}

TEST(SelectionTiffFuzz, EveryNeededTagMustBeThere)
{
    const struct {
        int index;
        bool needed;
    } tags[] = {{0, false}, {1, true},  {2, true}, {3, true},   {4, true},   {5, true},  {6, true},
                {7, true},  {8, false}, {9, true}, {10, false}, {11, false}, {12, false}};
    for (const auto& tag : tags) {
        std::vector<uint8_t> bytes = referenceTiff(randomSelection(7, 17, 9));
        put(bytes, FIRST_ENTRY + (size_t)tag.index * 12, 40000, 2, false);
        EXPECT_EQ(tryFile(bytes), !tag.needed) << "entry " << tag.index;
    }
}

TEST(SelectionTiffFuzz, ZeroSizesWrongImagesAndASingleImageAreRefused)
{
    const struct {
        size_t at;
        uint32_t value;
        int size;
    } changes[] = {
        {0, 'X', 1},                      // neither byte order
        {4, 0, 4},                        // no directory
        {NEXT_DIRECTORY, 0, 4},           // a single image
        {FIRST_ENTRY + 8, 1, 4},          // not the main image
        {FIRST_ENTRY + 12 + 8, 0, 2},     // no width
        {FIRST_ENTRY + 24 + 8, 0, 2},     // no height
        {FIRST_ENTRY + 36 + 4, 1, 4},     // one sample
        {170, 16, 2},                     // 16 bits
        {FIRST_ENTRY + 48 + 8, 5, 2},     // compressed
        {FIRST_ENTRY + 60 + 8, 1, 2},     // gray
        {FIRST_ENTRY + 72 + 4, 2, 4},     // two strips
        {FIRST_ENTRY + 84 + 8, 4, 2},     // four samples
        {FIRST_ENTRY + 108 + 8, 460, 4},  // a byte too many
        {FIRST_ENTRY + 120 + 2, 4, 2},    // a resolution that is no rational
        {FIRST_ENTRY + 132 + 4, 2, 4},    // two vertical resolutions
        {FIRST_DIRECTORY, 0xFFFF, 2},     // more entries than the file holds
    };
    for (const auto& change : changes) {
        std::vector<uint8_t> bytes = referenceTiff(randomSelection(8, 17, 9));
        put(bytes, change.at, change.value, change.size, false);
        EXPECT_FALSE(tryFile(bytes)) << "offset " << change.at;
    }
}

TEST(SelectionTiffFuzz, RandomDamage)
{
    std::mt19937 random(77);
    const std::vector<uint8_t> files[] = {
        referenceTiff(randomSelection(9, 17, 9)), referenceTiff(randomSelection(9, 17, 9), true),
        referenceTiff(randomSelection(10, 1, 1)), referenceTiff(randomSelection(11, 100, 10))};
    for (int n = 0; n < 20000; ++n) {
        std::vector<uint8_t> bytes = files[random() % 4];
        for (unsigned changes = 1 + random() % 6; changes > 0; --changes) {
            const size_t within = random() % 8 ? 192 : bytes.size();
            const uint32_t value = random() % 2 ? telling[random() % 27] : (uint32_t)random();
            put(bytes, random() % within, value, 1 << random() % 3, random() % 2);
        }
        if (random() % 8 == 0) bytes.resize(random() % bytes.size());
        tryFile(bytes);
    }
}
