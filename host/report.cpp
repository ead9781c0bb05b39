#include "host/report.h"

#include <windows.h>

namespace {

bool inWindows;

// A console takes UTF-16 as it is; files and pipes get UTF-8.
void writeLine(DWORD which, const std::wstring& sentence)
{
    const std::wstring line = sentence + L"\r\n";
    HANDLE output = GetStdHandle(which);
    DWORD mode, written;
    if (GetConsoleMode(output, &mode)) {
        WriteConsoleW(output, line.c_str(), (DWORD)line.size(), &written, nullptr);
        return;
    }
    std::string bytes(line.size() * 3, '\0');
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, line.c_str(), (int)line.size(), &bytes[0], (int)bytes.size(), nullptr, nullptr);
    WriteFile(output, bytes.data(), (DWORD)size, &written, nullptr);
}

void report(DWORD which, UINT icon, const std::wstring& sentence)
{
    if (inWindows)
        MessageBoxW(nullptr, sentence.c_str(), L"Retouch", MB_OK | icon);
    else
        writeLine(which, sentence);
}

}  // namespace

void reportTo(bool windows)
{
    inWindows = windows;
}

void tell(const std::wstring& sentence)
{
    report(STD_OUTPUT_HANDLE, MB_ICONINFORMATION, sentence);
}

void mention(const std::wstring& sentence)
{
    if (!inWindows) writeLine(STD_OUTPUT_HANDLE, sentence);
}

void complain(const std::wstring& sentence)
{
    report(STD_ERROR_HANDLE, MB_ICONERROR, sentence);
}

std::wstring systemErrorText(unsigned long error)
{
    wchar_t text[512];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                                  512, nullptr);
    while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r' || text[length - 1] == L' '))
        length--;
    return length ? std::wstring(text, length) : L"Error " + std::to_wstring(error) + L".";
}
