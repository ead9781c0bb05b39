// The guide of retouch.exe at its key.
#include "host/report.h"
#include "tests/host/host_program.h"

#include <gtest/gtest.h>

TEST(HostGuide, LiesBesideTheProgram)
{
    EXPECT_FALSE(readBytes(folderOfPrograms() + L"guide\\guide.html").empty());
    EXPECT_FALSE(readBytes(folderOfPrograms() + L"guide\\brush.png").empty());
}

// A page that opened would be another program's. So the guide is taken away: the key then tells where it should be.
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
