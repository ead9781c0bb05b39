// retouch.exe as a user starts it: every way in which it ends before the editor opens.
#include "host/report.h"
#include "tests/host/test_folder.h"

#include <gtest/gtest.h>
#include <windows.h>

struct CommandOutcome {
    int code;
    std::wstring said;
};

static CommandOutcome runRetouch(const std::wstring& arguments, const TestFolder& folder)
{
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring line = program;
    line.resize(line.find_last_of(L'\\') + 1);
    line = L"\"" + line + L"retouch.exe\" " + arguments;
    const std::wstring log = folder.path + L"said.txt";
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError =
        CreateFileW(log.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
    PROCESS_INFORMATION process;
    DWORD code = (DWORD)-1;
    if (CreateProcessW(nullptr, &line[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process)) {
        if (WaitForSingleObject(process.hProcess, 60000) != WAIT_OBJECT_0) TerminateProcess(process.hProcess, 999);
        GetExitCodeProcess(process.hProcess, &code);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    CloseHandle(startup.hStdOutput);
    const std::vector<uint8_t> bytes = readBytes(log);
    DeleteFileW(log.c_str());
    std::wstring said(bytes.size(), L'\0');
    said.resize(
        MultiByteToWideChar(CP_UTF8, 0, (const char*)bytes.data(), (int)bytes.size(), &said[0], (int)said.size()));
    return {(int)code, said};
}

TEST(HostCommandLine, HelpIsToldAndIsNoError)
{
    TestFolder folder;
    const CommandOutcome outcome = runRetouch(L"--help", folder);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_NE(outcome.said.find(L"Usage:"), std::wstring::npos) << outcome.said.size();
}

TEST(HostCommandLine, AMissingPhotoIsNamed)
{
    TestFolder folder;
    const std::wstring name = folder.path + L"żółw 写真.jpg";
    const CommandOutcome outcome = runRetouch(L"\"" + name + L"\"", folder);
    EXPECT_EQ(outcome.code, exitMissing);
    EXPECT_NE(outcome.said.find(name), std::wstring::npos);
}

TEST(HostCommandLine, BadInputHasItsOwnCodes)
{
    TestFolder folder;
    const std::wstring photo = L"\"" + folder.path + L"a.jpg\"";
    writeBytes(folder.path + L"a.jpg", std::vector<uint8_t>(100, 'x'));
    EXPECT_EQ(runRetouch(photo, folder).code, exitNotAPhoto);
    EXPECT_EQ(runRetouch(L"\"" + folder.path + L".\"", folder).code, exitMissing);
    EXPECT_EQ(runRetouch(photo + L" --fast", folder).code, exitUsage);
    EXPECT_EQ(runRetouch(photo + L" -o", folder).code, exitUsage);
    EXPECT_EQ(runRetouch(photo + L" -o \"" + folder.path + L"b.gif\"", folder).code, exitUsage);
    EXPECT_EQ(runRetouch(photo + L" -o \"" + folder.path + L"none\\b.png\"", folder).code, exitCannotWrite);
    EXPECT_EQ(namesIn(folder).size(), 1u);
}

// Told before the work is done, not when it cannot be saved any more.
TEST(HostCommandLine, AWriteProtectedFileIsNotReplaced)
{
    TestFolder folder;
    const std::wstring name = folder.path + L"b.png";
    writeBytes(folder.path + L"a.jpg", std::vector<uint8_t>(100, 'x'));
    writeBytes(name, std::vector<uint8_t>(100, 'y'));
    SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_READONLY);
    const CommandOutcome outcome =
        runRetouch(L"\"" + folder.path + L"a.jpg\" --overwrite -o \"" + name + L"\"", folder);
    EXPECT_EQ(outcome.code, exitCannotWrite);
    EXPECT_NE(outcome.said.find(L"write-protected: " + name), std::wstring::npos);
    SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(readBytes(name), std::vector<uint8_t>(100, 'y'));
}

TEST(HostCommandLine, NothingIsReplacedUnasked)
{
    TestFolder folder;
    const std::wstring photo = L"\"" + folder.path + L"a.jpg\"", other = L"\"" + folder.path + L"b.png\"";
    writeBytes(folder.path + L"a.jpg", std::vector<uint8_t>(100, 'x'));
    writeBytes(folder.path + L"b.png", std::vector<uint8_t>(100, 'y'));
    EXPECT_EQ(runRetouch(photo + L" -o " + photo, folder).code, exitCannotWrite);
    EXPECT_EQ(runRetouch(photo + L" -o " + other, folder).code, exitCannotWrite);
    // With the flag it goes on, as far as opening the photo, which is none.
    EXPECT_EQ(runRetouch(photo + L" --overwrite -o " + other, folder).code, exitNotAPhoto);
    EXPECT_EQ(readBytes(folder.path + L"b.png"), std::vector<uint8_t>(100, 'y'));
}

// A photo whose sides no JPEG file takes, found before the work is done.
TEST(HostCommandLine, ASideThatIsTooLongForTheFormatIsTold)
{
    TestFolder folder;
    constexpr LONG WIDTH = 65501;
    constexpr DWORD ROW = (WIDTH * 3 + 3) / 4 * 4, HEADS = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    const BITMAPFILEHEADER head = {0x4D42, HEADS + ROW, 0, 0, HEADS};
    const BITMAPINFOHEADER info = {sizeof info, WIDTH, 1, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    std::vector<uint8_t> file((const uint8_t*)&head, (const uint8_t*)(&head + 1));
    file.insert(file.end(), (const uint8_t*)&info, (const uint8_t*)(&info + 1));
    file.resize(HEADS + ROW);
    writeBytes(folder.path + L"long.bmp", file);
    const CommandOutcome outcome =
        runRetouch(L"\"" + folder.path + L"long.bmp\" -o \"" + folder.path + L"long.jpg\"", folder);
    EXPECT_EQ(outcome.code, exitCannotWrite);
    EXPECT_NE(outcome.said.find(L"65500"), std::wstring::npos);
    EXPECT_EQ(namesIn(folder).size(), 1u);
}
