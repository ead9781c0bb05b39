// The host's decoders of photos under the fuzzer. A photo that is accepted has handed over all its rows once, inside
// the sides it told before; and no memory is taken for more pixels than the one who wants them agreed to.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/codecs/bitmap_file.h"
#include "host/codecs/jpeg_file.h"
#include "host/codecs/png_file.h"
#include "host/codecs/tiff_directory.h"
#include "host/codecs/tiff_page.h"
#include "host/codecs/webp_file.h"
#include "tests/fuzz/photo_memory.h"
#include "tests/fuzz/readers.h"

constexpr int64_t MOST_PIXELS = 1 << 18;

struct Taken {
    Bytes bits;
    UprightTarget target;
    bool begun;
    int rows;
};

static void expect(bool holds, const char* promise)
{
    if (holds) return;
    fprintf(stderr, "broken promise: %s\n", promise);
    abort();
}

// As the host begins a picture, with less memory.
static PhotoStatus begin(void* context, const PhotoShape& shape)
{
    Taken* const taken = (Taken*)context;
    expect(!taken->begun, "a picture begins once");
    expect(shape.width >= 1 && shape.height >= 1, "sides of 1 and more");
    expect(shape.orientation >= 1 && shape.orientation <= 8, "an orientation from 1 to 8");
    if ((int64_t)shape.width * shape.height > MOST_PIXELS) return PhotoStatus::TooLarge;
    const bool swapped = orientationSwapsSides(shape.orientation);
    const uint32_t size = packedPhotoSize(swapped ? shape.height : shape.width, swapped ? shape.width : shape.height);
    if (!size) return PhotoStatus::TooLarge;
    taken->begun = true;
    taken->bits.resize(size - 40);
    taken->target = {taken->bits.data(), shape.width, shape.height, shape.orientation};
    return PhotoStatus::Ok;
}

static bool take(void* context, const uint8_t* bgra, ptrdiff_t stride, int firstRow, int rowCount)
{
    Taken* const taken = (Taken*)context;
    expect(taken->begun, "rows come after the picture began");
    expect(firstRow == taken->rows && rowCount >= 1, "rows come in their order");
    expect(rowCount <= taken->target.fileHeight - firstRow, "no more rows than told");
    placeRowsOverWhite(taken->target, bgra, stride, firstRow, rowCount);
    taken->rows += rowCount;
    return true;
}

static int accepted;

int photosAccepted()
{
    return accepted;
}

static void check(PhotoStatus status, const Taken& taken, const PhotoFacts& facts)
{
    accepted += status == PhotoStatus::Ok;
    if (status == PhotoStatus::Ok)
        expect(taken.begun && taken.rows == taken.target.fileHeight, "an accepted photo has all its rows");
    expect(facts.orientation >= 1 && facts.orientation <= 8, "an orientation from 1 to 8");
}

static void readStream(const uint8_t* bytes, size_t size, PhotoStatus (*read)(FILE*, const RowSink&, PhotoFacts*))
{
    Bytes copy(bytes, bytes + size);
    FILE* const file = size ? fmemopen(copy.data(), size, "rb") : nullptr;
    if (!file) return;
    Taken taken = {};
    PhotoFacts facts;
    check(read(file, {&taken, begin, take}, &facts), taken, facts);
    fclose(file);
}

static void readJpegPhoto(const uint8_t* bytes, size_t size)
{
    readStream(bytes, size, readJpeg);
}

static void readPngPhoto(const uint8_t* bytes, size_t size)
{
    readStream(bytes, size, readPng);
}

static void readWebpPhoto(const uint8_t* bytes, size_t size)
{
    readStream(bytes, size, readWebp);
}

static PhotoStatus readOwnBitmap(FILE* file, const RowSink& sink, PhotoFacts* facts)
{
    BitmapLayout layout;
    return openBitmap(file, &layout, facts) ? readBitmap(file, layout, sink, *facts) : PhotoStatus::NotAPhoto;
}

static void readBitmapPhoto(const uint8_t* bytes, size_t size)
{
    readStream(bytes, size, readOwnBitmap);
}

static void readTiffPhoto(const uint8_t* bytes, size_t size)
{
    PhotoMemory memory = {Bytes(bytes, bytes + size), 0};
    TIFF* const file = openTiffInMemory(&memory, "r");
    if (!file) return;
    Taken taken = {};
    PhotoFacts facts;
    check(readTiffPage(file, {&taken, begin, take}, &facts), taken, facts);
    TIFFClose(file);
}

// The directories as bytes, with room behind them for another one. Accepted are those that come to an end.
static void turnTiffPages(const uint8_t* bytes, size_t size)
{
    Bytes copy(bytes, bytes + size);
    copy.resize(size + 65536);
    FILE* const file = size ? fmemopen(copy.data(), copy.size(), "r+b") : nullptr;
    if (!file) return;
    const bool ends = pagesEnd(file);
    accepted += ends;
    if (ends) putTurnedPageFirst(file, true);
    fclose(file);
}

// ---- TIFF in memory

static tmsize_t readMemory(thandle_t handle, void* to, tmsize_t size)
{
    PhotoMemory* const memory = (PhotoMemory*)handle;
    const uint64_t there = memory->at < memory->bytes.size() ? memory->bytes.size() - memory->at : 0;
    const uint64_t count = (uint64_t)size < there ? (uint64_t)size : there;
    if (count) memcpy(to, memory->bytes.data() + memory->at, count);
    memory->at += count;
    return (tmsize_t)count;
}

static tmsize_t writeMemory(thandle_t handle, void* from, tmsize_t size)
{
    PhotoMemory* const memory = (PhotoMemory*)handle;
    const uint64_t end = memory->at + (uint64_t)size;
    if (end > memory->bytes.size()) memory->bytes.resize(end);
    memcpy(memory->bytes.data() + memory->at, from, (size_t)size);
    memory->at = end;
    return size;
}

static toff_t seekMemory(thandle_t handle, toff_t offset, int whence)
{
    PhotoMemory* const memory = (PhotoMemory*)handle;
    const uint64_t from = whence == SEEK_CUR ? memory->at : whence == SEEK_END ? memory->bytes.size() : 0;
    return memory->at = from + offset;
}

static int closeMemory(thandle_t)
{
    return 0;
}

static toff_t sizeOfMemory(thandle_t handle)
{
    return ((PhotoMemory*)handle)->bytes.size();
}

TIFF* openTiffInMemory(PhotoMemory* memory, const char* mode)
{
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    return TIFFClientOpen("memory", mode, memory, readMemory, writeMemory, seekMemory, closeMemory, sizeOfMemory,
                          nullptr, nullptr);
}

const FuzzReader fuzzReaders[] = {
    {"jpeg photo", readJpegPhoto, jpegPhotos}, {"png photo", readPngPhoto, pngPhotos},
    {"tiff photo", readTiffPhoto, tiffPhotos}, {"webp photo", readWebpPhoto, webpPhotos},
    {"tiff pages", turnTiffPages, tiffPhotos}, {"bitmap photo", readBitmapPhoto, bitmapPhotos},
};
const int fuzzReaderCount = (int)(sizeof fuzzReaders / sizeof fuzzReaders[0]);
