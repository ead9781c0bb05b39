#include "tests/host/test_folder.h"

#include <windows.h>

TestFolder::TestFolder()
{
    static int count;
    wchar_t base[MAX_PATH];
    GetTempPathW(MAX_PATH, base);
    path = std::wstring(base) + L"retouch-ąß写-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(++count) + L"\\";
    CreateDirectoryW(path.c_str(), nullptr);
}

TestFolder::~TestFolder()
{
    for (const std::wstring& name : namesIn(*this)) {
        SetFileAttributesW((path + name).c_str(), FILE_ATTRIBUTE_NORMAL);
        if (!DeleteFileW((path + name).c_str())) RemoveDirectoryW((path + name).c_str());
    }
    RemoveDirectoryW(path.c_str());
}

std::vector<uint8_t> readBytes(const std::wstring& path)
{
    std::vector<uint8_t> bytes;
    // A program that has just ended may not have let go of it yet.
    const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE;
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return bytes;
    bytes.resize(GetFileSize(file, nullptr));
    DWORD got = 0;
    ReadFile(file, bytes.data(), (DWORD)bytes.size(), &got, nullptr);
    bytes.resize(got);
    CloseHandle(file);
    return bytes;
}

void writeBytes(const std::wstring& path, const std::vector<uint8_t>& bytes)
{
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written;
    WriteFile(file, bytes.data(), (DWORD)bytes.size(), &written, nullptr);
    CloseHandle(file);
}

std::vector<std::wstring> namesIn(const TestFolder& folder)
{
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW((folder.path + L"*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        const std::wstring name = found.cFileName;
        if (name != L"." && name != L"..") names.push_back(name);
    } while (FindNextFileW(search, &found));
    FindClose(search);
    return names;
}
