#include "library/selection_file.h"

#include <cwchar>

#include "image/bitmap_locks.h"
#include "image/kept_blocks.h"
#include "image/made_bitmap.h"
#include "library/format/tiff_reader.h"
#include "library/format/tiff_writer.h"
#include "session/ground/session_record.h"

// ---- writing ----

static bool writeToHandle(void* context, const void* bytes, uint32_t count)
{
    DWORD written = 0;
    return WriteFile((HANDLE)context, bytes, count, &written, nullptr) && written == count;
}

static Resolution resolutionOf(const LockedPixels& pixels)
{
    return {pixels.header()->biXPelsPerMeter, pixels.header()->biYPelsPerMeter};
}

static bool writeBitmaps(HANDLE file, HGLOBAL image, HGLOBAL mask)
{
    const LockedPixels pixels(image), marks(mask);
    if (!pixels || !marks) return false;
    const SelectionImages selection = {pixels.view, marks.view, resolutionOf(pixels), resolutionOf(marks)};
    return writeSelectionImages(ByteSink{writeToHandle, file}, selection);
}

// The name under which a file is written: as long as its own (which may be the longest that the system
// takes), with another last character, so that no search for "*.tif" finds it.
static bool unpublishedPath(LibraryPath* unpublished, const WCHAR* path)
{
    const size_t length = wcslen(path);
    if (length == 0 || length >= MODULE_PATH_SIZE) return false;
    wcscpy(unpublished->text, path);
    WCHAR* const last = unpublished->text + length - 1;
    *last = *last == L'~' ? L'_' : L'~';
    return true;
}

bool writeUnpublished(const WCHAR* path, HGLOBAL image, HGLOBAL mask)
{
    LibraryPath unpublished;
    if (!image || !mask || !unpublishedPath(&unpublished, path)) return false;
    // What is shared lets the file be renamed or deleted even if the system refuses to close it.
    HANDLE file = CreateFileW(unpublished.text, GENERIC_WRITE, FILE_SHARE_DELETE, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    // Only bytes that are on the disk may get their name: a power cut must not leave a file of zeros in view.
    const bool written = writeBitmaps(file, image, mask) && FlushFileBuffers(file);
    CloseHandle(file);
    if (!written) DeleteFileW(unpublished.text);
    return written;
}

bool publishWritten(const WCHAR* path)
{
    LibraryPath unpublished;
    return unpublishedPath(&unpublished, path) &&
           MoveFileExW(unpublished.text, path, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

void discardWritten(const WCHAR* path)
{
    LibraryPath unpublished;
    if (unpublishedPath(&unpublished, path)) DeleteFileW(unpublished.text);
}

int writeSelectionTiff(const WCHAR* path, HGLOBAL image, HGLOBAL mask)
{
    if (!path || !writeUnpublished(path, image, mask)) return 0;
    if (publishWritten(path)) return 1;
    discardWritten(path);
    return 0;
}

// ---- reading ----

static bool readFromHandle(void* context, uint64_t offset, void* bytes, uint32_t count)
{
    LARGE_INTEGER position;
    position.QuadPart = (LONGLONG)offset;
    DWORD read = 0;
    return SetFilePointerEx((HANDLE)context, position, nullptr, FILE_BEGIN) &&
           ReadFile((HANDLE)context, bytes, count, &read, nullptr) && read == count;
}

// Opens the file and reads what its first directory says. Nothing is open after a failure.
static bool openSelection(const WCHAR* path, ByteSource* source, SelectionDescription* description)
{
    if (!path) return false;
    const DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE file = CreateFileW(path, GENERIC_READ, sharing, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    LARGE_INTEGER size;
    if (GetFileSizeEx(file, &size)) {
        *source = {(uint64_t)size.QuadPart, readFromHandle, file};
        if (readSelectionDescription(*source, description)) return true;
    }
    CloseHandle(file);
    return false;
}

static void closeSelection(const ByteSource& source)
{
    CloseHandle((HANDLE)source.context);
}

typedef bool (*ReadPixels)(const ByteSource& source, const SelectionDescription& description, const BitsView& view);

// A new bitmap with the file's resolution, filled by `read`; null when that fails.
static HGLOBAL readBitmap(const ByteSource& source, const SelectionDescription& description, int width, int height,
                          ReadPixels read)
{
    return makeAllPixels(width, height, [&](const LockedPixels& pixels) {
        pixels.header()->biXPelsPerMeter = description.xPelsPerMetre;
        pixels.header()->biYPelsPerMeter = description.yPelsPerMetre;
        return read(source, description, pixels.view);
    });
}

HGLOBAL readSelectionThumbnail(const WCHAR* path)
{
    ByteSource source;
    SelectionDescription description;
    if (!openSelection(path, &source, &description)) return nullptr;
    HGLOBAL thumbnail = readBitmap(source, description, THUMBNAIL_WIDTH, THUMBNAIL_HEIGHT, readThumbnailPixels);
    closeSelection(source);
    return thumbnail;
}

bool readSelectionBitmaps(const WCHAR* path, HGLOBAL* image, HGLOBAL* mask)
{
    ByteSource source;
    SelectionDescription description;
    *image = *mask = nullptr;
    if (!openSelection(path, &source, &description)) return false;
    const int width = description.width, height = description.height;
    if (hasMaskBytes(source, description)) {
        *image = readBitmap(source, description, width, height, readSelectionPixels);
        if (*image) *mask = readBitmap(source, description, width, height, readSelectionMaskPixels);
    }
    closeSelection(source);
    if (*mask) return true;
    releaseBlock(*image);
    *image = nullptr;
    return false;
}

static void replaceBlock(HGLOBAL* field, HGLOBAL block)
{
    releaseBlock(*field);
    *field = block;
}

int readSelectionTiff(const WCHAR* path)
{
    HGLOBAL image, mask;
    if (!session || !readSelectionBitmaps(path, &image, &mask)) return 0;
    replaceBlock(&session->selectionImage, image);
    replaceBlock(&session->selectionMask, mask);
    return 1;
}
