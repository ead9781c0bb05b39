// retouch.exe where its libraries are missing or wrong, and where there is no terminal to speak to.
#include "host/report.h"
#include "tests/host/host_program.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

// What a program file says of itself.
static IMAGE_NT_HEADERS* headersOf(std::vector<uint8_t>& file)
{
    return (IMAGE_NT_HEADERS*)&file[(size_t)((IMAGE_DOS_HEADER*)&file[0])->e_lfanew];
}

// The header's optional part for the other number of bits. It names no tables of the file, which lie elsewhere there:
// a system that maps such a file before it looks at its kind must find nothing to follow.
template <typename Other, typename Own>
static void rewriteOptional(Own* own, WORD magic)
{
    Other other = {};
    other.Magic = magic;
    other.ImageBase = 0x10000000;
    other.SectionAlignment = own->SectionAlignment;
    other.FileAlignment = own->FileAlignment;
    other.MajorSubsystemVersion = own->MajorSubsystemVersion;
    other.SizeOfImage = own->SizeOfImage;
    other.SizeOfHeaders = own->SizeOfHeaders;
    other.Subsystem = own->Subsystem;
    memcpy((void*)own, &other, offsetof(Other, DataDirectory));
}

static std::vector<uint8_t> forOtherBits(std::vector<uint8_t> file)
{
    IMAGE_NT_HEADERS* headers = headersOf(file);
    const bool is64 = headers->FileHeader.Machine == IMAGE_FILE_MACHINE_AMD64;
    headers->FileHeader.Machine = is64 ? IMAGE_FILE_MACHINE_I386 : IMAGE_FILE_MACHINE_AMD64;
    if (is64)
        rewriteOptional<IMAGE_OPTIONAL_HEADER32>(&headers->OptionalHeader, IMAGE_NT_OPTIONAL_HDR32_MAGIC);
    else
        rewriteOptional<IMAGE_OPTIONAL_HEADER64>(&headers->OptionalHeader, IMAGE_NT_OPTIONAL_HDR64_MAGIC);
    return file;
}

// The program in a folder of its own, with those two libraries; an empty one is left out. What it says.
static std::wstring saidBeside(const std::vector<uint8_t>& library, const std::vector<uint8_t>& controls)
{
    TestFolder folder;
    writeBytes(folder.path + L"retouch.exe", readBytes(folderOfPrograms() + L"retouch.exe"));
    if (!library.empty()) writeBytes(folder.path + L"KOVRTCH32.dll", library);
    if (!controls.empty()) writeBytes(folder.path + L"KOVCTRL32.dll", controls);
    writeBytes(folder.path + L"photo.bmp", smallPhoto());
    HostProgram program;
    program.start(folder.path + L"retouch.exe", L"photo.bmp", folder);
    EXPECT_EQ(program.exitCode(), exitNoLibrary);
    EXPECT_EQ(readBytes(folder.path + L"photo-retouched.bmp").size(), 0u);
    return program.said();
}

struct HostInstallation : testing::Test {
    const std::vector<uint8_t> library = readBytes(folderOfPrograms() + L"KOVRTCH32.dll");
    const std::vector<uint8_t> controls = readBytes(folderOfPrograms() + L"KOVCTRL32.dll");
    const std::vector<uint8_t> noProgram = std::vector<uint8_t>(5000, 'x');
};

// The smallest file of a kind that only the system decodes, so many pixels wide.
static std::vector<uint8_t> smallGif(uint8_t width)
{
    return {'G', 'I',  'F', '8', '9', 'a', width, 0, 1, 0, 0x80, 0, 0, 0,    0, 0, 255, 255,
            255, 0x2C, 0,   0,   0,   0,   width, 0, 1, 0, 0,    2, 2, 0x44, 1, 0, 0x3B};
}

TEST_F(HostInstallation, NamesTheLibraryThatIsMissing)
{
    EXPECT_TRUE(tells(saidBeside(library, {}), L"KOVCTRL32.dll is missing"));
    EXPECT_TRUE(tells(saidBeside({}, controls), L"KOVRTCH32.dll is missing"));
}

TEST_F(HostInstallation, NamesTheLibraryOfAnotherNumberOfBits)
{
    EXPECT_TRUE(tells(saidBeside(library, forOtherBits(controls)), L"KOVCTRL32.dll is built for another number"));
    EXPECT_TRUE(tells(saidBeside(forOtherBits(library), controls), L"KOVRTCH32.dll is built for another number"));
}

TEST_F(HostInstallation, NamesTheLibraryThatIsDamaged)
{
    EXPECT_TRUE(tells(saidBeside(library, noProgram), L"KOVCTRL32.dll is damaged"));
    // A library, but not that one.
    EXPECT_TRUE(tells(saidBeside(controls, controls), L"KOVRTCH32.dll is damaged"));
}

// A decoder that crashes or finds no memory costs its own photo, not those behind it.
TEST_F(HostInstallation, SurvivesItsDecoders)
{
    TestFolder folder;
    writeBytes(folder.path + L"failing.exe", readBytes(folderOfPrograms() + L"retouch.exe"));
    writeBytes(folder.path + L"KOVRTCH32.dll", library);
    writeBytes(folder.path + L"KOVCTRL32.dll", controls);
    writeBytes(folder.path + L"windowscodecs.dll", readBytes(folderOfPrograms() + L"failing\\windowscodecs.dll"));
    writeBytes(folder.path + L"crashes.gif", smallGif(1));
    writeBytes(folder.path + L"wants memory.gif", smallGif(2));
    // Wine prefers its own component, unless it is told otherwise for a program of that name.
    const wchar_t key[] = L"Software\\Wine\\AppDefaults\\failing.exe\\DllOverrides", order[] = L"native,builtin";
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, key, L"windowscodecs", REG_SZ, order, sizeof order), 0);
    HostProgram crashing, hungry;
    crashing.start(folder.path + L"failing.exe", L"crashes.gif \"wants memory.gif\" none.gif", folder);
    EXPECT_EQ(crashing.exitCode(), exitNotAPhoto);
    const std::wstring said = crashing.said();
    EXPECT_TRUE(tells(said, L"damaged: crashes.gif")) << testing::PrintToString(said);
    EXPECT_TRUE(tells(said, L"wants memory.gif")) << testing::PrintToString(said);
    EXPECT_TRUE(tells(said, L"none.gif")) << testing::PrintToString(said);
    hungry.start(folder.path + L"failing.exe", L"\"wants memory.gif\"", folder);
    EXPECT_EQ(hungry.exitCode(), exitTooLarge);
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Wine\\AppDefaults\\failing.exe");
}

// A large photo may have all 4 GB that a 64-bit Windows gives to a 32-bit program.
TEST(HostMemory, IsAllThatThereIs)
{
    std::vector<uint8_t> program = readBytes(folderOfPrograms() + L"retouch.exe");
    EXPECT_TRUE(headersOf(program)->FileHeader.Characteristics & IMAGE_FILE_LARGE_ADDRESS_AWARE);
}

// A program of windows: a double click opens no console.
TEST(HostVoice, IsNotThatOfAConsole)
{
    std::vector<uint8_t> program = readBytes(folderOfPrograms() + L"retouch.exe");
    EXPECT_EQ(headersOf(program)->OptionalHeader.Subsystem, IMAGE_SUBSYSTEM_WINDOWS_GUI);
}

TEST(HostVoice, IsAMessageBoxWhereThereIsNoTerminal)
{
    TestFolder folder;
    HostProgram program;
    HostWindows windows;
    program.startRetouch(L"nowhere.jpg", folder, false);
    ASSERT_TRUE(waitForBox(program, &windows));
    EXPECT_TRUE(tells(textIn(windows.box), L"nowhere.jpg"));
    PostMessageW(windows.box, WM_COMMAND, IDOK, 0);
    EXPECT_EQ(program.exitCode(), exitMissing);
}

static std::wstring onScreenOf(HANDLE console)
{
    std::wstring text(80 * 60, L' ');
    DWORD count = 0;
    ReadConsoleOutputCharacterW(console, &text[0], (DWORD)text.size(), {0, 0}, &count);
    text.resize(count);
    return text;
}

// Started from a terminal that passes no handles on, as a command line does with programs of windows.
TEST(HostVoice, IsHeardInTheTerminalThatItWasStartedFrom)
{
    const HANDLE kept[] = {GetStdHandle(STD_INPUT_HANDLE), GetStdHandle(STD_OUTPUT_HANDLE),
                           GetStdHandle(STD_ERROR_HANDLE)};
    FreeConsole();
    ASSERT_TRUE(AllocConsole());
    HANDLE screen = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    std::wstring line = L"\"" + folderOfPrograms() + L"retouch.exe\" --help";
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    // Windows gives a program of windows neither its parent's console nor its handles; Wine gives it both.
    for (DWORD which : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE})
        SetStdHandle(which, nullptr);
    HostProgram program;
    EXPECT_TRUE(CreateProcessW(nullptr, &line[0], nullptr, nullptr, FALSE, DETACHED_PROCESS, nullptr, nullptr, &startup,
                               &program.process));
    EXPECT_EQ(program.exitCode(), exitSaved);
    EXPECT_TRUE(waitUntil("the words", [&] { return tells(onScreenOf(screen), L"Usage: retouch.exe"); }));
    CloseHandle(screen);
    FreeConsole();
    SetStdHandle(STD_INPUT_HANDLE, kept[0]);
    SetStdHandle(STD_OUTPUT_HANDLE, kept[1]);
    SetStdHandle(STD_ERROR_HANDLE, kept[2]);
}
