// The worked hosts of the documentation, each a program of its own: a photo goes in, the real pointer paints a stroke,
// Save or Close is pressed, and what the host leaves behind is looked at.
#include "tests/host/host_program.h"
#include "tests/session/pointer_guard.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>

constexpr int WIDTH = 50, HEIGHT = 35;  // shown exactly 20 times as large by every host
constexpr size_t HEADER_SIZE = 54, ROW_BYTES = 152;
constexpr COLORREF PAINT_COLOUR = 0x00C0C0FF;  // what Brush starts with

static std::vector<uint8_t> photo()
{
    std::vector<uint8_t> file(HEADER_SIZE + ROW_BYTES * HEIGHT);
    BITMAPFILEHEADER head = {0x4D42, (DWORD)file.size(), 0, 0, (DWORD)HEADER_SIZE};
    BITMAPINFOHEADER info = {sizeof info, WIDTH, HEIGHT, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    memcpy(&file[0], &head, sizeof head);
    memcpy(&file[sizeof head], &info, sizeof info);
    for (size_t i = HEADER_SIZE; i < file.size(); ++i)
        file[i] = (uint8_t)((i - HEADER_SIZE) % ROW_BYTES < WIDTH * 3 ? i * 7 % 200 : 0);
    return file;
}

static COLORREF pixelOf(const std::vector<uint8_t>& file, int x, int y)
{
    const uint8_t* at = &file[HEADER_SIZE + ROW_BYTES * (size_t)(HEIGHT - 1 - y) + 3 * (size_t)x];
    return RGB(at[2], at[1], at[0]);
}

struct Program {
    PROCESS_INFORMATION process = {};
    ~Program()
    {
        if (process.hProcess && WaitForSingleObject(process.hProcess, 0) != WAIT_OBJECT_0)
            TerminateProcess(process.hProcess, 999);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    int exitCode() const
    {
        DWORD code = 999;
        WaitForSingleObject(process.hProcess, 30000);
        GetExitCodeProcess(process.hProcess, &code);
        return (int)code;
    }
};

// Runs in the folder; what the program says goes to said.txt there.
static void start(Program* program, const std::wstring& path, const std::wstring& argument, const TestFolder& folder)
{
    std::wstring line = L"\"" + path + L"\" \"" + argument + L"\"";
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = CreateFileW((folder.path + L"said.txt").c_str(), GENERIC_WRITE,
                                                         FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
    EXPECT_TRUE(CreateProcessW(nullptr, &line[0], nullptr, nullptr, TRUE, 0, nullptr, folder.path.c_str(), &startup,
                               &program->process));
    CloseHandle(startup.hStdOutput);
}

static std::string said(const TestFolder& folder)
{
    const std::vector<uint8_t> bytes = readBytes(folder.path + L"said.txt");
    return std::string(bytes.begin(), bytes.end());
}

struct Editor {
    DWORD process;
    HWND canvas, palette;
};

static BOOL CALLBACK findParts(HWND window, LPARAM parameter)
{
    Editor* editor = (Editor*)parameter;
    DWORD process;
    GetWindowThreadProcessId(window, &process);
    if (process != editor->process || !IsWindowVisible(window)) return TRUE;
    if (HWND canvas = FindWindowExA(window, nullptr, "KOVRETOUCH", nullptr)) editor->canvas = canvas;
    if (GetDlgItem(window, BRUSH_BUTTON)) editor->palette = window;
    return TRUE;
}

static bool openedBy(const Program& program, Editor* editor)
{
    return waitUntil("the editor opens",
                     [&] {
                         *editor = {program.process.dwProcessId, nullptr, nullptr};
                         EnumWindows(findParts, (LPARAM)editor);
                         return (editor->canvas && editor->palette) ||
                                WaitForSingleObject(program.process.hProcess, 0) == WAIT_OBJECT_0;
                     }) &&
           editor->canvas;
}

// The middle of an image pixel on the screen.
static POINT onScreen(const Editor& editor, int x, int y)
{
    RECT client;
    GetClientRect(editor.canvas, &client);
    POINT at = {(2 * x + 1) * client.right / (2 * WIDTH), (2 * y + 1) * client.bottom / (2 * HEIGHT)};
    ClientToScreen(editor.canvas, &at);
    return at;
}

static bool shows(POINT at, COLORREF colour)
{
    const HDC screen = GetDC(nullptr);
    const COLORREF shown = GetPixel(screen, at.x, at.y);
    ReleaseDC(nullptr, screen);
    return shown == colour;
}

// A stroke of the brush as it is at the start, 16 pixels wide, along the middle row.
static bool paintStroke(const Editor& editor)
{
    const HWND brush = GetDlgItem(editor.palette, BRUSH_BUTTON);
    clickOn(brush);
    if (!waitUntil("Brush is chosen", [&] { return SendMessageA(brush, BM_GETCHECK, 0, 0) == BST_CHECKED; }))
        return false;
    const POINT from = onScreen(editor, 15, 17), to = onScreen(editor, 35, 17);
    // A press counts only once the pointer is known to be inside: then the brush's picture is there. The hand trembles,
    // in case the editor's windows came to the front only after the first move.
    LONG tremble = 0;
    const bool inside = waitUntil("the brush at the pointer", [&] {
        sendMouse(0, {from.x + (tremble ^= 1), from.y});
        return shows(from, PAINT_COLOUR);
    });
    if (!inside) return false;
    sendMouse(MOUSEEVENTF_LEFTDOWN, from);
    for (int step = 1; step <= 10; ++step)
        sendMouse(0, {from.x + (to.x - from.x) * step / 10, from.y});
    const bool painted = waitUntil("the stroke is seen", [&] { return shows(onScreen(editor, 35, 17), PAINT_COLOUR); });
    sendMouse(MOUSEEVENTF_LEFTUP, to);
    return painted;
}

static const testing::Environment* const guardedPointer = testing::AddGlobalTestEnvironment(new GuardedPointer);

class WorkedHost : public testing::TestWithParam<const char*> {
protected:
    // Runs from a folder of its own: the user's settings lie beside the library.
    std::wstring path()
    {
        const std::string name = GetParam();
        const std::wstring program(name.begin(), name.end());
        for (const std::wstring& file : {program, std::wstring(L"KOVRTCH32.dll"), std::wstring(L"KOVCTRL32.dll")})
            writeBytes(folder.path + file, readBytes(folderOfPrograms() + file));
        return folder.path + program;
    }
    TestFolder folder;
    Program program;
    Editor editor = {};
};

TEST_P(WorkedHost, SavesWhatWasPainted)
{
    writeBytes(folder.path + L"photo.bmp", photo());
    start(&program, path(), L"photo.bmp", folder);
    ASSERT_TRUE(openedBy(program, &editor)) << said(folder);
    ASSERT_TRUE(paintStroke(editor));
    clickOn(GetDlgItem(editor.palette, SAVE_BUTTON));
    EXPECT_EQ(program.exitCode(), 0) << said(folder);
    EXPECT_NE(said(folder).find("Saved: retouched.bmp"), std::string::npos);

    const std::vector<uint8_t> before = photo(), after = readBytes(folder.path + L"retouched.bmp");
    ASSERT_EQ(after.size(), before.size());
    EXPECT_TRUE(std::equal(after.begin(), after.begin() + HEADER_SIZE, before.begin()));
    for (int x = 15; x <= 35; ++x)
        EXPECT_EQ(pixelOf(after, x, 17), PAINT_COLOUR) << x;
    for (int x = 0; x < WIDTH; ++x) {  // the brush reaches 8 pixels up and down
        EXPECT_EQ(pixelOf(after, x, 5), pixelOf(before, x, 5)) << x;
        EXPECT_EQ(pixelOf(after, x, 29), pixelOf(before, x, 29)) << x;
    }
    EXPECT_EQ(readBytes(folder.path + L"photo.bmp"), before);
}

TEST_P(WorkedHost, WritesNothingAfterClose)
{
    writeBytes(folder.path + L"photo.bmp", photo());
    start(&program, path(), L"photo.bmp", folder);
    ASSERT_TRUE(openedBy(program, &editor)) << said(folder);
    ASSERT_TRUE(paintStroke(editor));
    clickOn(GetDlgItem(editor.palette, CLOSE_BUTTON));
    EXPECT_EQ(program.exitCode(), 1) << said(folder);
    EXPECT_NE(said(folder).find("Nothing saved."), std::string::npos);
    EXPECT_TRUE(readBytes(folder.path + L"retouched.bmp").empty());
}

TEST_P(WorkedHost, RefusesWhatIsNoSuchPhoto)
{
    std::vector<uint8_t> file = photo();
    file.resize(file.size() - 1);
    writeBytes(folder.path + L"photo.bmp", file);
    start(&program, path(), L"photo.bmp", folder);
    EXPECT_EQ(program.exitCode(), 2);
    EXPECT_NE(said(folder).find("Usage:"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Documented, WorkedHost, testing::Values(WORKED_HOSTS),
                         [](const auto& info) { return std::string(info.param, strlen(info.param) - 4); });

// A folder with the host and its libraries, of which something is wrong with KOVCTRL32.dll.
static std::string saidWithControlLibrary(const std::vector<uint8_t>& controlLibrary, int* code)
{
    TestFolder folder;
    for (const wchar_t* name : {L"host_cpp.exe", L"KOVRTCH32.dll"})
        writeBytes(folder.path + name, readBytes(folderOfPrograms() + name));
    if (!controlLibrary.empty()) writeBytes(folder.path + L"KOVCTRL32.dll", controlLibrary);
    Program program;
    start(&program, folder.path + L"host_cpp.exe", L"photo.bmp", folder);
    *code = program.exitCode();
    return said(folder);
}

TEST(IncompleteInstallation, NamesTheMissingControlLibrary)
{
    int code;
    const std::string told = saidWithControlLibrary({}, &code);
    EXPECT_EQ(code, 3);
    EXPECT_NE(told.find("KOVCTRL32.dll is missing"), std::string::npos) << told;
}

TEST(IncompleteInstallation, NamesTheControlLibraryOfAnotherNumberOfBits)
{
    std::vector<uint8_t> library = readBytes(folderOfPrograms() + L"KOVCTRL32.dll");
    IMAGE_NT_HEADERS* headers = (IMAGE_NT_HEADERS*)&library[(size_t)((IMAGE_DOS_HEADER*)&library[0])->e_lfanew];
    const bool is64 = headers->FileHeader.Machine == IMAGE_FILE_MACHINE_AMD64;
    headers->FileHeader.Machine = is64 ? IMAGE_FILE_MACHINE_I386 : IMAGE_FILE_MACHINE_AMD64;
    headers->OptionalHeader.Magic = is64 ? IMAGE_NT_OPTIONAL_HDR32_MAGIC : IMAGE_NT_OPTIONAL_HDR64_MAGIC;
    int code;
    const std::string told = saidWithControlLibrary(library, &code);
    EXPECT_EQ(code, 3);
    EXPECT_NE(told.find("KOVCTRL32.dll is built for another number of bits"), std::string::npos) << told;
}

// What lies in the zip for users, unpacked by check_package.sh, which names the folders.
static std::wstring folderNamedBy(const wchar_t* variable)
{
    wchar_t path[MAX_PATH] = {};
    EXPECT_NE(GetEnvironmentVariableW(variable, path, MAX_PATH), 0u);
    return std::wstring(path) + L"\\";
}

static void paintAndSave(const std::wstring& program, const wchar_t* result)
{
    TestFolder folder;
    writeBytes(folder.path + L"photo.bmp", photo());
    Program running;
    Editor editor = {};
    start(&running, program, L"photo.bmp", folder);
    ASSERT_TRUE(openedBy(running, &editor)) << said(folder);
    const HWND brush = GetDlgItem(editor.palette, BRUSH_BUTTON);
    clickOn(brush);
    waitUntil("Brush is chosen", [&] { return SendMessageA(brush, BM_GETCHECK, 0, 0) == BST_CHECKED; });
    clickOn(GetDlgItem(editor.palette, SAVE_BUTTON));
    EXPECT_EQ(running.exitCode(), 0) << said(folder);
    EXPECT_EQ(readBytes(folder.path + result).size(), photo().size());
}

TEST(DISABLED_Package, RetouchRunsFromAFolderOfAnyName)
{
    paintAndSave(folderNamedBy(L"RETOUCH_PACKAGE") + L"retouch.exe", L"photo-retouched.bmp");
}

TEST(DISABLED_Package, AHostBuiltAgainstItRuns)
{
    paintAndSave(folderNamedBy(L"RETOUCH_CONSUMER") + L"host.exe", L"retouched.bmp");
}
