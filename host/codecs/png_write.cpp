#include "host/codecs/png_file.h"
#include "host/codecs/png_rows.h"
#include "host/codecs/thumbnail.h"
#include "host/photo/exif_edit.h"

#include <algorithm>
#include <cstring>
#include <io.h>
#include <string>
#include <zlib.h>

namespace {

struct Chunk {
    std::string name;
    std::vector<uint8_t> bytes;
    bool behindPixels;
};

struct Writing {
    png_structp output = nullptr;
    png_infop info = nullptr;
    PngLayout layout;  // of the new file
    PngRows rows;      // the original's
    bool hasOriginal = false;
    std::vector<Chunk> chunks;
    std::vector<uint8_t> edited, stored, shown, line, buffer;
};

enum class Outcome { Done, Failed, NeedsColors };

void giveUp(png_structp codec, png_const_charp)
{
    png_longjmp(codec, 1);
}
void noteWarning(png_structp, png_const_charp) {}

uint32_t numberAt(const uint8_t* bytes)
{
    return (uint32_t)bytes[0] << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
}

// Everything but the pixels and what the library writes itself.
std::vector<Chunk> readChunks(FILE* file)
{
    static const char* const ownOrAnimation[] = {"IHDR", "PLTE", "tRNS", "IDAT", "IEND", "acTL", "fcTL", "fdAT"};
    std::vector<Chunk> chunks;
    bool behind = false;
    uint8_t head[8];
    fseek(file, 8, SEEK_SET);
    while (fread(head, 1, 8, file) == 8) {
        const uint32_t size = numberAt(head);
        Chunk chunk = {std::string((const char*)head + 4, 4), {}, behind};
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

void updateChunk(Chunk* chunk, const EditedPhoto& photo, bool swapped)
{
    if (chunk->name == "eXIf") refreshExif(chunk->bytes.data(), chunk->bytes.size(), photo);
    if (chunk->name == "iTXt") noteUprightInXmp(chunk->bytes.data(), chunk->bytes.size());
    if (chunk->name == "pHYs" && chunk->bytes.size() == 9 && swapped)
        std::swap_ranges(chunk->bytes.begin(), chunk->bytes.begin() + 4, chunk->bytes.begin() + 4);
}

// What says something about the kind of pixels that there was.
bool fitsKindOnly(const Chunk& chunk)
{
    return chunk.name == "bKGD" || chunk.name == "hIST" || chunk.name == "sBIT";
}

void updateChunks(Writing* writing, const EditedPhoto& photo, bool swapped)
{
    const bool promoted = writing->layout.type != writing->rows.layout.type;
    const bool greyProfile = promoted && !(writing->rows.layout.type & PNG_COLOR_MASK_COLOR);
    auto gone = [&](const Chunk& chunk) {
        return promoted && (fitsKindOnly(chunk) || (greyProfile && chunk.name == "iCCP"));
    };
    writing->chunks.erase(std::remove_if(writing->chunks.begin(), writing->chunks.end(), gone), writing->chunks.end());
    for (Chunk& chunk : writing->chunks)
        updateChunk(&chunk, photo, swapped);
}

std::vector<Chunk> chunksOfFacts(const PhotoFacts& facts, const EditedPhoto& photo)
{
    std::vector<Chunk> chunks;
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
    for (Chunk& chunk : chunks)
        updateChunk(&chunk, photo, false);
    return chunks;
}

// Colour descriptions stand before the palette, everything else behind it.
bool beforePalette(const Chunk& chunk)
{
    static const char* const names[] = {"gAMA", "cHRM", "sRGB", "iCCP", "sBIT", "cICP", "mDCv", "cLLi"};
    return std::any_of(std::begin(names), std::end(names), [&](const char* name) { return chunk.name == name; });
}

void writeChunks(const Writing& writing, bool early, bool behindPixels)
{
    for (const Chunk& chunk : writing.chunks)
        if (chunk.behindPixels == behindPixels && (behindPixels || beforePalette(chunk) == early))
            png_write_chunk(writing.output, (png_const_bytep)chunk.name.data(), chunk.bytes.data(), chunk.bytes.size());
}

void setSample(const PngLayout& layout, uint8_t* pixel, int channel, int value16)
{
    if (layout.depth == 16) {
        pixel[channel * 2] = (uint8_t)(value16 >> 8);
        pixel[channel * 2 + 1] = (uint8_t)value16;
    } else {
        const int most = (1 << layout.depth) - 1;
        pixel[channel] = (uint8_t)((value16 * most + 32767) / 65535);
    }
}

// An edited colour as a pixel; false when the file's kind of pixels has none for it.
bool storeEdited(const Writing& writing, const uint8_t* bgr, const uint8_t* editedBgr, int alpha, uint8_t* to)
{
    const PngLayout& layout = writing.layout;
    if (layout.type == PNG_COLOR_TYPE_PALETTE) {
        for (size_t i = 0; i < writing.rows.palette.size(); ++i) {
            const png_color& color = writing.rows.palette[i];
            if (color.blue != bgr[0] || color.green != bgr[1] || color.red != bgr[2]) continue;
            if (writing.rows.paletteAlpha[i] != 255) continue;
            to[0] = (uint8_t)i;
            return true;
        }
        return false;
    }
    const bool color = layout.type & PNG_COLOR_MASK_COLOR;
    if (!color && (editedBgr[0] != editedBgr[1] || editedBgr[0] != editedBgr[2])) return false;
    for (int channel = 0; channel < (color ? 3 : 1); ++channel) {
        const int value = fromOverWhite(bgr[2 - channel], alpha) * 257;
        setSample(layout, to, channel, value);
        const int most = (1 << std::min(layout.depth, 8)) - 1;
        if (layout.depth < 8 && to[channel] * (255 / most) != bgr[2 - channel]) return false;
    }
    return true;
}

// The original's pixel in the new kind of pixels: the same samples, or those it stands for.
void storeOriginal(const Writing& writing, const uint8_t* native, const uint8_t* shown, uint8_t* to)
{
    const PngLayout &from = writing.rows.layout, &layout = writing.layout;
    if (from.type == layout.type && from.depth == layout.depth) {
        memcpy(to, native, (size_t)from.bytes);
        return;
    }
    const int last = layout.channels - 1;
    if (from.type == PNG_COLOR_TYPE_PALETTE) {
        const bool known = native[0] < writing.rows.palette.size();
        const png_color color = known ? writing.rows.palette[native[0]] : png_color{0, 0, 0};
        const int values[3] = {color.red, color.green, color.blue};
        for (int channel = 0; channel < 3; ++channel)
            setSample(layout, to, channel, values[channel] * 257);
    } else {
        for (int channel = 0; channel < std::min(layout.channels, 3); ++channel)
            setSample(layout, to, channel, pngSample(from, native, 0));
    }
    if (layout.type & PNG_COLOR_MASK_ALPHA)
        setSample(layout, to, last,
                  from.type & PNG_COLOR_MASK_ALPHA ? pngSample(from, native, from.channels - 1) : shown[3] * 257);
}

bool buildRow(Writing* writing, const uint8_t* native, int width)
{
    showPngRow(writing->rows, native, writing->shown.data());
    writing->stored = writing->edited;
    storeColors(writing->rows.bridge, writing->stored.data(), width);
    const PngLayout& from = writing->rows.layout;
    for (int x = 0; x < width; ++x, native += from.bytes) {
        const uint8_t* shown = &writing->shown[(size_t)x * 4];
        const uint8_t* edited = &writing->edited[(size_t)x * 3];
        uint8_t* to = &writing->line[(size_t)x * writing->layout.bytes];
        storeOriginal(*writing, native, shown, to);
        bool same = true;
        for (int channel = 0; channel < 3; ++channel)
            same = same && overWhite(shown[channel], shown[3]) == edited[channel];
        if (!same && !storeEdited(*writing, &writing->stored[(size_t)x * 3], edited, shown[3], to)) return false;
    }
    return true;
}

void plainRow(Writing* writing, int width)
{
    storeColors(writing->rows.bridge, writing->edited.data(), width);
    for (int x = 0; x < width; ++x)
        for (int channel = 0; channel < 3; ++channel)
            writing->line[(size_t)x * 3 + channel] = writing->edited[(size_t)x * 3 + 2 - channel];
}

void writeHead(Writing* writing, const EditedPhoto& photo)
{
    png_set_IHDR(writing->output, writing->info, (png_uint_32)photo.width, (png_uint_32)photo.height,
                 writing->layout.depth, writing->layout.type, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    PngRows& rows = writing->rows;
    if (writing->layout.type == PNG_COLOR_TYPE_PALETTE) {
        png_set_PLTE(writing->output, writing->info, rows.palette.data(), (int)rows.palette.size());
        png_bytep alpha = nullptr;
        int count = 0;
        if (png_get_tRNS(rows.input, rows.info, &alpha, &count, nullptr) && alpha)
            png_set_tRNS(writing->output, writing->info, alpha, count, nullptr);
    } else if (rows.hasKey && writing->layout.type == rows.layout.type) {
        png_color_16p key = nullptr;
        png_get_tRNS(rows.input, rows.info, nullptr, nullptr, &key);
        png_set_tRNS(writing->output, writing->info, nullptr, 0, key);
    }
    png_write_info_before_PLTE(writing->output, writing->info);
    writeChunks(*writing, true, false);
    png_write_info(writing->output, writing->info);
    writeChunks(*writing, false, false);
    png_set_packing(writing->output);
}

// One pass over all rows; the file is at its start.
Outcome writeRows(Writing* writing, FILE* file, const EditedPhoto& photo, int orientation)
{
    writing->output = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, giveUp, noteWarning);
    writing->info = writing->output ? png_create_info_struct(writing->output) : nullptr;
    if (!writing->info) return Outcome::Failed;
    if (setjmp(png_jmpbuf(writing->output))) return Outcome::Failed;
    png_init_io(writing->output, file);
    png_set_user_limits(writing->output, 0x7FFFFFFF, 0x7FFFFFFF);
    writeHead(writing, photo);
    const UprightTarget upright = editedInFile(photo, 1);
    const size_t nativeStride = (size_t)writing->rows.width * writing->rows.layout.bytes;
    const int pixel = writing->rows.layout.bytes;
    for (int row = 0; row < photo.height; ++row) {
        gatherRows(upright, row, 1, writing->edited.data(), 0);
        if (!writing->hasOriginal) {
            plainRow(writing, photo.width);
        } else {
            const uint8_t* native;
            if (orientation == 1) {
                native = nextPngRow(&writing->rows, &writing->buffer);
            } else {
                turnNativeRow(writing->rows.whole.data(), (ptrdiff_t)nativeStride, pixel, writing->rows.width,
                              writing->rows.height, orientation, row, writing->buffer.data());
                native = writing->buffer.data();
            }
            if (!native) return Outcome::Failed;
            const int fileWidth = writing->rows.width;
            writing->rows.width = photo.width;
            const bool stored = buildRow(writing, native, photo.width);
            writing->rows.width = fileWidth;
            if (!stored) return Outcome::NeedsColors;
        }
        png_write_row(writing->output, writing->line.data());
    }
    writeChunks(*writing, true, true);
    png_write_end(writing->output, writing->info);
    return Outcome::Done;
}

// The kind of pixels that can hold any colour, without giving up depth or alpha.
PngLayout withColors(const PngRows& rows, const PhotoFacts& facts)
{
    return pngLayout(facts.alpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, rows.layout.depth == 16 ? 16 : 8);
}

Outcome writeOnce(FILE* output, const EditedPhoto& photo, const PhotoFacts& facts, FILE* original, bool colors)
{
    Writing writing;
    PhotoFacts again;
    if (original) {
        writing.chunks = readChunks(original);
        if (!openPngRows(&writing.rows, original, &again, facts.orientation != 1)) {
            closePngRows(&writing.rows);
            return Outcome::Failed;
        }
        const UprightTarget place = editedInFile(photo, facts.orientation);
        writing.hasOriginal = place.fileWidth == writing.rows.width && place.fileHeight == writing.rows.height;
        writing.layout = colors ? withColors(writing.rows, again) : writing.rows.layout;
        updateChunks(&writing, photo, orientationSwapsSides(facts.orientation));
    } else {
        writing.layout = pngLayout(PNG_COLOR_TYPE_RGB, 8);
        writing.chunks = chunksOfFacts(facts, photo);
        if (!facts.grey && !facts.inks) writing.rows.bridge = openBridge(facts.profile, 0, false);
    }
    writing.edited.resize((size_t)photo.width * 3);
    writing.shown.resize((size_t)photo.width * 4);
    writing.line.resize((size_t)photo.width * 8);
    writing.buffer.resize((size_t)photo.width * 8);
    Outcome outcome = original && !writing.hasOriginal
                          ? Outcome::Failed
                          : writeRows(&writing, output, photo, original ? facts.orientation : 1);
    if (writing.output) png_destroy_write_struct(&writing.output, &writing.info);
    closePngRows(&writing.rows);
    return outcome;
}

}  // namespace

PhotoStatus writePng(FILE* output, const EditedPhoto& photo, const PhotoFacts& facts, FILE* original)
{
    Outcome outcome = writeOnce(output, photo, facts, original, false);
    if (outcome == Outcome::NeedsColors) {
        rewind(output);
        rewind(original);
        _chsize_s(_fileno(output), 0);
        outcome = writeOnce(output, photo, facts, original, true);
    }
    if (outcome == Outcome::Done) return PhotoStatus::Ok;
    return ferror(output) ? PhotoStatus::CannotWrite : PhotoStatus::CannotEncode;
}
