// retouch.exe: opens photos in the retouching library and writes the results to new files.
#include "host/arguments.h"
#include "host/desk.h"
#include "host/host_window.h"
#include "host/successor.h"
#include "host/texts.h"
#include "host/waiting_photos.h"

#include <shellapi.h>

constexpr wchar_t USAGE_TEXT[] =
    L"Usage: retouch.exe [PHOTO... [-o OUT] [--overwrite [--flatten]]]\r\n"
    L"       retouch.exe --window [PHOTO...]\r\n"
    L"Opens each PHOTO for retouching; Save in the tool palette writes the result to OUT (format by its\r\n"
    L"extension: jpg, png, tif, bmp), or to a new file PHOTO-retouched beside the photo.\r\n"
    L"--overwrite lets an existing OUT, or without -o the photo itself, be replaced.\r\n"
    L"The photo itself is replaced only where nothing but its pixels changes: where pages, alpha, depth or the\r\n"
    L"kind of colours would go, --flatten must be given too.\r\n"
    L"Without arguments, or with --window, a window opens onto which photos can be dropped; there the names of\r\n"
    L"results are asked for.\r\n"
    L"Exit code: 0 saved, 1 closed without saving, 2 usage, 3 no such photo, 4 not a readable photo,\r\n"
    L"5 too large, 6 retouching library not found, 7 cannot write.";

static std::vector<std::wstring> commandLine()
{
    std::vector<std::wstring> words;
    int count = 0;
    wchar_t** line = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; line && i < count; ++i)
        words.push_back(line[i]);
    LocalFree(line);
    return words;
}

static ExitCode retouchNamed(const HostArguments& arguments)
{
    PhotoTask task;
    task.output = arguments.output;
    task.overwrite = arguments.overwrite;
    task.flatten = arguments.flatten;
    nameSuccessor(std::wstring(task.overwrite ? L" --overwrite" : L"") + (task.flatten ? L" --flatten" : L""), false);
    openHostWindow();  // where it cannot, what is wrong with a photo is still told
    return retouchWaiting(task);
}

static ExitCode retouchChosen()
{
    if (!openHostWindow()) {
        complain(sentence(TEXT_ERROR_NO_WINDOW));
        return exitNoLibrary;
    }
    reportInWindow();
    nameSuccessor(L" --window", true);
    return keepDesk();
}

static ExitCode run()
{
    const HostArguments arguments = parseArguments(commandLine());
    if (!arguments.problem.empty()) {
        complain(arguments.problem + L"\r\n" + USAGE_TEXT);
        return exitUsage;
    }
    if (arguments.help) {
        tell(USAGE_TEXT);
        return exitSaved;
    }
    for (const std::wstring& photo : arguments.photos)
        addWaiting(photo);
    const ExitCode code = arguments.photos.empty() || arguments.window ? retouchChosen() : retouchNamed(arguments);
    closeHostWindow();
    return code;
}

int main()
{
    SetErrorMode(SEM_FAILCRITICALERRORS);  // what is wrong is told by this program, in sentences
    reportToTerminal();
    return run();
}
