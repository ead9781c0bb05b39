/* The smallest host in C: loads a 24-bit BMP file, lets the user retouch it, writes retouched.bmp. It is linked with the
   import library, so Windows loads KOVRTCH32.dll when the program starts.

       i686-w64-mingw32-gcc -std=c89 -I. host.c -L. -lkovrtch32 -o host.exe

   kovrtch32.h and libkovrtch32.a lie in the current folder then; KOVRTCH32.dll and KOVCTRL32.dll beside the program. */
#include "kovrtch32.h"

#include <stdio.h>

static size_t pixelBytes(const BITMAPINFOHEADER* info)
{
    return (((size_t)info->biWidth * 3 + 3) & ~(size_t)3) * (size_t)info->biHeight;
}

static int isSupported(const BITMAPINFOHEADER* info)
{
    return info->biSize == sizeof *info && info->biBitCount == 24 && info->biCompression == BI_RGB &&
           info->biWidth > 0 && info->biWidth < 20000 && info->biHeight > 0 && info->biHeight < 20000;
}

/* Reads the rows that follow the headers into a new block. The block is unlocked again: the library locks it itself. */
static HGLOBAL readPixels(FILE* file, const BITMAPINFOHEADER* info, DWORD offset)
{
    HGLOBAL image = GlobalAlloc(GMEM_MOVEABLE, sizeof *info + pixelBytes(info));
    BITMAPINFOHEADER* packed = image ? (BITMAPINFOHEADER*)GlobalLock(image) : NULL;
    int whole = 0;
    if (packed) {
        *packed = *info;
        packed->biClrUsed = packed->biClrImportant = 0; /* a colour table, only a hint in such a file, is left out */
        whole = fseek(file, (long)offset, SEEK_SET) == 0 && fread(packed + 1, pixelBytes(info), 1, file) == 1;
        GlobalUnlock(image);
    }
    if (!whole && image) image = GlobalFree(image);
    return image;
}

/* The bitmap without its file header is what the library takes. The caller frees the block. */
static HGLOBAL loadBitmapFile(const char* path)
{
    BITMAPFILEHEADER head;
    BITMAPINFOHEADER info;
    HGLOBAL image = NULL;
    FILE* file = fopen(path, "rb");
    if (!file) return NULL;
    if (fread(&head, sizeof head, 1, file) == 1 && fread(&info, sizeof info, 1, file) == 1 && isSupported(&info))
        image = readPixels(file, &info, head.bfOffBits);
    fclose(file);
    return image;
}

static int saveBitmapFile(const char* path, HGLOBAL image)
{
    BITMAPFILEHEADER head = {0};
    size_t size;
    int written = 0;
    const BITMAPINFOHEADER* packed = (const BITMAPINFOHEADER*)GlobalLock(image);
    FILE* file = packed ? fopen(path, "wb") : NULL;
    if (file) {
        size = sizeof *packed + pixelBytes(packed);
        head.bfType = 0x4D42; /* "BM" */
        head.bfSize = (DWORD)(sizeof head + size);
        head.bfOffBits = sizeof head + sizeof *packed;
        written = fwrite(&head, sizeof head, 1, file) == 1 && fwrite(packed, size, 1, file) == 1;
        written = fclose(file) == 0 && written;
    }
    if (packed) GlobalUnlock(image);
    return written;
}

/* Where the editor goes on the screen, frame included. The picture fills all of what is inside the frame, so that must
   have the picture's proportions: here the largest such size up to 1000 x 700. */
static RECT editorPlace(HGLOBAL image)
{
    const BITMAPINFOHEADER* packed = (const BITMAPINFOHEADER*)GlobalLock(image);
    LONG width = 1000, height = MulDiv(width, packed->biHeight, packed->biWidth);
    RECT place;
    if (height > 700) {
        height = 700;
        width = MulDiv(height, packed->biWidth, packed->biHeight);
    }
    GlobalUnlock(image);
    place.left = 140;
    place.top = 60;
    place.right = place.left + width + 2 * GetSystemMetrics(SM_CXFRAME);
    place.bottom = place.top + height + 2 * GetSystemMetrics(SM_CYFRAME) + GetSystemMetrics(SM_CYCAPTION);
    return place;
}

int main(int count, char** words)
{
    HWND window;
    RECT dialog;
    POINT palette = {20, 60}; /* the tool palette's top-left corner */
    int saved, written;
    HGLOBAL image = count == 2 ? loadBitmapFile(words[1]) : NULL;
    if (!image) {
        fprintf(stderr, "Usage: host PHOTO.bmp (24 bits a pixel)\n");
        return 2;
    }
    window = CreateWindowA("STATIC", words[1], WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 1200, 800, NULL, NULL, NULL,
                           NULL);
    dialog = editorPlace(image);
    saved = entry(window, image, &dialog, &palette); /* returns when the user is done */
    written = saved == 1 && saveBitmapFile("retouched.bmp", image);
    DestroyWindow(window);
    GlobalFree(image); /* the image has stayed ours */
    puts(written ? "Saved: retouched.bmp" : "Nothing saved.");
    return written ? 0 : 1;
}
