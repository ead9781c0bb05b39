#include "host/session_call.h"

#include "host/placement.h"
#include "include/kovrtch32.h"

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

// The library lies beside the program; a full path keeps the current folder out of the search.
HMODULE loadLibraryBeside(const wchar_t* name)
{
    wchar_t path[32768];
    const DWORD length = GetModuleFileNameW(nullptr, path, 32768);
    if (length == 0 || length >= 32768) return nullptr;
    std::wstring full(path, length);
    full.resize(full.find_last_of(L"\\/") + 1);
    return LoadLibraryExW((full + name).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

Placement placeSession(HWND host, ScreenSize image)
{
    RECT client;
    GetClientRect(host, &client);
    MapWindowPoints(host, nullptr, (POINT*)&client, 2);
    const ScreenSize frame = {2 * GetSystemMetrics(SM_CXFRAME),
                              GetSystemMetrics(SM_CYCAPTION) + 2 * GetSystemMetrics(SM_CYFRAME)};
    // The palette has a fixed size in dialog units; its exact one is known only when it is open.
    const LONG units = GetDialogBaseUnits();
    const ScreenSize palette = {48 * LOWORD(units) / 4 + frame.width, 277 * HIWORD(units) / 8 + frame.height};
    return placeWindows(image, {(int)client.left, (int)client.top, (int)client.right, (int)client.bottom}, frame,
                        palette);
}

ScreenSize sizeOfImage(HGLOBAL image)
{
    const BITMAPINFOHEADER* header = (const BITMAPINFOHEADER*)GlobalLock(image);
    const ScreenSize size = {(int)header->biWidth, (int)header->biHeight};
    GlobalUnlock(image);
    return size;
}

}  // namespace

SessionResult runSession(HGLOBAL image, const std::wstring& name)
{
    HMODULE library = loadLibraryBeside(L"KOVRTCH32.dll");
    RetouchEntry retouch = nullptr;
    if (library) retouch = (RetouchEntry)(void*)GetProcAddress(library, MAKEINTRESOURCEA(KOVRTCH32_ENTRY_ORDINAL));
    HWND host = retouch ? createHostWindow(name) : nullptr;
    if (!host) {
        if (library) FreeLibrary(library);
        return retouch ? SessionResult::NoWindow : SessionResult::NoLibrary;
    }
    const Placement place = placeSession(host, sizeOfImage(image));
    RECT dialog = {place.dialog.left, place.dialog.top, place.dialog.right, place.dialog.bottom};
    POINT palette = {place.paletteLeft, place.paletteTop};
    const int saved = retouch(host, image, &dialog, &palette);
    DestroyWindow(host);
    FreeLibrary(library);
    return saved == 1 ? SessionResult::Saved : SessionResult::Closed;
}
