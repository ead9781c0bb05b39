// The window of retouch.exe, with real sessions in it.
#include "host/report.h"
#include "tests/host/host_program.h"
#include "tests/session/pointer_guard.h"

#include <gtest/gtest.h>

namespace {

// The display's own pointer goes to where no window opens, and is heard of no more.
struct GuardedPointer : testing::Environment {
    void SetUp() override
    {
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 10, GetSystemMetrics(SM_CYSCREEN) / 2);
        guardPointer();
    }
};
const testing::Environment* const guardedPointer = testing::AddGlobalTestEnvironment(new GuardedPointer);

struct HostWindow : testing::Test {
    TestFolder folder;
    HostProgram program;
    HostWindows windows = {};

    void SetUp() override { writeBytes(folder.path + L"photo.bmp", smallPhoto()); }
};

std::wstring titleOf(HWND window)
{
    wchar_t title[256] = L"";
    GetWindowTextW(window, title, 256);
    return title;
}

}  // namespace

TEST_F(HostWindow, NamesThePhotoInItsTitleAndTheEditors)
{
    program.startRetouch(L"photo.bmp", folder);
    ASSERT_TRUE(waitForEditor(program, &windows));
    EXPECT_EQ(titleOf(windows.host), L"photo.bmp - Retouch");
    EXPECT_EQ(titleOf(windows.editor).find(L"photo.bmp - Retouch"), 0u);
    ASSERT_TRUE(endSession(program, CLOSE_BUTTON));
    EXPECT_EQ(program.exitCode(), exitNothingSaved);
}

TEST_F(HostWindow, HasThePaletteBesideTheEditor)
{
    program.startRetouch(L"photo.bmp", folder);
    ASSERT_TRUE(waitForEditor(program, &windows));
    RECT palette, editor, host;
    GetWindowRect(windows.palette, &palette);
    GetWindowRect(windows.editor, &editor);
    GetWindowRect(windows.host, &host);
    EXPECT_EQ(editor.left - palette.right, 8);
    EXPECT_GE(palette.left, host.left);
    EXPECT_LE(editor.right, host.right);
    ASSERT_TRUE(endSession(program, SAVE_BUTTON));
    EXPECT_EQ(program.exitCode(), exitSaved);
}
