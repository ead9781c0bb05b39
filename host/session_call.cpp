#include "host/session_call.h"

#include "host/placement.h"

namespace {

const wchar_t windowClass[] = L"RetouchHost";

LRESULT CALLBACK hostWindowProc(HWND window, UINT message, WPARAM wide, LPARAM parameter)
{
    // The window closes when the session ends, not before.
    if (message == WM_CLOSE) return 0;
    return DefWindowProcW(window, message, wide, parameter);
}

HWND createHostWindow(const std::wstring& name)
{
    WNDCLASSW description = {};
    description.lpfnWndProc = hostWindowProc;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, (LPCWSTR)IDC_ARROW);
    description.hbrBackground = (HBRUSH)(COLOR_APPWORKSPACE + 1);
    description.lpszClassName = windowClass;
    RegisterClassW(&description);
    RECT area;
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    HWND window = CreateWindowExW(0, windowClass, (name + L" - Retouch").c_str(), WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                                  area.left, area.top, area.right - area.left, area.bottom - area.top, nullptr, nullptr,
                                  description.hInstance, nullptr);
    if (window) {
        ShowWindow(window, SW_SHOW);
        UpdateWindow(window);
    }
    return window;
}

INT_PTR CALLBACK measuredDialogProc(HWND, UINT, WPARAM, LPARAM)
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
ScreenSize paletteSize(HWND host)
{
    alignas(4) const PaletteMeasure measure;
    HWND dialog = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &measure.dialog, host, measuredDialogProc, 0);
    RECT box = {};
    GetWindowRect(dialog, &box);
    DestroyWindow(dialog);
    return {(int)(box.right - box.left), (int)(box.bottom - box.top)};
}

Placement placeSession(HWND host, ScreenSize image)
{
    RECT client;
    GetClientRect(host, &client);
    MapWindowPoints(host, nullptr, (POINT*)&client, 2);
    const ScreenSize frame = {2 * GetSystemMetrics(SM_CXFRAME),
                              GetSystemMetrics(SM_CYCAPTION) + 2 * GetSystemMetrics(SM_CYFRAME)};
    return placeWindows(image, {(int)client.left, (int)client.top, (int)client.right, (int)client.bottom}, frame,
                        paletteSize(host));
}

ScreenSize sizeOfImage(HGLOBAL image)
{
    const BITMAPINFOHEADER* header = (const BITMAPINFOHEADER*)GlobalLock(image);
    const ScreenSize size = {(int)header->biWidth, (int)header->biHeight};
    GlobalUnlock(image);
    return size;
}

}  // namespace

SessionResult runSession(RetouchEntry retouch, HGLOBAL image, const std::wstring& name)
{
    HWND host = createHostWindow(name);
    if (!host) return SessionResult::NoWindow;
    const Placement place = placeSession(host, sizeOfImage(image));
    RECT dialog = {place.dialog.left, place.dialog.top, place.dialog.right, place.dialog.bottom};
    POINT palette = {place.paletteLeft, place.paletteTop};
    const int saved = retouch(host, image, &dialog, &palette);
    DestroyWindow(host);
    return saved == 1 ? SessionResult::Saved : SessionResult::Closed;
}
