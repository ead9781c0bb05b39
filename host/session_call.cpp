#include "host/session_call.h"

#include "host/host_window.h"
#include "host/locked_photo.h"
#include "host/placement.h"
#include "host/session_watch.h"

static INT_PTR CALLBACK measuredDialogProc(HWND, UINT, WPARAM, LPARAM)
{
    return FALSE;
}

// What the library's contract says of the palette, in the words of a dialog template.
#pragma pack(push, 2)
struct PaletteMeasure {
    DLGTEMPLATE dialog = {
        WS_POPUP | WS_DLGFRAME | DS_SETFONT, 0, 0, 0, 0, KOVRTCH32_PALETTE_WIDTH, KOVRTCH32_PALETTE_HEIGHT};
    WORD menu = 0, windowClass = 0, title = 0, points = 8;
    wchar_t face[5] = L"Helv";
};
#pragma pack(pop)

// In pixels, at the DPI of the host's window: a dialog of the same size and font tells it.
static ScreenSize paletteSize(HWND host)
{
    alignas(4) const PaletteMeasure measure;
    HWND dialog = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &measure.dialog, host, measuredDialogProc, 0);
    RECT box = {};
    GetWindowRect(dialog, &box);
    DestroyWindow(dialog);
    return {(int)(box.right - box.left), (int)(box.bottom - box.top)};
}

static Placement placeSession(HWND host, ScreenSize image)
{
    const RECT room = roomForEditor();
    const ScreenSize frame = {2 * GetSystemMetrics(SM_CXFRAME),
                              GetSystemMetrics(SM_CYCAPTION) + 2 * GetSystemMetrics(SM_CYFRAME)};
    return placeWindows(image, {(int)room.left, (int)room.top, (int)room.right, (int)room.bottom}, frame,
                        paletteSize(host));
}

static ScreenSize sizeOfImage(HGLOBAL image)
{
    const LockedPhoto photo(image);
    return {(int)photo.header->biWidth, (int)photo.header->biHeight};
}

bool runSession(RetouchEntry retouch, HGLOBAL image)
{
    HWND host = hostWindow();
    showHostWindow();
    const Placement place = placeSession(host, sizeOfImage(image));
    RECT dialog = {place.dialog.left, place.dialog.top, place.dialog.right, place.dialog.bottom};
    POINT palette = {place.paletteLeft, place.paletteTop};
    beginSessionWatch();
    const int saved = retouch(host, image, &dialog, &palette);
    endSessionWatch();
    return saved == 1;
}
