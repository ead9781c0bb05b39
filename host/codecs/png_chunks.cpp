#include "host/codecs/png_chunks.h"

#include "host/codecs/thumbnail.h"
#include "host/photo/exif_edit.h"

#include <algorithm>
#include <zlib.h>

static uint32_t numberAt(const uint8_t* bytes)
{
    return (uint32_t)bytes[0] << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
}

static void updateChunk(PngChunk* chunk, const EditedPhoto& photo, bool swapped)
{
    if (chunk->name == "eXIf") refreshExif(chunk->bytes.data(), chunk->bytes.size(), photo);
    if (chunk->name == "iTXt") noteUprightInXmp(chunk->bytes.data(), chunk->bytes.size());
    if (chunk->name == "pHYs" && chunk->bytes.size() == 9 && swapped)
        std::swap_ranges(chunk->bytes.begin(), chunk->bytes.begin() + 4, chunk->bytes.begin() + 4);
}

// What says something about the kind of pixels that there was.
static bool fitsKindOnly(const PngChunk& chunk)
{
    return chunk.name == "bKGD" || chunk.name == "hIST" || chunk.name == "sBIT";
}

// Colour descriptions stand before the palette, everything else behind it.
static bool beforePalette(const PngChunk& chunk)
{
    static const char* const names[] = {"gAMA", "cHRM", "sRGB", "iCCP", "sBIT", "cICP", "mDCv", "cLLi"};
    return std::any_of(std::begin(names), std::end(names), [&](const char* name) { return chunk.name == name; });
}

static PngPlace placeOf(const PngChunk& chunk)
{
    if (chunk.behindPixels) return PngPlace::BehindPixels;
    return beforePalette(chunk) ? PngPlace::BeforePalette : PngPlace::BeforePixels;
}

std::vector<PngChunk> readPngChunks(FILE* file)
{
    static const char* const ownOrAnimation[] = {"IHDR", "PLTE", "tRNS", "IDAT", "IEND", "acTL", "fcTL", "fdAT"};
    std::vector<PngChunk> chunks;
    bool behind = false;
    uint8_t head[8];
    fseek(file, 8, SEEK_SET);
    while (fread(head, 1, 8, file) == 8) {
        const uint32_t size = numberAt(head);
        PngChunk chunk = {std::string((const char*)head + 4, 4), {}, behind};
        behind = behind || chunk.name == "IDAT";
        if (size > 0x7FFFFFFF || chunk.name == "IEND") break;
        const bool wanted = std::none_of(std::begin(ownOrAnimation), std::end(ownOrAnimation),
                                         [&](const char* name) { return chunk.name == name; });
        if (wanted && size < (256u << 20)) {
            chunk.bytes.resize(size);
            if (fread(chunk.bytes.data(), 1, size, file) != size || fseek(file, 4, SEEK_CUR) != 0) break;
            chunks.push_back(chunk);
        } else if (_fseeki64(file, (long long)size + 4, SEEK_CUR) != 0) {
            break;
        }
    }
    fseek(file, 0, SEEK_SET);
    return chunks;
}

std::vector<PngChunk> pngChunksOf(const PhotoFacts& facts, const EditedPhoto& photo)
{
    std::vector<PngChunk> chunks;
    if (!facts.profile.empty() && !facts.grey && !facts.inks) {
        uLongf size = compressBound((uLong)facts.profile.size());
        std::vector<uint8_t> packed(size);
        if (compress(packed.data(), &size, facts.profile.data(), (uLong)facts.profile.size()) == Z_OK) {
            std::vector<uint8_t> bytes = {'I', 'C', 'C', 0, 0};
            bytes.insert(bytes.end(), packed.begin(), packed.begin() + (ptrdiff_t)size);
            chunks.push_back({"iCCP", bytes, false});
        }
    }
    if (photo.across > 0 && photo.down > 0) {
        std::vector<uint8_t> bytes(9, 1);
        for (int i = 0; i < 4; ++i) {
            bytes[i] = (uint8_t)(photo.across >> (24 - 8 * i));
            bytes[4 + i] = (uint8_t)(photo.down >> (24 - 8 * i));
        }
        chunks.push_back({"pHYs", bytes, false});
    }
    if (!facts.exif.empty()) chunks.push_back({"eXIf", facts.exif, false});
    if (!facts.xmp.empty()) {
        static const char head[] = "XML:com.adobe.xmp\0\0\0\0";
        std::vector<uint8_t> bytes(head, head + sizeof head);
        bytes.insert(bytes.end(), facts.xmp.begin(), facts.xmp.end());
        chunks.push_back({"iTXt", bytes, false});
    }
    for (PngChunk& chunk : chunks)
        updateChunk(&chunk, photo, false);
    return chunks;
}

void updatePngChunks(std::vector<PngChunk>* chunks, int oldKind, int newKind, const EditedPhoto& photo, bool swapped)
{
    const bool promoted = newKind != oldKind;
    const bool greyProfile = promoted && !(oldKind & PNG_COLOR_MASK_COLOR);
    auto gone = [&](const PngChunk& chunk) {
        return promoted && (fitsKindOnly(chunk) || (greyProfile && chunk.name == "iCCP"));
    };
    chunks->erase(std::remove_if(chunks->begin(), chunks->end(), gone), chunks->end());
    for (PngChunk& chunk : *chunks)
        updateChunk(&chunk, photo, swapped);
}

void writePngChunks(png_structp output, const std::vector<PngChunk>& chunks, PngPlace place)
{
    for (const PngChunk& chunk : chunks)
        if (placeOf(chunk) == place)
            png_write_chunk(output, (png_const_bytep)chunk.name.data(), chunk.bytes.data(), chunk.bytes.size());
}
