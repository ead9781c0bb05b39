// The guide of retouch.exe at its key.
#include "host/report.h"
#include "tests/host/host_program.h"

#include <gtest/gtest.h>

TEST(HostGuide, LiesBesideTheProgram)
{
    EXPECT_FALSE(readBytes(folderOfPrograms() + L"guide\\guide.html").empty());
    EXPECT_FALSE(readBytes(folderOfPrograms() + L"guide\\brush.png").empty());
}

// Without its guide the program tells where it should be.
TEST(HostGuide, IsWantedByF1AlsoInASession)
{
    TestFolder folder;
    HostProgram program;
    HostWindows windows = {};
    for (const wchar_t* name : {L"retouch.exe", L"KOVRTCH32.dll", L"KOVCTRL32.dll"})
        writeBytes(folder.path + name, readBytes(folderOfPrograms() + name));
    writeBytes(folder.path + L"photo.bmp", smallPhoto());
    const auto boxTellsOfTheGuide = [&] {
        windows = windowsOf(program);
        return windows.box && textIn(windows.box).find(L"guide\\guide.html") != std::wstring::npos;
    };
    program.start(folder.path + L"retouch.exe", std::wstring(), folder);
    ASSERT_TRUE(waitForHost(program, &windows));
    ASSERT_TRUE(pressKeyUntil(windows.host, VK_F1, false, boxTellsOfTheGuide));
    ASSERT_TRUE(answerBox(program, IDOK));

    dropOn(program, windows.host, {folder.path + L"photo.bmp"});
    ASSERT_TRUE(waitForEditor(program, &windows));
    const HWND editor = windows.editor;
    ASSERT_TRUE(pressKeyUntil(editor, VK_F1, false, boxTellsOfTheGuide));
    ASSERT_TRUE(answerBox(program, IDOK));
    EXPECT_TRUE(IsWindow(editor));
    ASSERT_TRUE(endSession(program, CLOSE_BUTTON));
    PostMessageW(windows.host, WM_CLOSE, 0, 0);
    EXPECT_EQ(program.exitCode(), exitNothingSaved);
}

// What opens pages, for one test: a program that copies the page that it is given. The kind of pages, a name of the
// test's own, is taken away again.
struct PageOpener {
    wchar_t before[64] = L"";

    explicit PageOpener(const std::wstring& copy)
    {
        DWORD size = sizeof before;
        RegGetValueW(HKEY_CLASSES_ROOT, L".html", nullptr, RRF_RT_REG_SZ, nullptr, before, &size);
        set(L"RetouchTestPage\\shell\\open\\command", L"cmd.exe /c copy /y \"%1\" \"" + copy + L"\"");
        set(L".html", L"RetouchTestPage");
    }
    ~PageOpener()
    {
        set(L".html", before);
        RegDeleteTreeW(HKEY_CLASSES_ROOT, L"RetouchTestPage");
    }
    static void set(const wchar_t* key, const std::wstring& value)
    {
        const DWORD size = (DWORD)((value.size() + 1) * sizeof(wchar_t));
        EXPECT_EQ(RegSetKeyValueW(HKEY_CLASSES_ROOT, key, nullptr, REG_SZ, value.c_str(), size), 0);
    }
};

TEST(HostGuide, IsOpenedByF1)
{
    TestFolder folder;
    HostProgram program;
    HostWindows windows = {};
    const std::vector<uint8_t> page = {'t', 'h', 'e', ' ', 'p', 'a', 'g', 'e'};
    const std::wstring guide = folder.path + L"guide", copy = folder.path + L"opened.html";
    writeBytes(folder.path + L"retouch.exe", readBytes(folderOfPrograms() + L"retouch.exe"));
    CreateDirectoryW(guide.c_str(), nullptr);
    writeBytes(guide + L"\\guide.html", page);
    const PageOpener opener(copy);
    program.start(folder.path + L"retouch.exe", std::wstring(), folder);
    ASSERT_TRUE(waitForHost(program, &windows));
    ASSERT_TRUE(pressKeyUntil(windows.host, VK_F1, false, [&] { return readBytes(copy) == page; }));
    PostMessageW(windows.host, WM_CLOSE, 0, 0);
    EXPECT_EQ(program.exitCode(), exitNothingSaved);
    DeleteFileW((guide + L"\\guide.html").c_str());
}
