#include "host/safe_file.h"

#include "host/file_names.h"

#include <iterator>
#include <vector>
#include <windows.h>

// The rights of an existing file, for a new one that is to take its place; empty when there is none.
static std::vector<unsigned char> rightsOf(const std::wstring& path)
{
    std::vector<unsigned char> rights;
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    rights.resize(size);
    if (size && !GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size)) rights.clear();
    return rights;
}

static BY_HANDLE_FILE_INFORMATION identityOf(HANDLE file)
{
    BY_HANDLE_FILE_INFORMATION identity = {};
    if (file == INVALID_HANDLE_VALUE || !GetFileInformationByHandle(file, &identity)) identity.nNumberOfLinks = 0;
    return identity;
}

static HANDLE openForIdentity(const std::wstring& path)
{
    return CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

bool createBeside(const std::wstring& path, std::wstring* temporary, unsigned long* error)
{
    // Its name tells where it comes from, should the power fail.
    const std::wstring stem = folderOfPath(path) + L"retouch-" + std::to_wstring(GetCurrentProcessId()) + L"-";
    std::vector<unsigned char> rights = rightsOf(path);
    HANDLE file = INVALID_HANDLE_VALUE;
    *error = ERROR_FILE_EXISTS;
    for (int attempt = 0; attempt < 100 && file == INVALID_HANDLE_VALUE && *error == ERROR_FILE_EXISTS; ++attempt) {
        *temporary = stem + std::to_wstring(attempt) + L".tmp";
        file = CreateFileW(temporary->c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        *error = file == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS;
    }
    if (file == INVALID_HANDLE_VALUE) return false;
    CloseHandle(file);
    // Still empty: nobody has read anything yet. Where the folder gives the right ones by itself they stay.
    if (!rights.empty() && rightsOf(*temporary) != rights)
        SetFileSecurityW(temporary->c_str(), DACL_SECURITY_INFORMATION, rights.data());
    return true;
}

bool hasFurtherNames(const std::wstring& path)
{
    HANDLE file = openForIdentity(path);
    const DWORD names = identityOf(file).nNumberOfLinks;
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    return names > 1;
}

bool copyContent(const std::wstring& from, const std::wstring& to, unsigned long* error)
{
    HANDLE source = CreateFileW(from.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    HANDLE target = CreateFileW(to.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    bool done = source != INVALID_HANDLE_VALUE && target != INVALID_HANDLE_VALUE;
    std::vector<unsigned char> part(1 << 20);
    for (DWORD got = 1, written = 0; done && got > 0;) {
        done = ReadFile(source, part.data(), (DWORD)part.size(), &got, nullptr) &&
               WriteFile(target, part.data(), got, &written, nullptr) && written == got;
    }
    done = done && SetEndOfFile(target) && FlushFileBuffers(target);
    *error = done ? ERROR_SUCCESS : GetLastError();
    if (source != INVALID_HANDLE_VALUE) CloseHandle(source);
    if (target != INVALID_HANDLE_VALUE) CloseHandle(target);
    return done;
}

bool putInPlace(const std::wstring& temporary, const std::wstring& path, bool replace, unsigned long* error)
{
    *error = ERROR_SUCCESS;
    if (replace && hasFurtherNames(path)) {
        if (!copyContent(temporary, path, error)) return false;
        DeleteFileW(temporary.c_str());
        return true;
    }
    const DWORD flags = MOVEFILE_WRITE_THROUGH | (replace ? MOVEFILE_REPLACE_EXISTING : 0);
    if (MoveFileExW(temporary.c_str(), path.c_str(), flags)) return true;
    *error = GetLastError();
    return false;
}

bool canBeWritten(const std::wstring& path, unsigned long* error)
{
    *error = ERROR_SUCCESS;
    std::wstring name = path;
    if (fileExists(path)) {
        if (!createBeside(path, &name, error)) return false;
    } else {
        HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE) {
            *error = GetLastError();
            return false;
        }
        CloseHandle(file);
    }
    DeleteFileW(name.c_str());
    return true;
}

bool fileExists(const std::wstring& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool sameFile(const std::wstring& one, const std::wstring& other)
{
    HANDLE first = openForIdentity(one), second = openForIdentity(other);
    const BY_HANDLE_FILE_INFORMATION a = identityOf(first), b = identityOf(second);
    const bool same = a.nNumberOfLinks && b.nNumberOfLinks && a.dwVolumeSerialNumber == b.dwVolumeSerialNumber &&
                      a.nFileIndexHigh == b.nFileIndexHigh && a.nFileIndexLow == b.nFileIndexLow;
    if (first != INVALID_HANDLE_VALUE) CloseHandle(first);
    if (second != INVALID_HANDLE_VALUE) CloseHandle(second);
    return same;
}

// Where links lead to, in letters that are always the same; empty when there is no such file.
static std::wstring finalPath(const std::wstring& path)
{
    HANDLE file = openForIdentity(path);
    if (file == INVALID_HANDLE_VALUE) return L"";
    std::wstring result(GetFinalPathNameByHandleW(file, nullptr, 0, FILE_NAME_NORMALIZED), L'\0');
    result.resize(GetFinalPathNameByHandleW(file, &result[0], (DWORD)result.size(), FILE_NAME_NORMALIZED));
    CloseHandle(file);
    return result;
}

static std::wstring withoutPrefix(const std::wstring& path)
{
    constexpr wchar_t SHARE[] = L"\\\\?\\UNC\\", LOCAL[] = L"\\\\?\\";
    if (path.rfind(SHARE, 0) == 0) return L"\\\\" + path.substr(std::size(SHARE) - 1);
    return path.rfind(LOCAL, 0) == 0 ? path.substr(std::size(LOCAL) - 1) : path;
}

std::wstring fileBehind(const std::wstring& path)
{
    const std::wstring folder = folderOfPath(path), target = finalPath(path);
    const std::wstring place = finalPath(folder.empty() ? L"." : folder);
    if (target.empty() || place.empty()) return path;
    // What is no link has its folder's final path and its own name: then the user's words stay, as they do where
    // there is no other name that Windows can say.
    const std::wstring own = place + (place.back() == L'\\' ? L"" : L"\\") + nameOfPath(path);
    const bool itself = CompareStringOrdinal(own.c_str(), -1, target.c_str(), -1, TRUE) == CSTR_EQUAL;
    const std::wstring file = withoutPrefix(target);
    return itself || !sameFile(path, file) ? path : file;
}
