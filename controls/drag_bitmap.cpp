// The modal drag of a bitmap (ordinal 242).
#include <stdint.h>
#include <windows.h>
#include <windowsx.h>

#include "controls/kovctrl32.h"
#include "controls/locked_dib.h"

// The picture that follows the pointer: a borderless window in the picture's shape.
struct DragPicture {
    HWND window;
    HBITMAP bitmap;
    SIZE size;
    POINT grab;  // the pointer's place inside the window
};

// A 24-bit packed bitmap whose block is large enough for its header says so.
static bool soundBitmap(const BITMAPINFOHEADER* header, SIZE_T blockSize)
{
    if (blockSize < sizeof *header || header->biSize < sizeof *header || header->biSize > blockSize) return false;
    if (header->biPlanes != 1 || header->biBitCount != 24 || header->biCompression != BI_RGB) return false;
    if (header->biWidth < 1 || header->biHeight < 1) return false;
    const uint64_t stride = ((uint64_t)header->biWidth * 3 + 3) & ~(uint64_t)3;
    const uint64_t bytes = stride * (uint64_t)header->biHeight;
    return bytes <= 0x7FFFFFFF && header->biSize + bytes <= blockSize;
}

// The picture keeps its size, unless it is larger than its place.
static SIZE shownSize(const BITMAPINFOHEADER* header, const RECT& rect)
{
    const LONG roomWidth = rect.right - rect.left, roomHeight = rect.bottom - rect.top;
    SIZE size = {header->biWidth, header->biHeight};
    if (size.cx <= roomWidth && size.cy <= roomHeight) return size;
    size = {roomWidth, (LONG)((int64_t)header->biHeight * roomWidth / header->biWidth)};
    if (size.cy > roomHeight) size = {(LONG)((int64_t)header->biWidth * roomHeight / header->biHeight), roomHeight};
    if (size.cx < 1) size.cx = 1;
    if (size.cy < 1) size.cy = 1;
    return size;
}

static HBITMAP copyScaled(const BITMAPINFOHEADER* header, SIZE size, void** bits)
{
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.cx;
    info.bmiHeader.biHeight = size.cy;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, bits, nullptr, 0);
    HDC memory = bitmap ? CreateCompatibleDC(nullptr) : nullptr;
    if (!memory) {
        if (bitmap) DeleteObject(bitmap);
        return nullptr;
    }
    HGDIOBJ before = SelectObject(memory, bitmap);
    SetStretchBltMode(memory, COLORONCOLOR);  // mixed colours would no longer match the background
    StretchDIBits(memory, 0, 0, size.cx, size.cy, 0, 0, header->biWidth, header->biHeight,
                  (const BYTE*)header + header->biSize, (const BITMAPINFO*)header, DIB_RGB_COLORS, SRCCOPY);
    GdiFlush();
    SelectObject(memory, before);
    DeleteDC(memory);
    return bitmap;
}

static bool isColour(const BYTE* pixel, COLORREF colour)
{
    return pixel[0] == GetBValue(colour) && pixel[1] == GetGValue(colour) && pixel[2] == GetRValue(colour);
}

// The pixels that differ from the background, as a region.
static HRGN shapeOf(const BYTE* bits, SIZE size, COLORREF background)
{
    const size_t stride = ((size_t)size.cx * 3 + 3) & ~(size_t)3;
    HRGN shape = CreateRectRgn(0, 0, 0, 0), run = CreateRectRgn(0, 0, 0, 0);
    for (LONG y = 0; shape && run && y < size.cy; ++y) {
        const BYTE* row = bits + stride * (size_t)(size.cy - 1 - y);
        for (LONG x = 0; x < size.cx; ++x) {
            if (isColour(row + 3 * x, background)) continue;
            const LONG first = x;
            while (x < size.cx && !isColour(row + 3 * x, background))
                ++x;
            SetRectRgn(run, first, y, x, y + 1);
            CombineRgn(shape, shape, run, RGN_OR);
        }
    }
    if (run) DeleteObject(run);
    return shape;
}

static POINT pictureOrigin(const DragPicture& picture)
{
    POINT at;
    if (!GetCursorPos(&at)) {  // as under a prompt of the system's
        const DWORD place = GetMessagePos();
        at = {GET_X_LPARAM(place), GET_Y_LPARAM(place)};
    }
    return {at.x - picture.grab.x, at.y - picture.grab.y};
}

static void releasePicture(const DragPicture& picture)
{
    if (picture.window) DestroyWindow(picture.window);
    if (picture.bitmap) DeleteObject(picture.bitmap);
}

static bool openPicture(DragPicture& picture, HWND dialog, const BITMAPINFOHEADER* header, const RECT& rect, POINT grab,
                        COLORREF background)
{
    void* bits = nullptr;
    picture = {};
    picture.size = shownSize(header, rect);
    // The picture stands in the middle of its place.
    picture.grab = {grab.x - (rect.right - rect.left - picture.size.cx) / 2,
                    grab.y - (rect.bottom - rect.top - picture.size.cy) / 2};
    picture.bitmap = copyScaled(header, picture.size, &bits);
    if (!picture.bitmap) return false;
    HRGN shape = shapeOf((const BYTE*)bits, picture.size, background);
    const POINT at = pictureOrigin(picture);
    picture.window = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE | WS_EX_TRANSPARENT, L"Static",
                                     nullptr, WS_POPUP | WS_DISABLED | SS_BITMAP | SS_REALSIZECONTROL, at.x, at.y,
                                     picture.size.cx, picture.size.cy, dialog, nullptr, nullptr, nullptr);
    if (!picture.window) {
        if (shape) DeleteObject(shape);
        releasePicture(picture);
        return false;
    }
    SendMessageW(picture.window, STM_SETIMAGE, IMAGE_BITMAP, (LPARAM)picture.bitmap);
    if (shape && !SetWindowRgn(picture.window, shape, FALSE)) DeleteObject(shape);  // else the window's
    ShowWindow(picture.window, SW_SHOWNOACTIVATE);
    UpdateWindow(picture.window);
    return true;
}

static void followPointer(const DragPicture& picture)
{
    const POINT at = pictureOrigin(picture);
    SetWindowPos(picture.window, nullptr, at.x, at.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    UpdateWindow(picture.window);
}

static bool leftButtonDown(void)
{
    const int physical = GetSystemMetrics(SM_SWAPBUTTON) ? VK_RBUTTON : VK_LBUTTON;
    return GetKeyState(VK_LBUTTON) < 0 || GetAsyncKeyState(physical) < 0;
}

enum DragStep { DRAG_GOES_ON, DRAG_DROPPED, DRAG_CANCELLED };

static DragStep handleDragMessage(const DragPicture& picture, const MSG& message)
{
    switch (message.message) {
    case WM_LBUTTONUP: return DRAG_DROPPED;
    case WM_RBUTTONDOWN: return DRAG_CANCELLED;
    case WM_KEYDOWN: return message.wParam == VK_ESCAPE ? DRAG_CANCELLED : DRAG_GOES_ON;
    case WM_QUIT:
        PostQuitMessage((int)message.wParam);  // for the loop outside
        return DRAG_CANCELLED;
    case WM_MOUSEMOVE: followPointer(picture); return DRAG_GOES_ON;
    }
    const bool input = (message.message >= WM_MOUSEFIRST && message.message <= WM_MOUSELAST) ||
                       (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST);
    if (!input) DispatchMessageW(&message);
    return DRAG_GOES_ON;
}

static DragStep runDrag(HWND dialog, const DragPicture& picture)
{
    for (;;) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            const DragStep step = handleDragMessage(picture, message);
            if (step != DRAG_GOES_ON) return step;
            if (GetCapture() != dialog) return DRAG_CANCELLED;
        }
        // A capture taken away by a sent message shows here only: the queue stays empty.
        if (GetCapture() != dialog) return DRAG_CANCELLED;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, INFINITE, QS_ALLINPUT);
    }
}

static int dragLocked(HWND dialog, const BITMAPINFOHEADER* header, const RECT& rect, POINT grab, COLORREF background)
{
    DragPicture picture;
    if (!openPicture(picture, dialog, header, rect, grab, background)) return 0;
    SetCapture(dialog);
    const DragStep end = runDrag(dialog, picture);
    if (GetCapture() == dialog) ReleaseCapture();
    releasePicture(picture);
    return end == DRAG_DROPPED;
}

int WINAPI dragBitmap(HWND dialog, HGLOBAL bitmap, const RECT* rect, POINT grab, COLORREF background)
{
    if (!IsWindow(dialog) || !bitmap || !rect || IsRectEmpty(rect) || !leftButtonDown()) return 0;
    const LockedDib locked(bitmap);
    if (!locked.header || !soundBitmap(locked.header, GlobalSize(bitmap))) return 0;
    return dragLocked(dialog, locked.header, *rect, grab, background);
}
