// KOVCTRL32: the control library that the dialogs are built on.
//
// Loading the library registers, for the process, the window classes "Bouton" (buttons, check boxes,
// radio buttons; class names are case-insensitive, so "bouton" is the same one) and "statique"
// (separators and labels). A control's text has the form "BB:TEXT", optionally followed by
// " BMP:..." (picture references of the resource format, ignored): TEXT is its caption when it has no
// picture, and its tooltip.
//
// A picture that the control has room for is shown pixel for pixel, and enlarged only from 1.5 times on; a larger
// one is scaled down. A 32-bit bitmap with alpha (colours multiplied by it; a DIB section) is blended with the face,
// in any other one the pixels of colour (192, 192, 192) are transparent. Check
// boxes and radio buttons with a picture, or with BS_PUSHLIKE, look like buttons that stay down.
//
// All functions are exported by ordinal only.
#pragma once

#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

// Ordinal 6. Gives a button its picture for a state: 0 normal, 1 pressed or checked, 2 disabled. A
// state without a picture uses picture 0. The library owns the bitmap from here on and deletes it
// when it is replaced or the control goes away. A null picture removes the state's picture.
// Returns 1, or 0 (the bitmap stays the caller's) when the window is no "Bouton", the
// state no state or the handle no bitmap.
int WINAPI setButtonPicture(HWND button, HBITMAP picture, int state);  // @6

// Ordinal 56. The display mode: always 2, which tells dialogs to attach their own pictures.
int WINAPI displayMode(void);  // @56

// Ordinal 220. Fills the update region's part of a dialog's background (on WM_ERASEBKGND).
// `style` is 0x42. Returns 1.
int WINAPI paintDialogBackground(HWND dialog, HDC dc, int style);  // @220

// Ordinal 221. Releases what the library keeps for a dialog (its tooltip window), on WM_DESTROY.
// Returns 1.
int WINAPI releaseDialog(HWND dialog);  // @221

// Ordinal 242. Runs a modal drag of a bitmap with the left button held down: the picture follows the
// pointer over the whole screen until the button goes up.
//   dialog      window that the rectangle's coordinates belong to; it receives the capture
//   bitmap      packed device-independent bitmap in global memory (24-bit); stays the caller's
//   rect        where the picture is at the start, client coordinates of `dialog`
//   grab        the pointer's place inside that rectangle
//   background  colour of the picture that is shown as transparent
// Returns 1 when the button was released (a drop, anywhere), 0 when the drag was cancelled (Escape,
// right button, capture lost) or could not start.
int WINAPI dragBitmap(HWND dialog, HGLOBAL bitmap, const RECT* rect, POINT grab, COLORREF background);  // @242

// Ordinal 300. Gives a control that is no "Bouton", as a scroll bar, a name in full words: its tooltip. The Tab key
// leads on from it. Returns 1, or 0 when the window is none of this process or memory is short.
int WINAPI nameControl(HWND control, const WCHAR* name);  // @300

// Ordinal 301. Tells that a named scroll bar stands elsewhere: name and position are shown beside it while `moving`,
// and screen readers hear of it. Returns 1, or 0 when the bar has no name.
int WINAPI showBarValue(HWND bar, BOOL moving);  // @301

// Ordinal 302. For windows that draw their own buttons: shows a mouse message to the tooltip window of the window's
// parent. `text` names what is under the pointer now (null: nothing) and appears after the usual delay. Returns 1, or
// 0 when there is no tooltip window.
int WINAPI relayTip(HWND window, UINT message, WPARAM wp, LPARAM lp, const WCHAR* text);  // @302

#ifdef __cplusplus
}
#endif
