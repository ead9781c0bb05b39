// exchange_selections write|check DIRECTORY: writes selection files through the library's file layer, or reads
// them and compares what they hold. Run in both builds, each checks what the other has written.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "image/packed_bitmap.h"
#include "library/selection_file.h"
#include "tests/reference/tiff_reference.h"

static const int sizes[][2] = {{1, 1}, {17, 9}, {100, 10}, {10, 100}, {3000, 2000}};

static HGLOBAL packed(const reference::Picture& image)
{
    const std::vector<uint8_t> rows = storedRows(image, 0);
    const HGLOBAL bitmap = createBitmap(image.width, image.height, 24);
    BITMAPINFOHEADER* const header = (BITMAPINFOHEADER*)GlobalLock(bitmap);
    memcpy(header + 1, rows.data(), rows.size());
    GlobalUnlock(bitmap);
    return bitmap;
}

static bool shows(HGLOBAL bitmap, const reference::Picture& image)
{
    const BITMAPINFOHEADER* const header = (const BITMAPINFOHEADER*)GlobalLock(bitmap);
    const bool same =
        header && header->biWidth == image.width && header->biHeight == image.height &&
        reference::fromStoredRows((const uint8_t*)(header + 1), header->biWidth, header->biHeight).pixels ==
            image.pixels;
    GlobalUnlock(bitmap);
    return same;
}

static bool writeOne(const std::wstring& path, const ReferenceSelection& selection)
{
    const HGLOBAL image = packed(selection.image), mask = packed(selection.mask);
    const bool written = writeSelectionTiff(path.c_str(), image, mask) == 1;
    GlobalFree(image);
    GlobalFree(mask);
    return written;
}

static bool checkOne(const std::wstring& path, const ReferenceSelection& selection)
{
    HGLOBAL image, mask;
    if (!readSelectionBitmaps(path.c_str(), &image, &mask)) return false;
    const bool same = shows(image, selection.image) && shows(mask, selection.mask);
    GlobalFree(image);
    GlobalFree(mask);
    return same;
}

int main(int count, char** arguments)
{
    if (count != 3) return 2;
    const bool writes = strcmp(arguments[1], "write") == 0;
    const std::string name = arguments[2];
    int failures = 0;
    for (const auto& size : sizes) {
        const std::wstring path = std::wstring(name.begin(), name.end()) + L"\\" + std::to_wstring(size[0]) + L"x" +
                                  std::to_wstring(size[1]) + L".tif";
        const ReferenceSelection selection = randomSelection((unsigned)size[0], size[0], size[1]);
        if (writes ? writeOne(path, selection) : checkOne(path, selection)) continue;
        printf("%d x %d cannot be %s\n", size[0], size[1], writes ? "written" : "read back");
        ++failures;
    }
    return failures ? 1 : 0;
}
