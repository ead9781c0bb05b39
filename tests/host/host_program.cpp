#include "tests/host/host_program.h"

#include <cstring>
#include <gtest/gtest.h>
#include <shlobj.h>

bool waitUntil(const char* what, const std::function<bool()>& holds)
{
    const DWORD start = GetTickCount();
    while (!holds()) {
        if (GetTickCount() - start > 60000) {
            ADD_FAILURE() << "waited in vain: " << what;
            return false;
        }
        Sleep(10);
    }
    return true;
}

std::wstring folderOfPrograms()
{
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring folder = path;
    return folder.substr(0, folder.find_last_of(L'\\') + 1);
}

HostProgram::~HostProgram()
{
    if (!process.hProcess) return;
    if (runs()) TerminateProcess(process.hProcess, 999);
    WaitForSingleObject(process.hProcess, 10000);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    DeleteFileW(log.c_str());
}

bool HostProgram::start(const std::wstring& program, const std::wstring& arguments, const TestFolder& folder,
                        bool terminal)
{
    std::wstring line = L"\"" + program + L"\" " + arguments;
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    if (terminal) {
        log = folder.path + L"said.txt";
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = startup.hStdError = CreateFileW(
            log.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, &inherited, CREATE_ALWAYS, 0, nullptr);
    }
    const bool started = CreateProcessW(nullptr, &line[0], nullptr, nullptr, terminal, terminal ? 0 : DETACHED_PROCESS,
                                        nullptr, folder.path.c_str(), &startup, &process);
    if (terminal) CloseHandle(startup.hStdOutput);
    EXPECT_TRUE(started);
    return started;
}

bool HostProgram::startRetouch(const std::wstring& arguments, const TestFolder& folder, bool terminal)
{
    return start(folderOfPrograms() + L"retouch.exe", arguments, folder, terminal);
}

bool HostProgram::runs() const
{
    return WaitForSingleObject(process.hProcess, 0) != WAIT_OBJECT_0;
}

int HostProgram::exitCode() const
{
    DWORD code = 999;
    WaitForSingleObject(process.hProcess, 60000);
    GetExitCodeProcess(process.hProcess, &code);
    return (int)code;
}

std::wstring HostProgram::said() const
{
    const std::vector<uint8_t> bytes = readBytes(log);
    std::wstring text(bytes.size(), L'\0');
    text.resize((size_t)MultiByteToWideChar(CP_UTF8, 0, (const char*)bytes.data(), (int)bytes.size(), &text[0],
                                            (int)text.size()));
    return text;
}

struct Search {
    DWORD process;
    HostWindows found;
};

static std::wstring classOf(HWND window)
{
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return name;
}

static BOOL CALLBACK findWindows(HWND window, LPARAM parameter)
{
    Search* search = (Search*)parameter;
    DWORD process;
    GetWindowThreadProcessId(window, &process);
    if (process != search->process || !IsWindowVisible(window)) return TRUE;
    HostWindows& found = search->found;
    if (classOf(window) == L"RetouchHost") {
        found.host = window;
    } else if (HWND canvas = FindWindowExW(window, nullptr, L"KOVRETOUCH", nullptr)) {
        found.editor = window;
        found.canvas = canvas;
    } else if (GetDlgItem(window, BRUSH_BUTTON)) {
        found.palette = window;
    } else if (classOf(window) == L"#32770") {
        found.box = window;
    }
    return TRUE;
}

static BOOL CALLBACK addText(HWND window, LPARAM text)
{
    wchar_t part[2048] = L"";
    SendMessageW(window, WM_GETTEXT, 2048, (LPARAM)part);
    *(std::wstring*)text += std::wstring(part) + L"\n";
    return TRUE;
}

static bool waitForWindows(const HostProgram& program, HostWindows* windows, const char* what,
                           const std::function<bool()>& there)
{
    return waitUntil(what,
                     [&] {
                         *windows = windowsOf(program);
                         return there() || !program.runs();
                     }) &&
           there();
}

HostWindows windowsOf(const HostProgram& program)
{
    Search search = {program.process.dwProcessId, {}};
    EnumWindows(findWindows, (LPARAM)&search);
    return search.found;
}

bool waitForHost(const HostProgram& program, HostWindows* windows)
{
    return waitForWindows(program, windows, "the window", [&] { return windows->host != nullptr; });
}

bool waitForEditor(const HostProgram& program, HostWindows* windows)
{
    return waitForWindows(program, windows, "the editor", [&] { return windows->canvas && windows->palette; });
}

bool waitForBox(const HostProgram& program, HostWindows* windows)
{
    return waitForWindows(program, windows, "a message box", [&] { return windows->box != nullptr; });
}

bool answerBox(const HostProgram& program, int button)
{
    HostWindows windows;
    if (!waitForBox(program, &windows)) return false;
    PostMessageW(windows.box, WM_COMMAND, (WPARAM)button, 0);
    return waitUntil("the box to go", [&] { return !IsWindow(windows.box); });
}

std::wstring textIn(HWND box)
{
    std::wstring text;
    EnumChildWindows(box, addText, (LPARAM)&text);
    return text;
}

// An absolute input event moves only the system's pointer. SetCursorPos would take the display's along, which Wine
// hears of a little later, once at the old place: the button would at times go down there.
void sendMouse(DWORD flags, POINT at)
{
    const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags | MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    input.mi.dx = (LONG)(((LONGLONG)at.x * 65536 + width - 1) / width);
    input.mi.dy = (LONG)(((LONGLONG)at.y * 65536 + height - 1) / height);
    SendInput(1, &input, sizeof input);
}

void clickOn(HWND window)
{
    RECT box;
    GetWindowRect(window, &box);
    const POINT middle = {(box.left + box.right) / 2, (box.top + box.bottom) / 2};
    sendMouse(0, middle);
    sendMouse(MOUSEEVENTF_LEFTDOWN, middle);
    sendMouse(MOUSEEVENTF_LEFTUP, middle);
}

bool endSession(const HostProgram& program, int button)
{
    const HostWindows windows = windowsOf(program);
    DWORD pressed = 0;
    return waitUntil("the session's end", [&] {
        if (!IsWindow(windows.editor)) return true;
        // A window that has just come may lose a click; one a second does no harm.
        if (GetTickCount() - pressed > 1000) {
            clickOn(GetDlgItem(windows.palette, button));
            pressed = GetTickCount();
        }
        return false;
    });
}

void dropOn(const HostProgram& program, HWND window, const std::vector<std::wstring>& paths)
{
    DROPFILES head = {};
    head.pFiles = sizeof head;
    head.fWide = TRUE;
    std::wstring names;
    for (const std::wstring& path : paths)
        names += path + L'\0';
    names += L'\0';
    std::vector<uint8_t> bytes(sizeof head + names.size() * sizeof(wchar_t));
    memcpy(&bytes[0], &head, sizeof head);
    memcpy(&bytes[sizeof head], names.data(), names.size() * sizeof(wchar_t));
    // The message is for a handle of the program's own memory; one that does not move is its address.
    uint8_t* memory = (uint8_t*)VirtualAllocEx(program.process.hProcess, nullptr, bytes.size() + 4096,
                                               MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    ASSERT_TRUE(WriteProcessMemory(program.process.hProcess, memory + 2048, bytes.data(), bytes.size(), nullptr));
    PostMessageW(window, WM_DROPFILES, (WPARAM)(memory + 2048), 0);
}

void pressKey(WORD key, bool control)
{
    const auto press = [](WORD code, DWORD flags) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = code;
        input.ki.dwFlags = flags;
        SendInput(1, &input, sizeof input);
    };
    if (control) press(VK_CONTROL, 0);
    press(key, 0);
    press(key, KEYEVENTF_KEYUP);
    if (control) press(VK_CONTROL, KEYEVENTF_KEYUP);
}

bool pressKeyUntil(HWND window, WORD key, bool control, const std::function<bool()>& holds)
{
    DWORD pressed = GetTickCount() - 5000;
    return waitUntil("what the key does", [&] {
        if (holds()) return true;
        if (GetTickCount() - pressed >= 5000) {
            SetForegroundWindow(window);
            pressKey(key, control);
            pressed = GetTickCount();
        }
        return false;
    });
}

std::vector<uint8_t> smallPhoto()
{
    constexpr int width = 50, height = 35;
    constexpr size_t headerSize = 54, rowBytes = 152;
    std::vector<uint8_t> file(headerSize + rowBytes * height);
    const BITMAPFILEHEADER head = {0x4D42, (DWORD)file.size(), 0, 0, (DWORD)headerSize};
    const BITMAPINFOHEADER info = {sizeof info, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    memcpy(&file[0], &head, sizeof head);
    memcpy(&file[sizeof head], &info, sizeof info);
    for (size_t i = headerSize; i < file.size(); ++i)
        file[i] = (uint8_t)((i - headerSize) % rowBytes < width * 3 ? i * 7 % 200 : 0);
    return file;
}
