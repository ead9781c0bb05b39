#include "host/work_record.h"

#include "host/safe_file.h"

#include <windows.h>

static HANDLE record = INVALID_HANDLE_VALUE;
static std::wstring recordName, recordedPhoto;

constexpr wchar_t RECORD_EXTENSION[] = L".work", PICTURE_EXTENSION[] = L".bmp";

static std::wstring stemOf(const std::wstring& name)
{
    return name.substr(0, name.rfind(L'.'));
}

// Three lines: photo, temporary file, target.
static void writeRecord(const std::wstring& temporary, const std::wstring& target)
{
    if (record == INVALID_HANDLE_VALUE) return;
    const std::wstring text = recordedPhoto + L"\n" + temporary + L"\n" + target + L"\n";
    DWORD written;
    SetFilePointer(record, 0, nullptr, FILE_BEGIN);
    WriteFile(record, text.data(), (DWORD)(text.size() * sizeof(wchar_t)), &written, nullptr);
    SetEndOfFile(record);
    FlushFileBuffers(record);
}

static std::vector<std::wstring> linesOf(HANDLE file)
{
    std::wstring text(GetFileSize(file, nullptr) / sizeof(wchar_t), L'\0');
    DWORD got = 0;
    if (!ReadFile(file, &text[0], (DWORD)(text.size() * sizeof(wchar_t)), &got, nullptr)) got = 0;
    text.resize(got / sizeof(wchar_t));
    std::vector<std::wstring> lines(1);
    for (wchar_t letter : text)
        if (letter == L'\n')
            lines.emplace_back();
        else
            lines.back() += letter;
    lines.resize(3);
    return lines;
}

// A save that was cut off: what was finished already is brought to its end, what was not is taken away.
static void tidySave(const std::wstring& temporary, const std::wstring& target)
{
    unsigned long error;
    if (temporary.empty() || !fileExists(temporary)) return;
    if (target.empty() || copyContent(temporary, target, &error)) DeleteFileW(temporary.c_str());
}

// False while the program that the record belongs to lives.
static bool readAbandoned(const std::wstring& name, AbandonedWork* work)
{
    HANDLE file = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    const std::vector<std::wstring> lines = linesOf(file);
    CloseHandle(file);
    *work = {name, lines[0], stemOf(name) + PICTURE_EXTENSION};
    tidySave(lines[1], lines[2]);
    DeleteFileW((stemOf(name) + L".tmp").c_str());  // a picture that was being written
    return true;
}

std::wstring rescueFolder()
{
    std::wstring base(32768, L'\0');
    base.resize(GetEnvironmentVariableW(L"RETOUCH_RESCUE_FOLDER", &base[0], 32768));  // for tests and demos
    if (base.empty()) {
        base.resize(32768);
        base.resize(GetEnvironmentVariableW(L"LOCALAPPDATA", &base[0], 32768));
    }
    if (base.empty()) {
        base.resize(MAX_PATH + 1);
        base.resize(GetTempPathW((DWORD)base.size(), &base[0]));
    }
    if (!base.empty() && base.back() != L'\\') base += L'\\';
    base += L"Retouch";
    CreateDirectoryW(base.c_str(), nullptr);
    return base + L"\\";
}

void openWorkRecord(const std::wstring& photo)
{
    wchar_t full[32768];
    const DWORD length = GetFullPathNameW(photo.c_str(), 32768, full, nullptr);
    recordedPhoto = length > 0 && length < 32768 ? full : photo;
    recordName = rescueFolder() + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(GetTickCount64()) +
                 RECORD_EXTENSION;
    record = CreateFileW(recordName.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    writeRecord(L"", L"");
}

void closeWorkRecord()
{
    if (record == INVALID_HANDLE_VALUE) return;
    CloseHandle(record);
    record = INVALID_HANDLE_VALUE;
    DeleteFileW((stemOf(recordName) + PICTURE_EXTENSION).c_str());
    DeleteFileW(recordName.c_str());
}

void noteTemporary(const std::wstring& temporary, const std::wstring& target)
{
    writeRecord(temporary, target);
}

std::wstring rescueFileName()
{
    return record == INVALID_HANDLE_VALUE ? L"" : stemOf(recordName) + PICTURE_EXTENSION;
}

std::vector<AbandonedWork> findAbandonedWork()
{
    std::vector<AbandonedWork> found;
    const std::wstring folder = rescueFolder();
    WIN32_FIND_DATAW entry;
    HANDLE search = FindFirstFileW((folder + L"*" + RECORD_EXTENSION).c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return found;
    do {
        AbandonedWork work;
        if (!readAbandoned(folder + entry.cFileName, &work)) continue;
        if (fileExists(work.picture))
            found.push_back(work);
        else
            DeleteFileW(work.record.c_str());
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    return found;
}

void forgetAbandonedWork(const AbandonedWork& work)
{
    DeleteFileW(work.picture.c_str());
    DeleteFileW(work.record.c_str());
}
