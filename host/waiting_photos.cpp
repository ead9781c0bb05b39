#include "host/waiting_photos.h"

#include "host/file_names.h"

#include <deque>

static std::deque<std::wstring> photos;

void addWaiting(const std::wstring& photo)
{
    photos.push_back(photo);
}

void addDropped(HDROP dropped)
{
    const UINT count = DragQueryFileW(dropped, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        std::wstring path(DragQueryFileW(dropped, i, nullptr, 0) + 1, L'\0');
        path.resize(DragQueryFileW(dropped, i, &path[0], (UINT)path.size()));
        addWaiting(path);
    }
    DragFinish(dropped);
}

bool anyWaiting()
{
    return !photos.empty();
}

bool takeWaiting(std::wstring* photo)
{
    if (photos.empty()) return false;
    *photo = photos.front();
    photos.pop_front();
    return true;
}

std::wstring lineOfWaiting()
{
    std::wstring line;
    for (const std::wstring& photo : photos)
        line += L" \"" + photo + L"\"";
    return line;
}

std::wstring namesOfWaiting()
{
    std::wstring names;
    for (const std::wstring& photo : photos)
        names += (names.empty() ? L"" : L", ") + nameOfPath(photo);
    return names;
}
