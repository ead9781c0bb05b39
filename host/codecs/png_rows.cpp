#include "host/codecs/png_rows.h"

#include "host/photo/exif_edit.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

// The library tells want of memory from damage by its words alone. Before the rows it is a damaged file's fault.
static void giveUp(png_structp codec, png_const_charp why)
{
    PngRows* rows = (PngRows*)png_get_error_ptr(codec);
    rows->noMemory = rows->noMemory || (rows->mostAtOnce == SIZE_MAX && strstr(why, "memory"));
    png_longjmp(codec, 1);
}

static void noteWarning(png_structp, png_const_charp) {}

static void readFacts(PngRows* rows, PhotoFacts* facts)
{
    png_charp name;
    png_bytep profile;
    png_uint_32 size;
    int compression;
    if (png_get_iCCP(rows->input, rows->info, &name, &compression, &profile, &size))
        facts->profile.assign(profile, profile + size);
    png_bytep exif;
    if (png_get_eXIf_1(rows->input, rows->info, &size, &exif)) {
        facts->exif.assign(exif, exif + size);
        facts->orientation = exifOrientation(exif, size);
    }
    png_textp texts;
    const int count = (int)png_get_text(rows->input, rows->info, &texts, nullptr);
    for (int i = 0; i < count; ++i)
        if (strcmp(texts[i].key, "XML:com.adobe.xmp") == 0)
            facts->xmp.assign(texts[i].text,
                              texts[i].text + (texts[i].itxt_length ? texts[i].itxt_length : texts[i].text_length));
        else
            facts->notes = true;
    facts->grey = !(rows->layout.type & PNG_COLOR_MASK_COLOR);
    facts->palette = rows->layout.type == PNG_COLOR_TYPE_PALETTE;
    facts->deep = rows->layout.depth == 16;
    facts->alpha = (rows->layout.type & PNG_COLOR_MASK_ALPHA) || rows->hasKey ||
                   std::any_of(rows->paletteAlpha.begin(), rows->paletteAlpha.end(), [](uint8_t a) { return a < 255; });
}

static void readColors(PngRows* rows)
{
    png_colorp colors;
    int count = 0;
    if (rows->layout.type == PNG_COLOR_TYPE_PALETTE && png_get_PLTE(rows->input, rows->info, &colors, &count))
        rows->palette.assign(colors, colors + count);
    rows->paletteAlpha.assign(rows->palette.size(), 255);
    png_bytep alpha = nullptr;
    png_color_16p key = nullptr;
    if (!png_get_tRNS(rows->input, rows->info, &alpha, &count, &key)) return;
    if (rows->layout.type == PNG_COLOR_TYPE_PALETTE) {
        if (alpha) std::copy(alpha, alpha + std::min(count, (int)rows->palette.size()), rows->paletteAlpha.begin());
    } else if (key) {
        rows->hasKey = true;
        const bool grey = rows->layout.type == PNG_COLOR_TYPE_GRAY;
        rows->key[0] = grey ? key->gray : key->red;
        rows->key[1] = grey ? key->gray : key->green;
        rows->key[2] = grey ? key->gray : key->blue;
    }
}

// A chunk longer than the file is not there, and none unpacks to more than this.
constexpr size_t UNPACKED_CHUNK = 16u << 20, LARGEST_CHUNK = 256u << 20;

static size_t chunkLimit(FILE* file)
{
    const long at = ftell(file);
    const long size = fseek(file, 0, SEEK_END) == 0 ? ftell(file) : -1;
    fseek(file, at, SEEK_SET);
    return size < 0 ? LARGEST_CHUNK : std::min(std::max((size_t)size, UNPACKED_CHUNK), LARGEST_CHUNK);
}

// The library takes memory for what a chunk says of its length before it reads it, whatever its own limits are.
static png_voidp takeWithin(png_structp codec, png_alloc_size_t size)
{
    const PngRows* const rows = (const PngRows*)png_get_mem_ptr(codec);
    return size <= rows->mostAtOnce ? malloc(size) : nullptr;
}

static void giveBack(png_structp, png_voidp memory)
{
    free(memory);
}

static bool readHeader(PngRows* rows, FILE* file)
{
    if (setjmp(png_jmpbuf(rows->input))) return false;
    png_init_io(rows->input, file);
    png_set_user_limits(rows->input, 0x7FFFFFFF, 0x7FFFFFFF);
    png_set_chunk_malloc_max(rows->input, rows->mostAtOnce);
    png_read_info(rows->input, rows->info);
    rows->width = (int)png_get_image_width(rows->input, rows->info);
    rows->height = (int)png_get_image_height(rows->input, rows->info);
    rows->layout = pngLayout(png_get_color_type(rows->input, rows->info), png_get_bit_depth(rows->input, rows->info));
    readColors(rows);
    png_set_packing(rows->input);
    return true;
}

static bool readWhole(PngRows* rows)
{
    if (setjmp(png_jmpbuf(rows->input))) return false;
    const int passes = png_set_interlace_handling(rows->input);
    png_read_update_info(rows->input, rows->info);
    const size_t stride = (size_t)rows->width * rows->layout.bytes;
    for (int pass = 0; pass < passes; ++pass)
        for (int row = 0; row < rows->height; ++row)
            png_read_row(rows->input, rows->whole.get() + row * stride, nullptr);
    return true;
}

static bool startRows(PngRows* rows)
{
    if (setjmp(png_jmpbuf(rows->input))) return false;
    png_read_update_info(rows->input, rows->info);
    return true;
}

static bool readRow(PngRows* rows, uint8_t* native)
{
    if (setjmp(png_jmpbuf(rows->input))) return false;
    png_read_row(rows->input, native, nullptr);
    return true;
}

static bool isKey(const PngRows& rows, const uint8_t* pixel)
{
    for (int channel = 0; channel < rows.layout.channels; ++channel) {
        const int value = rows.layout.depth == 16 ? pixel[channel * 2] << 8 | pixel[channel * 2 + 1] : pixel[channel];
        if (value != rows.key[channel]) return false;
    }
    return true;
}

static uint8_t seen(const PngLayout& layout, const uint8_t* pixel, int channel)
{
    return (uint8_t)((pngSample(layout, pixel, channel) * 255 + 32895) >> 16);
}

PngLayout pngLayout(int type, int depth)
{
    PngLayout layout;
    layout.type = type;
    layout.depth = depth;
    layout.channels = type == PNG_COLOR_TYPE_PALETTE
                          ? 1
                          : (type & PNG_COLOR_MASK_COLOR ? 3 : 1) + (type & PNG_COLOR_MASK_ALPHA ? 1 : 0);
    layout.bytes = layout.channels * (depth == 16 ? 2 : 1);
    return layout;
}

bool openPng(PngRows* rows, FILE* file, PhotoFacts* facts)
{
    rows->mostAtOnce = chunkLimit(file);
    rows->input =
        png_create_read_struct_2(PNG_LIBPNG_VER_STRING, rows, giveUp, noteWarning, rows, takeWithin, giveBack);
    rows->info = rows->input ? png_create_info_struct(rows->input) : nullptr;
    if (!rows->info || !readHeader(rows, file)) return false;
    readFacts(rows, facts);
    rows->bridge = openBridge(facts->profile, 0, false);
    return true;
}

bool startPngRows(PngRows* rows, bool atOnce)
{
    rows->mostAtOnce = SIZE_MAX;
    if (!atOnce && png_get_interlace_type(rows->input, rows->info) == PNG_INTERLACE_NONE) return startRows(rows);
    rows->whole = allocateLarge((uint64_t)rows->width * rows->layout.bytes * rows->height);
    rows->noMemory = !rows->whole;
    return rows->whole && readWhole(rows);
}

void closePngRows(PngRows* rows)
{
    if (rows->input) png_destroy_read_struct(&rows->input, &rows->info, nullptr);
    closeBridge(&rows->bridge);
}

const uint8_t* nextPngRow(PngRows* rows, std::vector<uint8_t>* buffer)
{
    const size_t stride = (size_t)rows->width * rows->layout.bytes;
    const int row = rows->nextRow++;
    if (rows->whole) return rows->whole.get() + row * stride;
    buffer->resize(stride);
    return readRow(rows, buffer->data()) ? buffer->data() : nullptr;
}

int pngSample(const PngLayout& layout, const uint8_t* pixel, int channel)
{
    if (layout.depth == 16) return pixel[channel * 2] << 8 | pixel[channel * 2 + 1];
    return pixel[channel] * (65535 / ((1 << layout.depth) - 1));
}

void showPngRow(const PngRows& rows, const uint8_t* native, uint8_t* bgra)
{
    const PngLayout& layout = rows.layout;
    const bool color = layout.type & PNG_COLOR_MASK_COLOR;
    const bool alpha = layout.type & PNG_COLOR_MASK_ALPHA;
    uint8_t* to = bgra;
    for (int x = 0; x < rows.width; ++x, native += layout.bytes, to += 4) {
        if (layout.type == PNG_COLOR_TYPE_PALETTE) {
            const bool known = native[0] < rows.palette.size();
            const png_color color = known ? rows.palette[native[0]] : png_color{0, 0, 0};
            to[0] = color.blue;
            to[1] = color.green;
            to[2] = color.red;
            to[3] = known ? rows.paletteAlpha[native[0]] : 255;
            continue;
        }
        for (int channel = 0; channel < 3; ++channel)
            to[2 - channel] = seen(layout, native, color ? channel : 0);
        to[3] = alpha ? seen(layout, native, layout.channels - 1) : rows.hasKey && isKey(rows, native) ? 0 : 255;
    }
    showColors(rows.bridge, bgra, rows.width);
}
