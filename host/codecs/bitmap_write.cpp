#include "host/codecs/bitmap_file.h"

#include "host/codecs/color_bridge.h"

#include <algorithm>
#include <cstring>
#include <windows.h>

// One row on its way from the original into the new file.
struct BitmapRow {
    std::vector<uint8_t> native, shown, edited, stored;
};

// What follows the headers is the picture as the editor has it.
static PhotoStatus writePlain(FILE* file, const EditedPhoto& photo)
{
    const DWORD size = packedPhotoSize(photo.width, photo.height), heads = sizeof(BITMAPINFOHEADER);
    const BITMAPFILEHEADER head = {0x4D42, (DWORD)sizeof head + size, 0, 0, (DWORD)sizeof head + heads};
    const bool written = fwrite(&head, sizeof head, 1, file) == 1 && fwrite(photo.bits - heads, 1, size, file) == size;
    if (photo.rowsGathered) *photo.rowsGathered += photo.height;
    return written ? PhotoStatus::Ok : PhotoStatus::CannotWrite;
}

// size < 0: all that is left.
static bool copyBytes(FILE* from, FILE* to, int64_t size)
{
    std::vector<uint8_t> part(1 << 16);
    for (int64_t left = size; left != 0;) {
        const size_t wanted = left < 0 ? part.size() : (size_t)std::min<int64_t>(left, (int64_t)part.size());
        const size_t got = fread(part.data(), 1, wanted, from);
        if (fwrite(part.data(), 1, got, to) != got) return false;
        if (got < wanted) return left < 0 && !ferror(from);
        if (left > 0) left -= (int64_t)got;
    }
    return true;
}

static bool looksEdited(const uint8_t* shown, const uint8_t* edited)
{
    for (int channel = 0; channel < 3; ++channel)
        if (overWhite(shown[channel], shown[3]) != edited[channel]) return true;
    return false;
}

static void editRow(const BitmapLayout& layout, const ColorBridge& bridge, BitmapRow* row)
{
    showBitmapRow(layout, row->native.data(), row->shown.data());
    showColors(bridge, row->shown.data(), layout.width);
    for (int x = 0; x < layout.width; ++x)
        for (int channel = 0; channel < 3; ++channel)
            row->stored[(size_t)x * 3 + channel] =
                fromOverWhite(row->edited[(size_t)x * 3 + channel], row->shown[(size_t)x * 4 + 3]);
    storeColors(bridge, row->stored.data(), layout.width);
    for (int x = 0; x < layout.width; ++x) {
        if (!looksEdited(&row->shown[(size_t)x * 4], &row->edited[(size_t)x * 3])) continue;
        for (int channel = 0; channel < 3; ++channel)
            row->native[(size_t)x * layout.pixel + layout.place[channel]] = row->stored[(size_t)x * 3 + channel];
    }
}

static PhotoStatus editRows(FILE* output, FILE* original, const BitmapLayout& layout, const EditedPhoto& photo,
                            const ColorBridge& bridge)
{
    const size_t width = (size_t)layout.width, stride = (size_t)layout.stride;
    BitmapRow row = {std::vector<uint8_t>(stride), std::vector<uint8_t>(width * 4), std::vector<uint8_t>(width * 3),
                     std::vector<uint8_t>(width * 3)};
    const UprightTarget upright = editedInFile(photo, 1);
    for (int i = 0; i < layout.height; ++i) {
        if (fread(row.native.data(), 1, stride, original) != stride) return PhotoStatus::CannotEncode;
        gatherRows(upright, layout.topDown ? i : layout.height - 1 - i, 1, row.edited.data(), 0);
        editRow(layout, bridge, &row);
        if (fwrite(row.native.data(), 1, stride, output) != stride) return PhotoStatus::CannotWrite;
    }
    return PhotoStatus::Ok;
}

PhotoStatus writeBitmap(FILE* output, const EditedPhoto& photo, const PhotoFacts& facts, FILE* original)
{
    BitmapLayout layout;
    PhotoFacts again;
    if (!original || !facts.inPlace) return writePlain(output, photo);
    if (!openBitmap(original, &layout, &again) || layout.width != photo.width || layout.height != photo.height)
        return PhotoStatus::CannotEncode;
    if (!copyBytes(original, output, layout.at)) return PhotoStatus::CannotWrite;
    ColorBridge bridge = openBridge(again.profile, 0, false);
    const PhotoStatus status = editRows(output, original, layout, photo, bridge);
    closeBridge(&bridge);
    if (status != PhotoStatus::Ok) return status;
    return copyBytes(original, output, -1) ? PhotoStatus::Ok : PhotoStatus::CannotWrite;
}
