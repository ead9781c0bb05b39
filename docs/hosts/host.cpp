// The smallest host in C++: loads a 24-bit BMP file, lets the user retouch it, writes retouched.bmp. It loads the
// library when it is needed and says what is wrong with an installation.
//
//     i686-w64-mingw32-g++-posix -std=c++17 -I. host.cpp -o host.exe -static
//
// kovrtch32.h lies in the current folder then; KOVRTCH32.dll and KOVCTRL32.dll beside the program.
#include "kovrtch32.h"

#include <cstdio>
#include <initializer_list>

// The bitmap without its file header is what the library takes. A 24-bit image has no colour table: one that the
// file may hold between header and rows is left out. The caller frees the block.
static HGLOBAL loadBitmapFile(const char* path)
{
    FILE* file = fopen(path, "rb");
    if (!file) return nullptr;
    BITMAPFILEHEADER head = {};
    BITMAPINFOHEADER info = {};
    HGLOBAL image = nullptr;
    if (fread(&head, sizeof head, 1, file) == 1 && fread(&info, sizeof info, 1, file) == 1 &&
        info.biSize == sizeof info && info.biBitCount == 24 && info.biCompression == BI_RGB && info.biWidth > 0 &&
        info.biHeight > 0) {
        const size_t stride = ((size_t)info.biWidth * 3 + 3) & ~(size_t)3;
        const size_t pixels = stride * (size_t)info.biHeight;
        if (info.biWidth < 20000 && info.biHeight < 20000) image = GlobalAlloc(GMEM_MOVEABLE, sizeof info + pixels);
        BITMAPINFOHEADER* packed = image ? (BITMAPINFOHEADER*)GlobalLock(image) : nullptr;
        fseek(file, (long)head.bfOffBits, SEEK_SET);
        const bool whole = packed && fread(packed + 1, pixels, 1, file) == 1;
        if (packed) {
            *packed = info;
            packed->biClrUsed = packed->biClrImportant = 0;
            GlobalUnlock(image);  // the library locks it itself
        }
        if (!whole) image = GlobalFree(image);
    }
    fclose(file);
    return image;
}

static bool saveBitmapFile(const char* path, HGLOBAL image)
{
    FILE* file = fopen(path, "wb");
    if (!file) return false;
    const BITMAPINFOHEADER* packed = (const BITMAPINFOHEADER*)GlobalLock(image);
    const size_t stride = ((size_t)packed->biWidth * 3 + 3) & ~(size_t)3;
    const size_t size = sizeof *packed + stride * (size_t)packed->biHeight;
    BITMAPFILEHEADER head = {};
    head.bfType = 0x4D42;  // "BM"
    head.bfSize = (DWORD)(sizeof head + size);
    head.bfOffBits = sizeof head + sizeof *packed;
    bool written = fwrite(&head, sizeof head, 1, file) == 1 && fwrite(packed, size, 1, file) == 1;
    GlobalUnlock(image);
    written = fclose(file) == 0 && written;
    return written;
}

// Where the editor goes on the screen, frame included. The picture fills all of what is inside the frame, so that
// must have the picture's proportions: here the largest such size up to 1000 x 700.
static RECT editorPlace(HGLOBAL image)
{
    const BITMAPINFOHEADER* packed = (const BITMAPINFOHEADER*)GlobalLock(image);
    LONG width = 1000, height = MulDiv(width, packed->biHeight, packed->biWidth);
    if (height > 700) {
        height = 700;
        width = MulDiv(height, packed->biWidth, packed->biHeight);
    }
    GlobalUnlock(image);
    return {140, 60, 140 + width + 2 * GetSystemMetrics(SM_CXFRAME),
            60 + height + 2 * GetSystemMetrics(SM_CYFRAME) + GetSystemMetrics(SM_CYCAPTION)};
}

// The library needs KOVCTRL32.dll, and the system does not say which of the two it could not load.
static void explainMissingLibrary()
{
    for (const char* name : {"KOVCTRL32.dll", "KOVRTCH32.dll"}) {
        HMODULE module = LoadLibraryA(name);
        const DWORD error = module ? 0 : GetLastError();
        if (module) FreeLibrary(module);
        if (error == ERROR_BAD_EXE_FORMAT) {
            fprintf(stderr, "%s is built for another number of bits than this program.\n", name);
        } else if (error) {
            fprintf(stderr, "%s is missing or damaged (error %lu).\n", name, error);
        }
        if (error) return;
    }
}

int main(int count, char** words)
{
    HMODULE library = LoadLibraryA("KOVRTCH32.dll");
    RetouchEntry retouch =
        library ? (RetouchEntry)(void*)GetProcAddress(library, MAKEINTRESOURCEA(KOVRTCH32_ENTRY_ORDINAL)) : nullptr;
    if (!retouch) {
        explainMissingLibrary();
        return 3;
    }
    HGLOBAL image = count == 2 ? loadBitmapFile(words[1]) : nullptr;
    if (!image) {
        fprintf(stderr, "Usage: host PHOTO.bmp (24 bits a pixel)\n");
        return 2;
    }
    HWND window = CreateWindowA("STATIC", words[1], WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 1200, 800, nullptr, nullptr,
                                nullptr, nullptr);
    RECT dialog = editorPlace(image);
    POINT palette = {20, 60};                                     // the tool palette's top-left corner
    const int saved = retouch(window, image, &dialog, &palette);  // returns when the user is done
    const bool written = saved == 1 && saveBitmapFile("retouched.bmp", image);
    DestroyWindow(window);
    GlobalFree(image);  // the image has stayed ours
    FreeLibrary(library);
    puts(written ? "Saved: retouched.bmp" : "Nothing saved.");
    return written ? 0 : 1;
}
