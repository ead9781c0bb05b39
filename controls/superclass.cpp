#include "controls/superclass.h"

WNDPROC registerSuperclass(HINSTANCE instance, const wchar_t* name, const wchar_t* base, WNDPROC procedure)
{
    WNDCLASSW description;
    if (!GetClassInfoW(nullptr, base, &description)) return nullptr;
    const WNDPROC baseProcedure = description.lpfnWndProc;
    description.style &= ~(UINT)(CS_CLASSDC | CS_PARENTDC | CS_HREDRAW | CS_VREDRAW);
    description.style |= CS_GLOBALCLASS | CS_OWNDC | CS_HREDRAW | CS_VREDRAW;
    description.lpfnWndProc = procedure;
    description.cbWndExtra += (int)sizeof(LONG_PTR);
    description.hInstance = instance;
    description.lpszMenuName = nullptr;
    description.lpszClassName = name;
    return RegisterClassW(&description) ? baseProcedure : nullptr;
}

// Our slot lies behind the bytes that the system's class keeps for itself.
static int slotOffset(HWND window)
{
    return (int)GetClassLongW(window, GCL_CBWNDEXTRA) - (int)sizeof(LONG_PTR);
}

LONG_PTR ownSlot(HWND window)
{
    return GetWindowLongPtrW(window, slotOffset(window));
}

void setOwnSlot(HWND window, LONG_PTR value)
{
    SetWindowLongPtrW(window, slotOffset(window), value);
}

static void setClip(HDC dc, bool muted)
{
    HRGN nothing = muted ? CreateRectRgn(0, 0, 0, 0) : nullptr;
    SelectClipRgn(dc, nothing);
    if (nothing) DeleteObject(nothing);
}

void muteWindow(HWND window, bool muted)
{
    HDC dc = GetDC(window);
    if (!dc) return;
    setClip(dc, muted);
    ReleaseDC(window, dc);
}

void printOwnWindow(HWND window, HDC dc, DrawWindow draw)
{
    RECT client = {};
    GetClientRect(window, &client);
    HDC memory = CreateCompatibleDC(dc);
    HBITMAP bitmap = CreateCompatibleBitmap(dc, client.right, client.bottom);
    if (memory && bitmap) {
        HGDIOBJ before = SelectObject(memory, bitmap);
        draw(window, memory, client);
        BitBlt(dc, 0, 0, client.right, client.bottom, memory, 0, 0, SRCCOPY);
        SelectObject(memory, before);
    }
    if (bitmap) DeleteObject(bitmap);
    if (memory) DeleteDC(memory);
}

void paintOwnWindow(HWND window, DrawWindow draw)
{
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    if (!dc) return;
    setClip(dc, false);
    printOwnWindow(window, dc, draw);
    setClip(dc, true);
    EndPaint(window, &paint);
}
