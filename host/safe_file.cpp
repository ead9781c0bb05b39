#include "host/safe_file.h"

#include "host/file_names.h"

#include <algorithm>
#include <windows.h>

namespace {

// A new, empty file beside path. Its name tells where it comes from, should the power fail.
HANDLE createBeside(const std::wstring& path, std::wstring* name)
{
    const std::wstring stem = folderOfPath(path) + L"retouch-" + std::to_wstring(GetCurrentProcessId()) + L"-";
    for (int attempt = 0; attempt < 100; attempt++) {
        *name = stem + std::to_wstring(attempt) + L".tmp";
        HANDLE file = CreateFileW(name->c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS) return file;
    }
    return INVALID_HANDLE_VALUE;
}

bool writeAll(HANDLE file, const unsigned char* bytes, size_t size)
{
    const size_t largestPart = 16 << 20;
    while (size > 0) {
        const DWORD part = (DWORD)std::min(size, largestPart);
        DWORD written = 0;
        if (!WriteFile(file, bytes, part, &written, nullptr)) return false;
        if (written == 0) {
            SetLastError(ERROR_DISK_FULL);
            return false;
        }
        bytes += written;
        size -= written;
    }
    return true;
}

HANDLE openForIdentity(const std::wstring& path)
{
    return CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

}  // namespace

bool writeWholeFile(const std::wstring& path, const void* bytes, size_t size, bool replace, unsigned long* error)
{
    *error = ERROR_SUCCESS;
    std::wstring temporary;
    HANDLE file = createBeside(path, &temporary);
    if (file == INVALID_HANDLE_VALUE) {
        *error = GetLastError();
        return false;
    }
    bool done = writeAll(file, (const unsigned char*)bytes, size) && FlushFileBuffers(file);
    if (!done) *error = GetLastError();
    CloseHandle(file);
    if (done && !MoveFileExW(temporary.c_str(), path.c_str(),
                             MOVEFILE_WRITE_THROUGH | (replace ? MOVEFILE_REPLACE_EXISTING : 0))) {
        *error = GetLastError();
        done = false;
    }
    if (!done) DeleteFileW(temporary.c_str());
    return done;
}

bool folderIsWritable(const std::wstring& path, unsigned long* error)
{
    *error = ERROR_SUCCESS;
    std::wstring temporary;
    HANDLE file = createBeside(path, &temporary);
    if (file == INVALID_HANDLE_VALUE) {
        *error = GetLastError();
        return false;
    }
    CloseHandle(file);
    DeleteFileW(temporary.c_str());
    return true;
}

bool fileExists(const std::wstring& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool sameFile(const std::wstring& one, const std::wstring& other)
{
    HANDLE first = openForIdentity(one), second = openForIdentity(other);
    BY_HANDLE_FILE_INFORMATION a = {}, b = {};
    const bool same = first != INVALID_HANDLE_VALUE && second != INVALID_HANDLE_VALUE &&
                      GetFileInformationByHandle(first, &a) && GetFileInformationByHandle(second, &b) &&
                      a.dwVolumeSerialNumber == b.dwVolumeSerialNumber && a.nFileIndexHigh == b.nFileIndexHigh &&
                      a.nFileIndexLow == b.nFileIndexLow;
    if (first != INVALID_HANDLE_VALUE) CloseHandle(first);
    if (second != INVALID_HANDLE_VALUE) CloseHandle(second);
    return same;
}
