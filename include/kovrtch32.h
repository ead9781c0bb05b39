// KOVRTCH32: retouch one colour photograph in a window of its own.
//
// KOVRTCH32.dll exports one function, by ordinal 2 only (no name):
//
//     HMODULE library = LoadLibraryA("KOVRTCH32.dll");
//     RetouchEntry retouch = (RetouchEntry)GetProcAddress(library, MAKEINTRESOURCEA(KOVRTCH32_ENTRY_ORDINAL));
//     int saved = retouch(parent, image, &dialogRect, &palettePos);
//
// The call runs a whole editing session on the caller's thread, with a message loop of its own that
// also dispatches the messages of the host's other windows, and returns when the user is done.
#pragma once

#include <windows.h>

#define KOVRTCH32_ENTRY_ORDINAL 2

// parent      The host's window. Disabled for the session, enabled again afterwards.
// image       A movable global memory block (GlobalAlloc with GMEM_MOVEABLE) that holds a packed
//             device-independent bitmap: a BITMAPINFOHEADER with biBitCount 24, biCompression BI_RGB,
//             positive width and height, then the pixel rows, bottom row first, each padded to a
//             multiple of 4 bytes, pixels blue, green, red. A 24-bit image has no colour table: the
//             rows follow biSize bytes of header directly, whatever biClrUsed says. The block stays the
//             host's: the library writes into it but never frees, reallocates or keeps it. It must not
//             be locked by the host.
//             With a sound bitmap of another depth the window opens, too, but shows black; it is never changed.
// dialogRect  Screen rectangle in pixels that the editing window, frame included, is to occupy. The image
//             fills all that is inside the frame (SM_CXFRAME, SM_CYFRAME, SM_CYCAPTION), stretched when the
//             proportions differ; the user's resizing keeps the proportions that it has here. When nothing
//             is left inside the frame, the window takes the image's own size.
// palettePos  Screen position in pixels of the tool palette's top-left corner.
//
// Returns 1 when the user pressed Save: the image holds the edited picture.
// Returns 0 when the user left in any other way, or when the session could not start (null or unsound
// image, null pointers, out of memory): the image holds the bytes it had at the call, except that an
// adjustment confirmed in the contrast dialog stays.
//
// One session at a time in a process; the next call may follow as soon as the first has returned.
typedef int(WINAPI* RetouchEntry)(HWND parent, HGLOBAL image, RECT* dialogRect, POINT* palettePos);
