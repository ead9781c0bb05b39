#include "host/photo_file.h"

#include "host/codecs/bitmap_file.h"
#include "host/codecs/jpeg_file.h"
#include "host/codecs/png_file.h"
#include "host/codecs/tiff_file.h"
#include "host/codecs/webp_file.h"
#include "host/locked_photo.h"

#include <algorithm>
#include <cstring>
#include <io.h>

// Tells apart why a file cannot be opened, and refuses folders, before the decoders look at it.
static PhotoStatus probeFile(const wchar_t* path)
{
    const DWORD attributes = GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return GetLastError() == ERROR_ACCESS_DENIED ? PhotoStatus::Unreadable : PhotoStatus::Missing;
    }
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) return PhotoStatus::Unreadable;
    HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return PhotoStatus::Unreadable;
    CloseHandle(file);
    return PhotoStatus::Ok;
}

struct Signature {
    const char* bytes;
    size_t size;
    PhotoKind kind;
};
static const Signature signatures[] = {
    {"\xFF\xD8\xFF", 3, PhotoKind::Jpeg},
    {"\x89PNG\r\n\x1A\n", 8, PhotoKind::Png},
    {"II*\0", 4, PhotoKind::Tiff},
    {"MM\0*", 4, PhotoKind::Tiff},
    {"II+\0", 4, PhotoKind::Tiff},
    {"MM\0+", 4, PhotoKind::Tiff},
    {"BM", 2, PhotoKind::Bmp},
};

static PhotoKind kindOfFile(FILE* file)
{
    char head[12] = {};
    const size_t size = fread(head, 1, sizeof head, file);
    rewind(file);
    for (const Signature& signature : signatures)
        if (size >= signature.size && memcmp(head, signature.bytes, signature.size) == 0) return signature.kind;
    return memcmp(head, "RIFF", 4) == 0 && memcmp(head + 8, "WEBP", 4) == 0 ? PhotoKind::Webp : PhotoKind::Other;
}

static PhotoStatus readAnyBitmap(FILE* file, const std::wstring& path, const RowSink& sink, PhotoFacts* facts)
{
    BitmapLayout layout;
    return openBitmap(file, &layout, facts) ? readBitmap(file, layout, sink, *facts)
                                            : readBySystem(path.c_str(), sink, facts);
}

static PhotoStatus readKind(FILE* file, const std::wstring& path, PhotoKind kind, const RowSink& sink,
                            PhotoFacts* facts)
{
    switch (kind) {
    case PhotoKind::Jpeg: return readJpeg(file, sink, facts);
    case PhotoKind::Png: return readPng(file, sink, facts);
    case PhotoKind::Tiff: return readTiff(path.c_str(), sink, facts);
    case PhotoKind::Webp: return readWebp(file, sink, facts);
    case PhotoKind::Bmp: return readAnyBitmap(file, path, sink, facts);
    case PhotoKind::Other: break;
    }
    return readBySystem(path.c_str(), sink, facts);
}

static PhotoStatus readRows(const std::wstring& path, const RowSink& sink, PhotoKind* kind, PhotoFacts* facts)
{
    FILE* file = _wfopen(path.c_str(), L"rb");
    if (!file) return PhotoStatus::Unreadable;
    *kind = kindOfFile(file);
    const PhotoStatus status = readKind(file, path, *kind, sink, facts);
    fclose(file);
    return status;
}

// A session keeps an untouched copy, so twice the size must be free; else it would not start and the
// user would not learn why.
static HGLOBAL allocatePhoto(uint32_t size)
{
    HGLOBAL copy = GlobalAlloc(GMEM_MOVEABLE, size);
    HGLOBAL image = copy ? GlobalAlloc(GHND, size) : nullptr;
    GlobalFree(copy);
    return image;
}

struct Loading {
    HGLOBAL image;
    UprightTarget target;
    Progress* progress;
    LockedPhoto locked;  // the image
};

static PhotoStatus beginLoading(void* context, const PhotoShape& shape)
{
    Loading* loading = (Loading*)context;
    const bool swapped = orientationSwapsSides(shape.orientation);
    const int width = swapped ? shape.height : shape.width, height = swapped ? shape.width : shape.height;
    const uint32_t size = packedPhotoSize(width, height);
    if (!size || !packedPhotoSize(shape.width, shape.height)) return PhotoStatus::TooLarge;
    loading->image = allocatePhoto(size);
    loading->locked.lock(loading->image);
    BITMAPINFOHEADER* header = loading->locked.header;
    if (!header) return PhotoStatus::TooLarge;
    *header = {sizeof *header, width, height, 1, 24, BI_RGB, 0, shape.across, shape.down, 0, 0};
    if (swapped) std::swap(header->biXPelsPerMeter, header->biYPelsPerMeter);
    loading->target = {(uint8_t*)(header + 1), shape.width, shape.height, shape.orientation};
    if (loading->progress) loading->progress->allRows = shape.height;
    return PhotoStatus::Ok;
}

static bool takeLoading(void* context, const uint8_t* bgra, ptrdiff_t stride, int firstRow, int rowCount)
{
    const Loading* loading = (const Loading*)context;
    placeRowsOverWhite(loading->target, bgra, stride, firstRow, rowCount);
    if (!loading->progress) return true;
    loading->progress->rows += rowCount;
    return !loading->progress->stop;
}

static EditedPhoto editedPhoto(const LockedPhoto& locked, Progress* progress)
{
    const BITMAPINFOHEADER* header = locked.header;
    if (!header) return {};
    return {locked.bits(),           (int)header->biWidth,    (int)header->biHeight,
            header->biXPelsPerMeter, header->biYPelsPerMeter, progress ? &progress->rows : nullptr};
}

static PhotoStatus writeFormat(FILE* file, PhotoFormat format, const EditedPhoto& photo, const SourcePhoto& source)
{
    const bool same = (format == PhotoFormat::Jpeg && source.kind == PhotoKind::Jpeg) ||
                      (format == PhotoFormat::Png && source.kind == PhotoKind::Png) ||
                      (format == PhotoFormat::Bmp && source.kind == PhotoKind::Bmp);
    FILE* original = same ? _wfopen(source.path.c_str(), L"rb") : nullptr;
    FILE* again = original ? _wfopen(source.path.c_str(), L"rb") : nullptr;
    PhotoStatus status = PhotoStatus::CannotEncode;
    if (format == PhotoFormat::Jpeg) status = writeJpeg(file, photo, source.facts, again ? original : nullptr, again);
    if (format == PhotoFormat::Png) status = writePng(file, photo, source.facts, original);
    if (format == PhotoFormat::Bmp) status = writeBitmap(file, photo, source.facts, original);
    if (original) fclose(original);
    if (again) fclose(again);
    return status;
}

// Once more, everything anew: the original may be gone, or too large to keep its blocks. Not where more than that would
// go without a word.
static bool tryAnew(FILE* file, PhotoStatus status, const PhotoFacts& facts)
{
    if (status == PhotoStatus::Ok || status == PhotoStatus::CannotWrite) return false;
    if (facts.alpha || facts.deep || facts.inks) return false;
    rewind(file);
    return _chsize_s(_fileno(file), 0) == 0;
}

static PhotoStatus writeStream(const std::wstring& path, PhotoFormat format, const EditedPhoto& photo,
                               const SourcePhoto& source)
{
    FILE* file = _wfopen(path.c_str(), L"r+b");
    if (!file) return PhotoStatus::CannotWrite;
    PhotoStatus status = writeFormat(file, format, photo, source);
    SourcePhoto anew = source;
    anew.kind = PhotoKind::Other;
    if (source.kind != PhotoKind::Other && tryAnew(file, status, anew.facts))
        status = writeFormat(file, format, photo, anew);
    const bool flushed = fflush(file) == 0 && !ferror(file) && _commit(_fileno(file)) == 0;
    const DWORD error = GetLastError();
    fclose(file);
    SetLastError(flushed ? error : error ? error : ERROR_DISK_FULL);
    return status == PhotoStatus::Ok && !flushed ? PhotoStatus::CannotWrite : status;
}

// What the system has put off until now may fail, too.
static bool reachesDisk(const std::wstring& path)
{
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const bool flushed = file != INVALID_HANDLE_VALUE && FlushFileBuffers(file);
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    return flushed;
}

// The written file against the picture, row by row.
struct Comparing {
    EditedPhoto photo;
    UprightTarget upright;
    std::vector<uint8_t> row, seen;
    uint64_t difference = 0, lastBand = 0, lastCount = 1;
    int rows = 0;
};

static PhotoStatus beginComparing(void* context, const PhotoShape& shape)
{
    Comparing* comparing = (Comparing*)context;
    const bool same =
        shape.orientation == 1 && shape.width == comparing->photo.width && shape.height == comparing->photo.height;
    return same ? PhotoStatus::Ok : PhotoStatus::CannotEncode;
}

static bool takeComparing(void* context, const uint8_t* bgra, ptrdiff_t stride, int firstRow, int rowCount)
{
    Comparing* comparing = (Comparing*)context;
    const int width = comparing->photo.width;
    comparing->lastBand = 0;
    comparing->lastCount = (uint64_t)width * rowCount * 3;
    for (int row = 0; row < rowCount; ++row) {
        gatherRows(comparing->upright, firstRow + row, 1, comparing->row.data(), 0);
        const uint8_t *shown = bgra + row * stride, *meant = comparing->row.data();
        for (int x = 0; x < width; ++x, shown += 4, meant += 3)
            for (int channel = 0; channel < 3; ++channel)
                comparing->lastBand += (uint64_t)abs(overWhite(shown[channel], shown[3]) - meant[channel]);
    }
    comparing->difference += comparing->lastBand;
    comparing->rows += rowCount;
    return true;
}

static PhotoStatus loadRows(const std::wstring& path, HGLOBAL* image, SourcePhoto* source, Progress* progress)
{
    Loading loading = {nullptr, {}, progress, {}};
    const PhotoStatus status = readRows(path, {&loading, beginLoading, takeLoading}, &source->kind, &source->facts);
    *image = loading.image;
    return status;
}

PhotoStatus readPhoto(const std::wstring& path, HGLOBAL* image, SourcePhoto* source, Progress* progress)
{
    *image = nullptr;
    *source = {};
    source->path = path;
    PhotoStatus status = probeFile(path.c_str());
    if (status != PhotoStatus::Ok) return status;
    status = loadRows(path, image, source, progress);
    if (status == PhotoStatus::Ok) return status;
    GlobalFree(*image);
    *image = nullptr;
    return status;
}

PhotoStatus writePhoto(const std::wstring& path, PhotoFormat format, HGLOBAL image, const SourcePhoto* source,
                       Progress* progress)
{
    const LockedPhoto locked(image);
    const EditedPhoto photo = editedPhoto(locked, progress);
    if (!photo.bits) return PhotoStatus::CannotEncode;
    if (progress) progress->allRows = 2 * photo.height;  // written, and read again
    static const SourcePhoto none;
    const SourcePhoto& from = source ? *source : none;
    if (format != PhotoFormat::Tiff) return writeStream(path, format, photo, from);
    const wchar_t* original = from.kind == PhotoKind::Tiff ? from.path.c_str() : nullptr;
    const PhotoStatus status = writeTiff(path.c_str(), photo, from.facts, original);
    return status == PhotoStatus::Ok && !reachesDisk(path) ? PhotoStatus::CannotWrite : status;
}

bool verifyPhoto(const std::wstring& path, PhotoFormat format, HGLOBAL image, const SourcePhoto* source,
                 Progress* progress, PhotoFacts* written)
{
    const LockedPhoto locked(image);
    Comparing comparing;
    comparing.photo = editedPhoto(locked, progress);
    comparing.upright = editedInFile(comparing.photo, 1);
    comparing.row.resize((size_t)comparing.photo.width * 3);
    PhotoKind kind;
    PhotoFacts facts;
    const uint64_t count = (uint64_t)comparing.photo.width * comparing.photo.height * 3;
    // What an encoder may change: nothing; or what a profile, alpha or JPEG costs, which on the mean of many pixels is
    // little even for noise.
    const bool exact =
        format != PhotoFormat::Jpeg && !(source && (source->facts.alpha || !source->facts.profile.empty()));
    const uint64_t most = exact ? 0 : 48;
    const bool good = readRows(path, {&comparing, beginComparing, takeComparing}, &kind, &facts) == PhotoStatus::Ok &&
                      comparing.rows == comparing.photo.height && comparing.difference <= most * count &&
                      comparing.lastBand <= most * comparing.lastCount;
    if (written) *written = facts;
    return good;
}
