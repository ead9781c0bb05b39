// Dialogs made of the control library's classes, real input, and waiting for what it leads to.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <vector>

// The library's functions, taken by ordinal.
struct ControlLibrary {
    HMODULE module;
    int(WINAPI* setButtonPicture)(HWND, HBITMAP, int);
    int(WINAPI* displayMode)(void);
    int(WINAPI* paintDialogBackground)(HWND, HDC, int);
    int(WINAPI* releaseDialog)(HWND);
    int(WINAPI* dragBitmap)(HWND, HGLOBAL, const RECT*, POINT, COLORREF);
    int(WINAPI* nameControl)(HWND, const WCHAR*);
    int(WINAPI* showBarValue)(HWND, BOOL);
};

// Loads the library that lies beside the test program, once.
const ControlLibrary& controlLibrary();

struct ControlSpec {
    const wchar_t* className;
    const wchar_t* text;
    WORD id;
    DWORD style;                // WS_CHILD | WS_VISIBLE are added
    short x, y, width, height;  // dialog units
};

// What happened to the dialog of the running test.
struct DialogLog {
    std::vector<int> clicks;                                     // ids of BN_CLICKED
    std::function<INT_PTR(HWND, UINT, WPARAM, LPARAM)> handler;  // asked first; 0 goes on
};
extern DialogLog dialogLog;

// A dialog 180 x 100 units at (200, 150), made by CreateDialogIndirectParamA. Clears the log.
HWND openDialog(const std::vector<ControlSpec>& controls, bool visible = true);
void closeDialog(HWND dialog);  // as the real dialogs do: releaseDialog() on WM_DESTROY

// Long enough for the busiest machine: only a failing test waits so long.
constexpr DWORD WAIT_LIMIT_MS = 20000;

// Runs the dialog's message loop until the condition holds; false after WAIT_LIMIT_MS.
bool waitFor(HWND dialog, const std::function<bool()>& condition);

// Brings the dialog to the foreground and empties its queue.
bool activate(HWND dialog);

// Real input.
void movePointer(POINT screen);
void pressLeft();
void releaseLeft();
void typeKey(WORD key);
POINT middleOf(HWND window);

// Puts the pointer on a control and clicks it.
void clickControl(HWND dialog, int id);

// A picture in one piece: rows top-down, 0x00RRGGBB.
struct Picture {
    int width, height;
    std::vector<uint32_t> pixels;
    uint32_t at(int x, int y) const { return pixels[(size_t)y * width + x]; }
    int count(uint32_t colour) const;
    bool operator==(const Picture& other) const { return width == other.width && pixels == other.pixels; }
};
Picture printed(HWND control);    // what it draws on WM_PRINTCLIENT
Picture onScreen(HWND control);   // what its window shows
uint32_t systemPixel(int index);  // a system colour as a pixel

// A bitmap of one colour (0x00RRGGBB), with a frame of the transparent colour.
HBITMAP solidBitmap(int width, int height, uint32_t colour, int frame = 0);
