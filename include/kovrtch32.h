/* KOVRTCH32: retouch one colour photograph in a window of its own. For C (C89 and later) and C++.

   KOVRTCH32.dll exports one function, by ordinal 2 only (no name). Either link with the import library
   (libkovrtch32.a or kovrtch32.lib) and call `entry`, or load the library when it is needed:

       HMODULE library = LoadLibraryA("KOVRTCH32.dll");
       RetouchEntry retouch = (RetouchEntry)GetProcAddress(library, MAKEINTRESOURCEA(KOVRTCH32_ENTRY_ORDINAL));
       int saved = retouch(parent, image, &dialogRect, &palettePos);

   KOVRTCH32.dll loads KOVCTRL32.dll, built for the same number of bits, from the same folder. Where that one is
   missing, LoadLibrary fails with ERROR_MOD_NOT_FOUND (126); where it, or KOVRTCH32.dll itself, is built for another
   number of bits than the program, with ERROR_BAD_EXE_FORMAT (193). */
#ifndef KOVRTCH32_H
#define KOVRTCH32_H

#include <windows.h>

#define KOVRTCH32_ENTRY_ORDINAL 2

#define KOVRTCH32_PALETTE_WIDTH 48 /* in dialog units */
#define KOVRTCH32_PALETTE_HEIGHT 277

#ifdef __cplusplus
extern "C" {
#endif

/* Runs one editing session: opens the editor, returns when the user is done.

   parent      The host's window, of the calling thread. Disabled for the session, enabled and active again afterwards.
               May be null; then nothing is disabled and the editor has no owner.
   image       A movable global memory block (GlobalAlloc with GMEM_MOVEABLE) that holds a packed device-independent
               bitmap: a BITMAPINFOHEADER with biBitCount 24, biCompression BI_RGB, positive width and height, then
               the pixel rows, bottom row first, each padded to a multiple of 4 bytes, pixels blue, green, red. A 24-bit
               image has no colour table: the rows follow biSize bytes of header directly, whatever biClrUsed says. The
               block stays the host's: the library writes into it but never frees, reallocates or keeps it. The host
               leaves it alone, neither locked nor freed, until the call returns.
               With a sound bitmap of another depth the window opens, too, but shows black; it is never changed.
   dialogRect  Screen rectangle in pixels (x to the right, y down; right and bottom exclusive) that the editing window,
               frame included, is to occupy. The image fills all that is inside the frame (SM_CXFRAME, SM_CYFRAME,
               SM_CYCAPTION), stretched when the proportions differ; the user's resizing keeps the proportions that it
               has here. When nothing is left inside the frame, the window takes the image's own size.
   palettePos  Screen position in pixels of the tool palette's top-left corner. The palette is KOVRTCH32_PALETTE_WIDTH
   by KOVRTCH32_PALETTE_HEIGHT dialog units of 8 point "Helv" inside a dialog frame (WS_DLGFRAME): a hidden dialog of
   that size and font tells how many pixels that is.

   Returns 1 when the user pressed Save: the image holds the edited picture.
   Returns 0 when the user left in any other way, or when the session could not start (null or unsound image, null
   pointers, out of memory, a session already running): the image holds the bytes it had at the call, except that an
   adjustment confirmed in the contrast dialog stays.

   Calling convention: WINAPI (__stdcall on 32-bit Windows, where the stack may be aligned to 4 bytes only). No
   exception, C++ or structured, leaves the call; the host's window procedures, which run inside it, must not throw,
   longjmp or end the thread through it either.

   Threads: the session runs on the calling thread, which becomes a thread with windows, in a message loop of its own
   that also dispatches the messages of the thread's other windows. One session at a time in a process; a call during
   another returns 0 at once, the next may follow as soon as the first has returned. A quit message of the host's own
   ends the session as Close does and is posted again. The library initialises no COM and needs none; it may be called
   with COM initialised in any way, or not at all.

   Memory: some three times the size of the image while the session lasts (a copy to go back to, the rows of the
   stroke in hand, undo steps of the size of what they change), and a 32-bit process needs its largest piece in one
   run of addresses: count on 100 megapixels there. Widths and heights are limited by the block's size alone.

   DPI: all rectangles are in pixels of the calling process as Windows presents the screen to it. A host that declares
   itself DPI aware gets dialogs in the size of the system's dialog font and a picture in true pixels. */
#ifndef KOVRTCH32_NO_PROTOTYPE
int WINAPI entry(HWND parent, HGLOBAL image, RECT* dialogRect, POINT* palettePos);
#endif

/* The type of the function, for GetProcAddress. */
typedef int(WINAPI* RetouchEntry)(HWND parent, HGLOBAL image, RECT* dialogRect, POINT* palettePos);

#ifdef __cplusplus
}
#endif

#endif
