#include "host/codecs/bitmap_file.h"

#include "host/codecs/color_bridge.h"

#include <algorithm>
#include <cstring>

constexpr int FILE_HEAD = 14, PLAIN_HEAD = 40, SPACE_HEAD = 108, PROFILE_HEAD = 124;
constexpr uint32_t EMBEDDED_PROFILE = 0x4D424544, LARGEST_PROFILE = 16 << 20;
constexpr int64_t COMFORTABLE_BAND = 1 << 20;

struct BitmapHead {
    uint8_t bytes[FILE_HEAD + PROFILE_HEAD];

    uint32_t number(int place) const
    {
        const uint8_t* at = bytes + place;
        return (uint32_t)at[0] | (uint32_t)at[1] << 8 | (uint32_t)at[2] << 16 | (uint32_t)at[3] << 24;
    }
    // Of the part behind the file's own head, by the names of its fields.
    uint32_t size() const { return number(FILE_HEAD); }
    int64_t width() const { return (int32_t)number(FILE_HEAD + 4); }
    int64_t height() const { return (int32_t)number(FILE_HEAD + 8); }
    uint32_t bits() const { return number(FILE_HEAD + 14) & 0xFFFF; }
    uint32_t compression() const { return number(FILE_HEAD + 16); }
    uint32_t mask(int channel) const { return number(FILE_HEAD + PLAIN_HEAD + 4 * (channel == 3 ? 3 : 2 - channel)); }
    bool hasMasks() const { return compression() == 3; }
    bool hasAlphaMask() const { return hasMasks() && size() >= SPACE_HEAD && mask(3); }
};

static int seekTo(FILE* file, int64_t place)
{
#ifdef _WIN32
    return _fseeki64(file, place, SEEK_SET);
#else
    return fseeko(file, (off_t)place, SEEK_SET);
#endif
}

static bool readHead(FILE* file, BitmapHead* head)
{
    *head = {};
    const size_t size = fread(head->bytes, 1, sizeof head->bytes, file);
    return size >= FILE_HEAD + PLAIN_HEAD && memcmp(head->bytes, "BM", 2) == 0 && head->size() >= PLAIN_HEAD &&
           size >= FILE_HEAD + std::min<size_t>(head->size(), PROFILE_HEAD);
}

static std::vector<uint8_t> profileIn(FILE* file, const BitmapHead& head)
{
    std::vector<uint8_t> bytes;
    if (head.size() < PROFILE_HEAD || head.number(FILE_HEAD + 56) != EMBEDDED_PROFILE) return bytes;
    const uint32_t size = head.number(FILE_HEAD + 116);
    const bool there = seekTo(file, FILE_HEAD + (int64_t)head.number(FILE_HEAD + 112)) == 0;
    // Piece by piece: the size is what the file says.
    for (uint8_t part[4096]; there && size <= LARGEST_PROFILE && bytes.size() < size;) {
        const size_t got = fread(part, 1, std::min<size_t>(sizeof part, size - bytes.size()), file);
        bytes.insert(bytes.end(), part, part + got);
        if (got == 0) break;
    }
    if (bytes.size() != size) bytes.clear();
    return bytes;
}

// The byte that a mask stands for; -1 when it is not one byte.
static int placeOf(uint32_t mask)
{
    for (int place = 0; place < 4; ++place)
        if (mask == 0xFFu << 8 * place) return place;
    return -1;
}

static bool placeChannels(const BitmapHead& head, BitmapLayout* layout)
{
    layout->pixel = (int)head.bits() / 8;
    for (int channel = 0; channel < 4; ++channel)
        layout->place[channel] = head.hasMasks() ? placeOf(head.mask(channel)) : channel;
    if (!head.hasAlphaMask()) layout->place[3] = -1;
    const int* place = layout->place;
    if (head.bits() == 24) return head.compression() == 0;
    const bool bytes = std::min({place[0], place[1], place[2]}) >= 0 && (place[3] >= 0 || !head.hasAlphaMask());
    const bool apart = place[0] != place[1] && place[0] != place[2] && place[1] != place[2];
    return head.bits() == 32 && (head.compression() == 0 || head.hasMasks()) && bytes && apart;
}

static bool findPixels(const BitmapHead& head, BitmapLayout* layout)
{
    const int64_t height = head.height() < 0 ? -head.height() : head.height();
    layout->at = head.number(10);
    if (!packedPhotoSize(head.width(), height) || layout->at < FILE_HEAD + (int64_t)head.size()) return false;
    layout->width = (int)head.width();
    layout->height = (int)height;
    layout->topDown = head.height() < 0;
    layout->stride = (head.width() * layout->pixel + 3) / 4 * 4;
    return true;
}

static long resolution(uint32_t pelsPerMetre)
{
    return pelsPerMetre < 40000000 ? (long)pelsPerMetre : 0;
}

bool openBitmap(FILE* file, BitmapLayout* layout, PhotoFacts* facts)
{
    BitmapHead head;
    const bool sound = readHead(file, &head);
    if (sound) {
        facts->palette = head.bits() <= 8;
        facts->alpha = head.hasAlphaMask();
        facts->profile = profileIn(file, head);
        layout->across = resolution(head.number(FILE_HEAD + 24));
        layout->down = resolution(head.number(FILE_HEAD + 28));
        facts->inPlace = placeChannels(head, layout) && findPixels(head, layout);
    }
    rewind(file);
    return sound && facts->inPlace;
}

void showBitmapRow(const BitmapLayout& layout, const uint8_t* native, uint8_t* bgra)
{
    for (int x = 0; x < layout.width; ++x, native += layout.pixel, bgra += 4)
        for (int channel = 0; channel < 4; ++channel)
            bgra[channel] = layout.place[channel] < 0 ? 255 : native[layout.place[channel]];
}

static PhotoStatus handRows(FILE* file, const BitmapLayout& layout, const ColorBridge& bridge, const RowSink& sink)
{
    const int most = (int)std::clamp<int64_t>(COMFORTABLE_BAND / layout.stride, 1, 64);
    const LargeBytes native = allocateLarge((uint64_t)layout.stride * most);
    const LargeBytes band = allocateLarge((uint64_t)layout.width * 4 * most);
    if (!native || !band) return PhotoStatus::TooLarge;
    const ptrdiff_t stride = (ptrdiff_t)layout.width * 4;
    for (int row = 0; row < layout.height; row += most) {
        const int count = std::min(most, layout.height - row);
        const int64_t first = layout.topDown ? row : layout.height - row - count;
        const size_t size = (size_t)layout.stride * count;
        if (seekTo(file, layout.at + first * layout.stride) != 0 || fread(native.get(), 1, size, file) != size)
            return PhotoStatus::NotAPhoto;
        for (int i = 0; i < count; ++i) {
            uint8_t* shown = band.get() + i * stride;
            showBitmapRow(layout, native.get() + (layout.topDown ? i : count - 1 - i) * layout.stride, shown);
            showColors(bridge, shown, layout.width);
        }
        if (!sink.take(sink.context, band.get(), stride, row, count)) return PhotoStatus::NotAPhoto;
    }
    return PhotoStatus::Ok;
}

PhotoStatus readBitmap(FILE* file, const BitmapLayout& layout, const RowSink& sink, const PhotoFacts& facts)
{
    const PhotoStatus status = sink.begin(sink.context, {layout.width, layout.height, 1, layout.across, layout.down});
    if (status != PhotoStatus::Ok) return status;
    ColorBridge bridge = openBridge(facts.profile, 0, false);
    const PhotoStatus read = handRows(file, layout, bridge, sink);
    closeBridge(&bridge);
    return read;
}
