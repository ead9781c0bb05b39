#include "tests/session/library_driver.h"

#include <algorithm>
#include <cstdio>

constexpr POINT ASIDE = {900, 100};  // where moveLibraryAside puts the window

// ---- the window

static BOOL CALLBACK takeLibraryWindow(HWND window, LPARAM found)
{
    const HWND list = GetDlgItem(window, ID_LIBRARY_LIST);
    if (!list || lstrcmpiA(classOf(list).c_str(), "ListBox") != 0) return TRUE;
    *(HWND*)found = window;
    return FALSE;
}

HWND libraryWindow(const Host& host)
{
    HWND found = nullptr;
    EnumThreadWindows(host.threadId, takeLibraryWindow, (LPARAM)&found);
    return found;
}

HWND libraryList(const Host& host)
{
    const HWND window = libraryWindow(host);
    return window ? GetDlgItem(window, ID_LIBRARY_LIST) : nullptr;
}

bool toggleLibraryWindow(Host* host)
{
    const bool open = libraryWindow(*host) != nullptr;
    return clickControl(host, ID_LIBRARY) &&
           waitUntil("the library's window to come or go",
                     [&] {
                         const HWND window = libraryWindow(*host);
                         return open ? !window : window && IsWindowVisible(window);
                     }) &&
           settle(host);
}

static POINT middleOf(const RECT& rect)
{
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

static bool clickWindow(Host* host, HWND window)
{
    RECT rect = {};
    GetWindowRect(window, &rect);
    return movePointer(host, middleOf(rect)) && pressButton(host) && releaseButton(host);
}

bool clickInLibrary(Host* host, int id)
{
    return clickWindow(host, GetDlgItem(libraryWindow(*host), id));
}

bool dragLibraryFrame(Host* host, POINT from, int dx, int dy)
{
    if (!movePointer(host, from)) return false;
    const size_t first = seenCount();
    const HWND window = libraryWindow(*host);
    return pressButton(host) &&
           waitUntil("the frame's drag to start", [&] { return wasSeen(first, window, WM_ENTERSIZEMOVE); }) &&
           movePointer(host, {from.x + dx / 2, from.y + dy / 2}) && movePointer(host, {from.x + dx, from.y + dy}) &&
           releaseButton(host) &&
           waitUntil("the frame's drag to end", [&] { return wasSeen(first, window, WM_EXITSIZEMOVE); }) &&
           settle(host);
}

bool moveLibraryAside(Host* host)
{
    RECT rect = {};
    GetWindowRect(libraryWindow(*host), &rect);
    const POINT title = {(rect.left + rect.right) / 2, rect.top + 2 * GetSystemMetrics(SM_CYFRAME) + 2};
    return dragLibraryFrame(host, title, ASIDE.x - rect.left, ASIDE.y - rect.top);
}

int storedCount(const Host& host)
{
    return (int)SendMessageA(libraryList(host), LB_GETCOUNT, 0, 0);
}

int currentStored(const Host& host)
{
    return (int)SendMessageA(libraryList(host), LB_GETCURSEL, 0, 0);
}

static BOOL CALLBACK takeQuestion(HWND window, LPARAM found)
{
    if (!IsWindowVisible(window) || !GetDlgItem(window, IDYES) || !GetDlgItem(window, IDNO)) return TRUE;
    *(HWND*)found = window;
    return FALSE;
}

HWND deleteQuestion(const Host& host)
{
    HWND found = nullptr;
    EnumThreadWindows(host.threadId, takeQuestion, (LPARAM)&found);
    return found;
}

std::wstring questionText(const Host& host)
{
    std::wstring text;
    for (HWND child = GetWindow(deleteQuestion(host), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        wchar_t part[256] = L"";
        if (lstrcmpiA(classOf(child).c_str(), "Static") == 0) GetWindowTextW(child, part, 256);
        text += part;
    }
    return text;
}

bool askToDelete(Host* host)
{
    return clickInLibrary(host, ID_LIBRARY_DELETE) &&
           waitUntil("the question", [&] { return deleteQuestion(*host) != nullptr; }) && settle(host);
}

bool answer(Host* host, int button)
{
    return clickWindow(host, GetDlgItem(deleteQuestion(*host), button)) &&
           waitUntil("the question to go", [&] { return !deleteQuestion(*host); }) && settle(host);
}

void pressKey(WORD key)
{
    INPUT inputs[2] = {};
    for (INPUT& input : inputs) {
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
    }
    inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, inputs, sizeof inputs[0]);
}

HWND focusOf(const Host& host)
{
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(host.threadId, &info) ? info.hwndFocus : nullptr;
}

// ---- dragging

static BOOL CALLBACK takeDragPicture(HWND window, LPARAM found)
{
    const bool topmost = (GetWindowLongA(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
    if (lstrcmpiA(classOf(window).c_str(), "Static") != 0 || !topmost || !IsWindowVisible(window)) return TRUE;
    *(HWND*)found = window;
    return FALSE;
}

HWND dragPicture(const Host& host)
{
    HWND found = nullptr;
    EnumThreadWindows(host.threadId, takeDragPicture, (LPARAM)&found);
    return found;
}

RECT storedRect(const Host& host, int index)
{
    const HWND list = libraryList(host);
    RECT rect = {}, client = {};
    SendMessageA(list, LB_GETITEMRECT, (WPARAM)index, (LPARAM)&rect);
    GetClientRect(list, &client);
    if (rect.top < 0 || rect.bottom > client.bottom) {
        SendMessageA(list, LB_SETTOPINDEX, (WPARAM)index, 0);
        SendMessageA(list, LB_GETITEMRECT, (WPARAM)index, (LPARAM)&rect);
    }
    MapWindowPoints(list, nullptr, (POINT*)&rect, 2);
    return rect;
}

bool clickStored(Host* host, int index)
{
    return grabStored(host, index) && releaseButton(host);
}

bool grabStored(Host* host, int index)
{
    return placePointer(host, middleOf(storedRect(*host, index))) && pressButton(host) &&
           waitUntil("the dragged picture", [&] { return dragPicture(*host) != nullptr; });
}

bool dragStored(Host* host, int index, POINT screen)
{
    return grabStored(host, index) && placePointer(host, screen) && releaseButton(host);
}

// ---- drawing a selection

bool drawSelection(Host* host, const std::vector<POINT>& clientPoints)
{
    return clickControl(host, ID_SELECTION) && drawStroke(host, clientPoints);
}

// ---- files

std::string libraryDirectory(const Library& library)
{
    return library.directory + "SELDIB\\";
}

std::string storedName(int number)
{
    char name[32];
    snprintf(name, sizeof name, "seld_%03d.tif", number);
    return name;
}

FileBytes fileBytes(const std::string& path)
{
    FileBytes bytes;
    FILE* file = fopen(path.c_str(), "rb");
    if (!file) return bytes;
    uint8_t part[65536];
    for (size_t got; (got = fread(part, 1, sizeof part, file)) != 0;)
        bytes.insert(bytes.end(), part, part + got);
    fclose(file);
    return bytes;
}

bool writeFileBytes(const std::string& path, const FileBytes& bytes)
{
    FILE* file = fopen(path.c_str(), "wb");
    if (!file) return false;
    const bool written = fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return fclose(file) == 0 && written;
}

std::vector<std::string> filesOfLibrary(const Library& library)
{
    std::vector<std::string> names;
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA((libraryDirectory(library) + "*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return names;
    do
        if (found.cFileName[0] != '.') names.push_back(found.cFileName);
    while (FindNextFileA(search, &found));
    FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
}

void makeLibraryDirectory(const Library& library)
{
    CreateDirectoryA((library.directory + "SELDIB").c_str(), nullptr);
}

void removeLibraryDirectory(const Library& library)
{
    for (const std::string& name : filesOfLibrary(library))
        DeleteFileA((libraryDirectory(library) + name).c_str());
    RemoveDirectoryA((library.directory + "SELDIB").c_str());
}

ReferenceSelection selectionInFile(const FileBytes& bytes)
{
    const auto shortAt = [&](size_t at) { return (int)(bytes.at(at) | bytes.at(at + 1) << 8); };
    const int width = shortAt(10 + 12 + 8), height = shortAt(10 + 24 + 8);
    ReferenceSelection selection(width, height);
    const size_t pixels = 192, mask = pixels + (size_t)width * (size_t)height * 3 + 178;
    const size_t maskRow = ((size_t)width + 7) / 8;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const uint8_t* rgb = &bytes.at(pixels + ((size_t)y * (size_t)width + (size_t)x) * 3);
            const bool outside = bytes.at(mask + maskRow * (size_t)y + (size_t)x / 8) >> (7 - x % 8) & 1;
            const uint8_t value = outside ? 255 : 0;
            selection.image.at(x, y) = {rgb[2], rgb[1], rgb[0]};
            selection.mask.at(x, y) = {value, value, value};
        }
    return selection;
}
