#include "host/successor.h"

#include "host/host_window.h"
#include "host/waiting_photos.h"

static std::wstring successorOptions;
static bool successorAlways;

static std::wstring ownFile()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, &path[0], (DWORD)path.size()));
    return path;
}

static void runSuccessor()
{
    std::wstring line = L"\"" + ownFile() + L"\"" + successorOptions + L" --" + lineOfWaiting();
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;  // it says things where this one does
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process;
    if (!CreateProcessW(nullptr, &line[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process)) return;
    WaitForSingleObject(process.hProcess, INFINITE);
}

void nameSuccessor(const std::wstring& options, bool always)
{
    successorOptions = options;
    successorAlways = always;
}

void endWithSuccessor(ExitCode code)
{
    forsakeHostWindow();
    if (successorAlways || anyWaiting()) runSuccessor();
    ExitProcess((UINT)code);
}
