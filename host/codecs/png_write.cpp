#include "host/codecs/png_chunks.h"
#include "host/codecs/png_file.h"
#include "host/codecs/png_packing.h"
#include "host/codecs/png_samples.h"

#include <io.h>

struct PngWriting {
    png_structp output = nullptr;
    png_infop info = nullptr;
    PngLayout layout;  // of the new file
    PngRows rows;      // the original's
    bool hasOriginal = false;
    std::vector<PngChunk> chunks;
    std::vector<uint8_t> edited, stored, shown, line, buffer;
};

enum class PngOutcome { Done, Failed, NeedsColors };

static void giveUp(png_structp codec, png_const_charp)
{
    png_longjmp(codec, 1);
}
static void noteWarning(png_structp, png_const_charp) {}

static bool buildRow(PngWriting* writing, const uint8_t* native, int width)
{
    showPngRow(writing->rows, native, writing->shown.data());
    writing->stored = writing->edited;
    storeColors(writing->rows.bridge, writing->stored.data(), width);
    const PngLayout& from = writing->rows.layout;
    for (int x = 0; x < width; ++x, native += from.bytes) {
        const uint8_t* shown = &writing->shown[(size_t)x * 4];
        const uint8_t* edited = &writing->edited[(size_t)x * 3];
        uint8_t* to = &writing->line[(size_t)x * writing->layout.bytes];
        storePngPixel(writing->rows, writing->layout, native, shown, to);
        bool same = true;
        for (int channel = 0; channel < 3; ++channel)
            same = same && overWhite(shown[channel], shown[3]) == edited[channel];
        if (!same &&
            !storePngColor(writing->rows, writing->layout, &writing->stored[(size_t)x * 3], edited, shown[3], to))
            return false;
    }
    return true;
}

static void plainRow(PngWriting* writing, int width)
{
    storeColors(writing->rows.bridge, writing->edited.data(), width);
    for (int x = 0; x < width; ++x)
        for (int channel = 0; channel < 3; ++channel)
            writing->line[(size_t)x * 3 + channel] = writing->edited[(size_t)x * 3 + 2 - channel];
}

static void writeHead(PngWriting* writing, const EditedPhoto& photo)
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
    writePngChunks(writing->output, writing->chunks, PngPlace::BeforePalette);
    png_write_info(writing->output, writing->info);
    writePngChunks(writing->output, writing->chunks, PngPlace::BeforePixels);
    png_set_packing(writing->output);
}

// The original's samples of a row of the upright picture; null when the file is damaged.
static const uint8_t* nativeRow(PngWriting* writing, int orientation, int row)
{
    PngRows& rows = writing->rows;
    if (orientation == 1) return nextPngRow(&rows, &writing->buffer);
    const int pixel = rows.layout.bytes;
    turnNativeRow(rows.whole.get(), (ptrdiff_t)rows.width * pixel, pixel, rows.width, rows.height, orientation, row,
                  writing->buffer.data());
    return writing->buffer.data();
}

// The new file's samples of an edited row.
static PngOutcome makeRow(PngWriting* writing, int width, int orientation, int row)
{
    if (!writing->hasOriginal) {
        plainRow(writing, width);
        return PngOutcome::Done;
    }
    const uint8_t* native = nativeRow(writing, orientation, row);
    if (!native) return PngOutcome::Failed;
    const int fileWidth = writing->rows.width;
    writing->rows.width = width;
    const bool stored = buildRow(writing, native, width);
    writing->rows.width = fileWidth;
    return stored ? PngOutcome::Done : PngOutcome::NeedsColors;
}

// One pass over all rows; the file is at its start.
static PngOutcome writeRows(PngWriting* writing, FILE* file, const EditedPhoto& photo, int orientation)
{
    writing->output = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, giveUp, noteWarning);
    writing->info = writing->output ? png_create_info_struct(writing->output) : nullptr;
    if (!writing->info) return PngOutcome::Failed;
    if (setjmp(png_jmpbuf(writing->output))) return PngOutcome::Failed;
    png_init_io(writing->output, file);
    png_set_user_limits(writing->output, 0x7FFFFFFF, 0x7FFFFFFF);
    if (writing->layout.type != PNG_COLOR_TYPE_PALETTE) choosePngPacking(writing->output, photo, writing->layout.depth);
    writeHead(writing, photo);
    const UprightTarget upright = editedInFile(photo, 1);
    for (int row = 0; row < photo.height; ++row) {
        gatherRows(upright, row, 1, writing->edited.data(), 0);
        const PngOutcome made = makeRow(writing, photo.width, orientation, row);
        if (made != PngOutcome::Done) return made;
        png_write_row(writing->output, writing->line.data());
    }
    writePngChunks(writing->output, writing->chunks, PngPlace::BehindPixels);
    png_write_end(writing->output, writing->info);
    return PngOutcome::Done;
}

// The kind of pixels that can hold any colour, without giving up depth or alpha.
static PngLayout withColors(const PngRows& rows, const PhotoFacts& facts)
{
    return pngLayout(facts.alpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, rows.layout.depth == 16 ? 16 : 8);
}

static PngOutcome writeOnce(FILE* output, const EditedPhoto& photo, const PhotoFacts& facts, FILE* original,
                            bool colors)
{
    PngWriting writing;
    PhotoFacts again;
    if (original) {
        writing.chunks = readPngChunks(original);
        if (!openPng(&writing.rows, original, &again) || !startPngRows(&writing.rows, facts.orientation != 1)) {
            closePngRows(&writing.rows);
            return PngOutcome::Failed;
        }
        const UprightTarget place = editedInFile(photo, facts.orientation);
        writing.hasOriginal = place.fileWidth == writing.rows.width && place.fileHeight == writing.rows.height;
        writing.layout = colors ? withColors(writing.rows, again) : writing.rows.layout;
        updatePngChunks(&writing.chunks, writing.rows.layout.type, writing.layout.type, photo,
                        orientationSwapsSides(facts.orientation));
    } else {
        writing.layout = pngLayout(PNG_COLOR_TYPE_RGB, 8);
        writing.chunks = pngChunksOf(facts, photo);
        if (!facts.grey && !facts.inks) writing.rows.bridge = openBridge(facts.profile, 0, false);
    }
    writing.edited.resize((size_t)photo.width * 3);
    writing.shown.resize((size_t)photo.width * 4);
    writing.line.resize((size_t)photo.width * 8);
    writing.buffer.resize((size_t)photo.width * 8);
    PngOutcome outcome = original && !writing.hasOriginal
                             ? PngOutcome::Failed
                             : writeRows(&writing, output, photo, original ? facts.orientation : 1);
    if (writing.output) png_destroy_write_struct(&writing.output, &writing.info);
    closePngRows(&writing.rows);
    return outcome;
}

PhotoStatus writePng(FILE* output, const EditedPhoto& photo, const PhotoFacts& facts, FILE* original)
{
    PngOutcome outcome = writeOnce(output, photo, facts, original, false);
    if (outcome == PngOutcome::NeedsColors) {
        rewind(output);
        rewind(original);
        _chsize_s(_fileno(output), 0);
        outcome = writeOnce(output, photo, facts, original, true);
    }
    if (outcome == PngOutcome::Done) return PhotoStatus::Ok;
    return ferror(output) ? PhotoStatus::CannotWrite : PhotoStatus::CannotEncode;
}
