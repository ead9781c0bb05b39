#include "host/codecs/tiff_directory.h"

#include <algorithm>
#include <cstring>
#include <vector>

enum DirectoryTag {
    WIDTH = 256,
    HEIGHT = 257,
    FILL_ORDER = 266,
    STRIP_OFFSETS = 273,
    ORIENTATION = 274,
    ROWS_PER_STRIP = 278,
    STRIP_SIZES = 279,
    ACROSS = 282,
    DOWN = 283,
    TILE_WIDTH = 322,
    TILE_HEIGHT = 323,
    TILE_OFFSETS = 324,
    TILE_SIZES = 325,
    XMP = 700,
    EXIF_DIRECTORY = 34665,
    EXIF_WIDTH = 40962,
    EXIF_HEIGHT = 40963,
};

constexpr size_t MOST_ENTRIES = 65535;
constexpr int MOST_PAGES = 65535;

struct TiffBytes {
    FILE* file;
    bool little, large;  // large: 8 bytes a place

    int offset() const { return large ? 8 : 4; }
    int count() const { return large ? 8 : 2; }
    int entry() const { return large ? 20 : 12; }
};

using Entry = std::vector<uint8_t>;

struct ImageDirectory {
    std::vector<Entry> entries;
    uint64_t entriesAt = 0, next = 0, nextAt = 0;
};

static uint64_t number(const TiffBytes& tiff, const uint8_t* at, int size)
{
    uint64_t value = 0;
    for (int i = 0; i < size; ++i)
        value = value << 8 | at[tiff.little ? size - 1 - i : i];
    return value;
}

static void store(const TiffBytes& tiff, uint64_t value, int size, uint8_t* at)
{
    for (int i = 0; i < size; ++i)
        at[i] = (uint8_t)(value >> 8 * (tiff.little ? i : size - 1 - i));
}

static bool seekTo(FILE* file, uint64_t place, int from)
{
#ifdef _WIN32
    return _fseeki64(file, (int64_t)place, from) == 0;
#else
    return fseeko(file, (off_t)place, from) == 0;
#endif
}

static uint64_t sizeOf(FILE* file)
{
#ifdef _WIN32
    return seekTo(file, 0, SEEK_END) ? (uint64_t)_ftelli64(file) : 0;
#else
    return seekTo(file, 0, SEEK_END) ? (uint64_t)ftello(file) : 0;
#endif
}

static bool readAt(FILE* file, uint64_t place, uint8_t* bytes, size_t size)
{
    return seekTo(file, place, SEEK_SET) && fread(bytes, 1, size, file) == size;
}

static bool writeAt(FILE* file, uint64_t place, const uint8_t* bytes, size_t size)
{
    return seekTo(file, place, SEEK_SET) && fwrite(bytes, 1, size, file) == size;
}

static bool readNumber(const TiffBytes& tiff, uint64_t place, int size, uint64_t* value)
{
    uint8_t bytes[8];
    if (!readAt(tiff.file, place, bytes, (size_t)size)) return false;
    *value = number(tiff, bytes, size);
    return true;
}

static bool writeNumber(const TiffBytes& tiff, uint64_t place, int size, uint64_t value)
{
    uint8_t bytes[8];
    store(tiff, value, size, bytes);
    return writeAt(tiff.file, place, bytes, (size_t)size);
}

static bool readDirectory(const TiffBytes& tiff, uint64_t at, ImageDirectory* directory)
{
    uint64_t count = 0;
    if (!readNumber(tiff, at, tiff.count(), &count) || count > MOST_ENTRIES) return false;
    directory->entriesAt = at + (uint64_t)tiff.count();
    directory->entries.assign((size_t)count, Entry((size_t)tiff.entry()));
    for (Entry& entry : directory->entries)
        if (fread(entry.data(), 1, entry.size(), tiff.file) != entry.size()) return false;
    directory->nextAt = directory->entriesAt + count * (uint64_t)tiff.entry();
    return readNumber(tiff, directory->nextAt, tiff.offset(), &directory->next);
}

static int tagOf(const TiffBytes& tiff, const Entry& entry)
{
    return (int)number(tiff, entry.data(), 2);
}

static const Entry* find(const TiffBytes& tiff, const ImageDirectory& directory, int tag)
{
    for (const Entry& entry : directory.entries)
        if (tagOf(tiff, entry) == tag) return &entry;
    return nullptr;
}

// What the turned page brings along, and what of the old one means its pixels only.
static bool isOfTurned(int tag)
{
    static const int tags[] = {WIDTH, HEIGHT, FILL_ORDER, STRIP_OFFSETS, ORIENTATION, ROWS_PER_STRIP, STRIP_SIZES, XMP};
    return std::find(std::begin(tags), std::end(tags), tag) != std::end(tags);
}

static bool isOfOldPixels(int tag)
{
    static const int tags[] = {TILE_WIDTH, TILE_HEIGHT, TILE_OFFSETS, TILE_SIZES};
    return std::find(std::begin(tags), std::end(tags), tag) != std::end(tags);
}

static std::vector<Entry> entriesTogether(const TiffBytes& tiff, const ImageDirectory& old,
                                          const ImageDirectory& turned, bool sidesSwapped)
{
    std::vector<Entry> entries;
    for (Entry entry : old.entries) {
        const int tag = tagOf(tiff, entry);
        if (isOfOldPixels(tag) || (isOfTurned(tag) && find(tiff, turned, tag))) continue;
        if (sidesSwapped && (tag == ACROSS || tag == DOWN)) store(tiff, tag == ACROSS ? DOWN : ACROSS, 2, entry.data());
        entries.push_back(entry);
    }
    for (const Entry& entry : turned.entries)
        if (isOfTurned(tagOf(tiff, entry))) entries.push_back(entry);
    std::sort(entries.begin(), entries.end(),
              [&](const Entry& one, const Entry& other) { return tagOf(tiff, one) < tagOf(tiff, other); });
    return entries;
}

static bool writeDirectory(const TiffBytes& tiff, const std::vector<Entry>& entries, uint64_t next, uint64_t* at)
{
    *at = (sizeOf(tiff.file) + 7) / 8 * 8;
    std::vector<uint8_t> bytes((size_t)tiff.count());
    store(tiff, entries.size(), tiff.count(), bytes.data());
    for (const Entry& entry : entries)
        bytes.insert(bytes.end(), entry.begin(), entry.end());
    bytes.resize(bytes.size() + (size_t)tiff.offset());
    store(tiff, next, tiff.offset(), bytes.data() + bytes.size() - tiff.offset());
    return (tiff.large || *at + bytes.size() <= UINT32_MAX) && writeAt(tiff.file, *at, bytes.data(), bytes.size());
}

// The camera's note of the size.
static bool swapCameraSides(const TiffBytes& tiff, const ImageDirectory& page)
{
    const Entry* link = find(tiff, page, EXIF_DIRECTORY);
    ImageDirectory camera;
    if (!link ||
        !readDirectory(tiff, number(tiff, link->data() + tiff.entry() - tiff.offset(), tiff.offset()), &camera))
        return true;
    for (Entry& entry : camera.entries) {
        const int tag = tagOf(tiff, entry);
        if (tag != EXIF_WIDTH && tag != EXIF_HEIGHT) continue;
        const Entry* other = find(tiff, camera, tag == EXIF_WIDTH ? EXIF_HEIGHT : EXIF_WIDTH);
        if (!other) continue;
        Entry swapped = *other;
        memcpy(swapped.data(), entry.data(), 2);
        const uint64_t at = camera.entriesAt + (uint64_t)(&entry - camera.entries.data()) * (uint64_t)tiff.entry();
        if (!writeAt(tiff.file, at, swapped.data(), swapped.size())) return false;
    }
    return true;
}

static bool openTiffBytes(FILE* file, TiffBytes* tiff)
{
    uint8_t head[4];
    if (!readAt(file, 0, head, sizeof head)) return false;
    *tiff = {file, head[0] == 'I', false};
    tiff->large = number(*tiff, head + 2, 2) == 43;
    return true;
}

bool pagesEnd(FILE* file)
{
    TiffBytes tiff;
    uint64_t place = 0, count = 0;
    if (!openTiffBytes(file, &tiff) || !readNumber(tiff, tiff.large ? 8 : 4, tiff.offset(), &place)) return false;
    for (int page = 0; page < MOST_PAGES && place; ++page) {
        if (!readNumber(tiff, place, tiff.count(), &count) || count > MOST_ENTRIES) return false;
        const uint64_t nextAt = place + (uint64_t)tiff.count() + count * (uint64_t)tiff.entry();
        if (!readNumber(tiff, nextAt, tiff.offset(), &place)) return false;
    }
    return place == 0;
}

// The last page of the chain, and where the link to it is.
static bool findLast(const TiffBytes& tiff, const ImageDirectory& first, ImageDirectory* last, uint64_t* linkAt)
{
    *linkAt = first.nextAt;
    uint64_t place = first.next;
    for (int page = 0; page < MOST_PAGES && place; ++page) {
        if (!readDirectory(tiff, place, last)) return false;
        if (!last->next) return true;
        *linkAt = last->nextAt;
        place = last->next;
    }
    return false;
}

bool putTurnedPageFirst(FILE* file, bool sidesSwapped)
{
    TiffBytes tiff;
    uint64_t firstAt = 0, linkAt = 0, place = 0;
    ImageDirectory first, turned;
    if (!openTiffBytes(file, &tiff)) return false;
    const uint64_t head = tiff.large ? 8 : 4;
    if (!readNumber(tiff, head, tiff.offset(), &firstAt) || !readDirectory(tiff, firstAt, &first)) return false;
    if (!findLast(tiff, first, &turned, &linkAt)) return false;
    const uint64_t next = linkAt == first.nextAt ? 0 : first.next;
    const std::vector<Entry> entries = entriesTogether(tiff, first, turned, sidesSwapped);
    return (!sidesSwapped || swapCameraSides(tiff, first)) && writeNumber(tiff, linkAt, tiff.offset(), 0) &&
           writeDirectory(tiff, entries, next, &place) && writeNumber(tiff, head, tiff.offset(), place);
}

bool wipeBytes(FILE* file, uint64_t at, uint64_t size)
{
    const std::vector<uint8_t> nothing(1 << 16);
    const uint64_t end = std::min(at + size, sizeOf(file));
    if (!seekTo(file, at, SEEK_SET)) return false;
    for (uint64_t left = end > at ? end - at : 0; left > 0;) {
        const size_t part = (size_t)std::min<uint64_t>(left, nothing.size());
        if (fwrite(nothing.data(), 1, part, file) != part) return false;
        left -= part;
    }
    return true;
}
