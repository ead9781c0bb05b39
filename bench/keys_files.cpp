// Selection files: writing and reading one of 3000 x 2000 pixels in the current directory.
#include "bench/keys.h"

#include <cstring>

#include "bench/synthetic.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"
#include "library/format/tiff_writer.h"
#include "library/selection_file.h"
#include "selection/geometry/outline.h"

constexpr int WIDTH = 3000, HEIGHT = 2000;
constexpr WCHAR FILE_NAME[] = L"kovbench_selection.tif";

static HGLOBAL image, mask, imageRead, maskRead;

static BitsView lockedView(HGLOBAL bitmap)
{
    BYTE* bits = lockBitmapBits(bitmap);
    return bits ? viewOfBits(bits, bitmapWidth(bitmap), bitmapHeight(bitmap)) : BitsView{};
}

static void freeBitmap(HGLOBAL* bitmap)
{
    releaseBlock(*bitmap);
    *bitmap = nullptr;
}

// White with the spans of the outline black.
static void fillMask(const BitsView& view, const Outline& outline)
{
    for (int y = 0; y < view.height; ++y) {
        uint8_t* const row = rowOf(view, y);
        memset(row, 0xFF, (size_t)view.width * 3);
        SpanWalk walk = beginSpans(crossingsOfRow(outline.crossings, y));
        for (CrossingSpan span; nextSpan(walk, span);) {
            memset(row + (size_t)span.left * 3, 0, (size_t)(span.right - span.left) * 3);
        }
    }
}

static bool drawMask(const BitsView& view)
{
    Outline outline = {};
    if (!startOutline(outline, view.height, outlinePoint(0))) return false;
    for (int i = 1; i < OUTLINE_POINTS; ++i)
        extendOutline(outline, outlinePoint(i));
    closeOutline(outline, outlinePoint(OUTLINE_POINTS - 1));
    const bool complete = !outline.incomplete;
    if (complete) fillMask(view, outline);
    freeOutline(outline);
    return complete;
}

static bool makeSelection(int)
{
    image = createBitmap(WIDTH, HEIGHT, 24);
    mask = createBitmap(WIDTH, HEIGHT, 24);
    const BitsView imageView = lockedView(image), maskView = lockedView(mask);
    if (!imageView.row0 || !maskView.row0) return false;
    fillPhoto(imageView, 2);
    const bool right = inputIsRight(imageView, PHOTO2_3000X2000) && drawMask(maskView);
    unlockBitmap(image);
    unlockBitmap(mask);
    return right;
}

static bool writeSelection(int)
{
    return writeSelectionTiff(FILE_NAME, image, mask);
}

// The writer into a file that nobody waits for: writeSelection also waits until the bytes are on the disk.
static bool writeToHandle(void* file, const void* bytes, uint32_t count)
{
    DWORD written;
    return WriteFile(file, bytes, count, &written, nullptr) && written == count;
}

static bool writeUnflushed(int)
{
    const BitsView imageView = lockedView(image), maskView = lockedView(mask);
    const HANDLE file =
        CreateFileW(FILE_NAME, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    const SelectionImages selection = {imageView, maskView, {0, 0}, {0, 0}};
    const bool written = writeSelectionImages(ByteSink{writeToHandle, file}, selection);
    CloseHandle(file);
    unlockBitmap(image);
    unlockBitmap(mask);
    return written;
}

static void removeFile(int)
{
    DeleteFileW(FILE_NAME);
}

static uint32_t crcOfFile(int)
{
    HANDLE file = CreateFileW(FILE_NAME, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 0;
    static uint8_t bytes[65536];
    uint32_t crc = 0;
    for (DWORD read = 0; ReadFile(file, bytes, sizeof bytes, &read, nullptr) && read > 0;)
        crc = crc32(bytes, read, crc);
    CloseHandle(file);
    return crc;
}

static void freeRead(int)
{
    freeBitmap(&imageRead);
    freeBitmap(&maskRead);
}

static bool makeFile(int variant)
{
    return makeSelection(variant) && writeSelection(variant);
}

static bool readSelection(int)
{
    return readSelectionBitmaps(FILE_NAME, &imageRead, &maskRead);
}

static uint32_t addRows(HGLOBAL bitmap, uint32_t crc)
{
    const BitsView view = lockedView(bitmap);
    if (!view.row0) return 0;
    for (int y = view.height - 1; y >= 0; --y)
        crc = crc32(rowOf(view, y), (size_t)view.width * 3, crc);
    unlockBitmap(bitmap);
    return crc;
}

static uint32_t crcOfRead(int)
{
    return addRows(maskRead, addRows(imageRead, 0));
}

static void release(int variant)
{
    freeRead(variant);
    freeBitmap(&image);
    freeBitmap(&mask);
    removeFile(variant);
}

static const BenchKey keys[] = {
    {"tiff_write_3000x2000", "MP/s", 6, 0, makeSelection, removeFile, writeSelection, crcOfFile, release},
    {"tiff_write_unflushed_3000x2000", "MP/s", 6, 0, makeSelection, removeFile, writeUnflushed, crcOfFile, release},
    {"tiff_read_3000x2000", "MP/s", 6, 0, makeFile, freeRead, readSelection, crcOfRead, release},
};
const BenchGroup fileKeys = {keys, sizeof keys / sizeof keys[0]};
