#include "host/report.h"

#include "host/host_window.h"
#include "host/texts.h"

// Where sentences go; both null: into message boxes.
static HANDLE output, errors;
static bool inWindow;

static bool leadsSomewhere(HANDLE handle)
{
    return handle && handle != INVALID_HANDLE_VALUE && GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

// Files and pipes that the program was given are there from its start; the screen of the terminal that it was
// started from, if any, must be opened.
static HANDLE terminalHandle(DWORD which, bool attached)
{
    HANDLE given = GetStdHandle(which);
    if (leadsSomewhere(given)) return given;
    if (!attached) return nullptr;
    HANDLE screen = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    return leadsSomewhere(screen) ? screen : nullptr;
}

// A console takes UTF-16 as it is; files and pipes get UTF-8.
static void writeLine(HANDLE to, const std::wstring& sentence)
{
    const std::wstring line = sentence + L"\r\n";
    DWORD mode, written;
    if (GetConsoleMode(to, &mode)) {
        WriteConsoleW(to, line.c_str(), (DWORD)line.size(), &written, nullptr);
        return;
    }
    std::string bytes(line.size() * 3, '\0');
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, line.c_str(), (int)line.size(), &bytes[0], (int)bytes.size(), nullptr, nullptr);
    WriteFile(to, bytes.data(), (DWORD)size, &written, nullptr);
}

static void showBox(const std::wstring& sentence, UINT icon)
{
    MessageBoxW(hostWindow(), sentence.c_str(), L"Retouch", MB_OK | icon);
}

void reportToTerminal()
{
    const bool attached = AttachConsole(ATTACH_PARENT_PROCESS);
    output = terminalHandle(STD_OUTPUT_HANDLE, attached);
    errors = terminalHandle(STD_ERROR_HANDLE, attached);
    if (!output) output = errors;
    if (!errors) errors = output;
    speakToTerminal(output != nullptr);
}

void reportInWindow()
{
    inWindow = true;
    speakToTerminal(false);
}

void tell(const std::wstring& sentence)
{
    if (inWindow)
        showStatus(sentence);
    else if (output)
        writeLine(output, sentence);
    else
        showBox(sentence, MB_ICONINFORMATION);
}

void mention(const std::wstring& sentence)
{
    if (inWindow)
        showStatus(sentence);
    else if (output)
        writeLine(output, sentence);
}

void complain(const std::wstring& sentence)
{
    if (errors && !inWindow)
        writeLine(errors, sentence);
    else
        showBox(sentence, MB_ICONERROR);
}

bool ask(const std::wstring& question, bool yesIsUsual)
{
    const UINT usual = yesIsUsual ? MB_DEFBUTTON1 : MB_DEFBUTTON2;
    return MessageBoxW(hostWindow(), question.c_str(), L"Retouch", MB_YESNO | MB_ICONQUESTION | usual) == IDYES;
}

std::wstring systemErrorText(unsigned long error)
{
    wchar_t text[512];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                                  512, nullptr);
    while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r' || text[length - 1] == L' '))
        length--;
    return length ? std::wstring(text, length) : std::to_wstring(error);
}
