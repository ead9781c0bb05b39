#include "host/codecs/png_packing.h"

#include <algorithm>
#include <iterator>
#include <zlib.h>

constexpr int SAMPLE_BANDS = 4, BAND_ROWS = 8, SAMPLE_WIDTH = 4096;
constexpr size_t PERCENT_MORE = 7;  // that a file may be larger for being packed in less time

// From the quickest to the library's own way. Times of the three for a photo: 1, 4 and 10.
struct Packing {
    int level, strategy, filters;
};
static const Packing packings[] = {
    {1, Z_RLE, PNG_FILTER_PAETH},
    {4, Z_FILTERED, PNG_ALL_FILTERS},
    {Z_DEFAULT_COMPRESSION, Z_FILTERED, PNG_ALL_FILTERS},
};

struct Sample {
    int width = 0, rows = 0;
    std::vector<uint8_t> bytes;
};

// Neighbouring rows from all over the picture, out of its middle columns.
static Sample takeSample(const EditedPhoto& photo)
{
    Sample sample;
    sample.width = std::min(photo.width, SAMPLE_WIDTH);
    const int left = (photo.width - sample.width) / 2, count = std::min(photo.height, BAND_ROWS);
    EditedPhoto silent = photo;
    silent.rowsGathered = nullptr;
    const UprightTarget upright = editedInFile(silent, 1);
    std::vector<uint8_t> row((size_t)photo.width * 3);
    for (int band = 0; band < SAMPLE_BANDS; ++band)
        for (int i = 0; i < count; ++i) {
            const int64_t first = (int64_t)(photo.height - count) * (2 * band + 1) / (2 * SAMPLE_BANDS);
            gatherRows(upright, (int)first + i, 1, row.data(), 0);
            const uint8_t* part = &row[(size_t)left * 3];
            sample.bytes.insert(sample.bytes.end(), part, part + (size_t)sample.width * 3);
            sample.rows++;
        }
    return sample;
}

static void setPacking(png_structp output, const Packing& packing)
{
    png_set_compression_level(output, packing.level);
    png_set_compression_strategy(output, packing.strategy);
    png_set_filter(output, PNG_FILTER_TYPE_BASE, packing.filters);
}

static void countBytes(png_structp output, png_bytep, size_t size)
{
    *(size_t*)png_get_io_ptr(output) += size;
}

static void flushNothing(png_structp) {}

static void stayQuiet(png_structp, png_const_charp) {}

static void giveUp(png_structp codec, png_const_charp)
{
    png_longjmp(codec, 1);
}

// 0 when it cannot be told.
static size_t packedSize(const Sample& sample, const Packing& packing)
{
    size_t size = 0;
    png_structp output = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, giveUp, stayQuiet);
    png_infop info = output ? png_create_info_struct(output) : nullptr;
    if (!info || setjmp(png_jmpbuf(output))) {
        if (output) png_destroy_write_struct(&output, &info);
        return 0;
    }
    png_set_write_fn(output, &size, countBytes, flushNothing);
    png_set_IHDR(output, info, (png_uint_32)sample.width, (png_uint_32)sample.rows, 8, PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    setPacking(output, packing);
    png_write_info(output, info);
    for (int row = 0; row < sample.rows; ++row)
        png_write_row(output, &sample.bytes[(size_t)row * sample.width * 3]);
    png_write_end(output, info);
    png_destroy_write_struct(&output, &info);
    return size;
}

void choosePngPacking(png_structp output, const EditedPhoto& photo, int depth)
{
    if (depth < 8) return;
    const Sample sample = takeSample(photo);
    const size_t most = packedSize(sample, *std::rbegin(packings)) * (100 + PERCENT_MORE) / 100;
    for (const Packing& packing : packings) {
        const size_t size = packedSize(sample, packing);
        if (size == 0 || size > most) continue;
        setPacking(output, packing);
        return;
    }
}
