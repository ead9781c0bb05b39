// The window of retouch.exe, with real sessions in it.
#include "host/host_menu.h"
#include "host/report.h"
#include "tests/host/host_program.h"
#include "tests/session/pointer_guard.h"

#include <commctrl.h>
#include <commdlg.h>
#include <dlgs.h>
#include <gtest/gtest.h>

static const testing::Environment* const guardedPointer = testing::AddGlobalTestEnvironment(new GuardedPointer);

struct HostWindow : testing::Test {
    TestFolder folder;
    HostProgram program;
    HostWindows windows = {};

    void SetUp() override { writeBytes(folder.path + L"photo.bmp", smallPhoto()); }

    // The next photo may come.
    bool closesEditor()
    {
        return waitForEditor(program, &windows) && endSession(program, CLOSE_BUTTON) &&
               waitUntil("the window", [&] { return IsWindowEnabled(windows.host) != FALSE; });
    }
};

// What follows the headers of a bitmap file.
static std::vector<uint8_t> pixelsOf(const std::wstring& path)
{
    std::vector<uint8_t> file = readBytes(path);
    EXPECT_GT(file.size(), 54u);
    file.erase(file.begin(), file.begin() + std::min<ptrdiff_t>(54, (ptrdiff_t)file.size()));
    return file;
}

static HWND fileField(HWND dialog)
{
    HWND field = GetDlgItem(dialog, edt1);
    return field ? field : GetDlgItem(dialog, cmb13);
}

static bool findsFileDialog(const HostProgram& program, HostWindows* windows)
{
    *windows = windowsOf(program);
    return windows->box && fileField(windows->box);
}

static bool waitForFileDialog(const HostProgram& program, HostWindows* windows)
{
    return waitUntil("a dialog for a file", [&] { return findsFileDialog(program, windows); });
}

static bool waitForQuestion(const HostProgram& program, HostWindows* windows)
{
    return waitUntil("a question", [&] {
        *windows = windowsOf(program);
        return windows->box && !fileField(windows->box) && GetDlgItem(windows->box, IDNO);
    });
}

static void enterFileName(HWND dialog, const std::wstring& path)
{
    SendMessageW(fileField(dialog), WM_SETTEXT, 0, (LPARAM)path.c_str());
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
}

static bool saveAs(const HostProgram& program, HostWindows* windows, const std::wstring& path)
{
    if (!pressKeyUntil(windows->host, 'S', true, [&] { return findsFileDialog(program, windows); })) return false;
    enterFileName(windows->box, path);
    return true;
}

// The bar is there for part of a second. Where the machine lets nobody look in that time, it is tried again.
constexpr int ATTEMPTS = 10;

// Whether the bar was seen on its way before `end`.
static bool sawProgress(HWND bar, const std::function<bool()>& end)
{
    bool seen = false;
    waitUntil("the end of the work", [&] {
        const LRESULT at = IsWindowVisible(bar) ? SendMessageW(bar, PBM_GETPOS, 0, 0) : 0;
        seen = seen || (at > 0 && at < SendMessageW(bar, PBM_GETRANGE, FALSE, 0));
        return end();
    });
    return seen;
}

static std::wstring titleOf(HWND window)
{
    wchar_t title[256] = L"";
    GetWindowTextW(window, title, 256);
    return title;
}

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

TEST_F(HostWindow, TakesSeveralPhotosOneAfterTheOther)
{
    writeBytes(folder.path + L"second.bmp", smallPhoto());
    program.startRetouch(L"photo.bmp nowhere.bmp second.bmp", folder);
    ASSERT_TRUE(waitForEditor(program, &windows));
    EXPECT_EQ(titleOf(windows.host), L"photo.bmp - Retouch");
    ASSERT_TRUE(endSession(program, SAVE_BUTTON));
    ASSERT_TRUE(waitForEditor(program, &windows));
    EXPECT_EQ(titleOf(windows.host), L"second.bmp - Retouch");
    EXPECT_TRUE(tells(program.said(), L"nowhere.bmp"));
    ASSERT_TRUE(endSession(program, SAVE_BUTTON));
    EXPECT_EQ(program.exitCode(), exitMissing);  // of the first that was not saved
    EXPECT_EQ(pixelsOf(folder.path + L"photo-retouched.bmp"), pixelsOf(folder.path + L"photo.bmp"));
    EXPECT_EQ(pixelsOf(folder.path + L"second-retouched.bmp"), pixelsOf(folder.path + L"photo.bmp"));
}

TEST_F(HostWindow, AsksAfterCloseWhetherTheNextIsWanted)
{
    writeBytes(folder.path + L"second.bmp", smallPhoto());
    program.startRetouch(L"photo.bmp second.bmp", folder);
    ASSERT_TRUE(waitForEditor(program, &windows));
    ASSERT_TRUE(endSession(program, CLOSE_BUTTON));
    ASSERT_TRUE(waitForBox(program, &windows));
    EXPECT_TRUE(tells(textIn(windows.box), L"second.bmp"));
    ASSERT_TRUE(answerBox(program, IDNO));
    EXPECT_EQ(program.exitCode(), exitNothingSaved);
    EXPECT_TRUE(readBytes(folder.path + L"second-retouched.bmp").empty());
}

// Whatever is dropped while a photo is retouched waits: neither it nor the work is lost.
TEST_F(HostWindow, KeepsThePhotoInHandWhenAnotherIsDropped)
{
    writeBytes(folder.path + L"second.bmp", smallPhoto());
    writeBytes(folder.path + L"third.bmp", smallPhoto());
    program.startRetouch(L"photo.bmp", folder);
    ASSERT_TRUE(waitForEditor(program, &windows));
    const HWND editor = windows.editor;
    ASSERT_TRUE(waitUntil("the editor to take drops",
                          [&] { return (GetWindowLongPtrW(editor, GWL_EXSTYLE) & WS_EX_ACCEPTFILES) != 0; }));
    dropOn(program, editor, {folder.path + L"second.bmp"});
    dropOn(program, windows.host, {folder.path + L"third.bmp"});
    for (const wchar_t* name : {L"photo.bmp - Retouch", L"second.bmp - Retouch", L"third.bmp - Retouch"}) {
        ASSERT_TRUE(waitForEditor(program, &windows));
        EXPECT_EQ(titleOf(windows.host), name);
        EXPECT_EQ(windows.editor == editor, titleOf(windows.host) == L"photo.bmp - Retouch");
        ASSERT_TRUE(endSession(program, SAVE_BUTTON));
    }
    EXPECT_EQ(program.exitCode(), exitSaved);
    EXPECT_EQ(pixelsOf(folder.path + L"third-retouched.bmp"), pixelsOf(folder.path + L"photo.bmp"));
}

// Started without arguments the window waits for photos, and stays.
TEST_F(HostWindow, StaysForMorePhotosWhenItWasOpenedEmpty)
{
    program.startRetouch(L"", folder);
    ASSERT_TRUE(waitForHost(program, &windows));
    EXPECT_EQ(titleOf(windows.host), L"Retouch");
    EXPECT_EQ(windows.editor, nullptr);
    PostMessageW(windows.host, WM_COMMAND, COMMAND_ABOUT, 0);
    ASSERT_TRUE(waitForBox(program, &windows));
    EXPECT_TRUE(tells(textIn(windows.box), L"" RETOUCH_VERSION));
    ASSERT_TRUE(answerBox(program, IDOK));
    dropOn(program, windows.host, {folder.path + L"photo.bmp"});
    ASSERT_TRUE(waitForEditor(program, &windows));
    ASSERT_TRUE(endSession(program, CLOSE_BUTTON));
    ASSERT_TRUE(waitUntil("the empty window", [&] { return titleOf(windows.host) == L"Retouch"; }));
    EXPECT_TRUE(IsWindowEnabled(windows.host));
    PostMessageW(windows.host, WM_CLOSE, 0, 0);
    EXPECT_EQ(program.exitCode(), exitNothingSaved);
}

TEST_F(HostWindow, ShowsHowFarOpeningIs)
{
    writeBytes(folder.path + L"large.jpg", readBytes(L"Z:" SAMPLES L"/seeding.jpg"));
    program.startRetouch(L"", folder);
    ASSERT_TRUE(waitForHost(program, &windows));
    const HWND bar = FindWindowExW(windows.host, nullptr, PROGRESS_CLASSW, nullptr);
    bool seen = false;
    for (int attempt = 0; attempt < ATTEMPTS && !seen; ++attempt) {
        dropOn(program, windows.host, {folder.path + L"large.jpg"});
        seen = sawProgress(bar, [&] { return windowsOf(program).editor != nullptr; });
        ASSERT_TRUE(closesEditor());
    }
    EXPECT_TRUE(seen);
    PostMessageW(windows.host, WM_CLOSE, 0, 0);
    EXPECT_EQ(program.exitCode(), exitNothingSaved);
}

// A photo that takes its time, from Open by way of the save dialog to Save as.
TEST_F(HostWindow, ShowsHowFarItIsAndSavesTheResultAgain)
{
    std::vector<uint8_t> photo = readBytes(L"Z:" SAMPLES L"/seeding.jpg");
    ASSERT_FALSE(photo.empty());
    writeBytes(folder.path + L"large.jpg", photo);
    program.startRetouch(L"", folder);
    ASSERT_TRUE(waitForHost(program, &windows));
    const HWND bar = FindWindowExW(windows.host, nullptr, PROGRESS_CLASSW, nullptr);
    ASSERT_TRUE(bar);

    ASSERT_TRUE(pressKeyUntil(windows.host, 'O', true, [&] { return findsFileDialog(program, &windows); }));
    enterFileName(windows.box, folder.path + L"large.jpg");
    ASSERT_TRUE(waitForEditor(program, &windows));
    ASSERT_TRUE(endSession(program, SAVE_BUTTON));
    ASSERT_TRUE(waitForFileDialog(program, &windows));
    EXPECT_EQ(GetWindow(windows.box, GW_OWNER), windows.host);
    // Nothing is thrown away by a slip: whoever cancels, and presses Enter at the question, is asked once more.
    PostMessageW(windows.box, WM_COMMAND, IDCANCEL, 0);
    ASSERT_TRUE(waitForQuestion(program, &windows));
    const HWND question = windows.box;
    ASSERT_TRUE(pressKeyUntil(question, VK_RETURN, false, [&] { return !IsWindow(question); }));
    ASSERT_TRUE(waitForFileDialog(program, &windows));
    PostMessageW(windows.box, WM_COMMAND, IDOK, 0);
    bool seen = sawProgress(bar, [&] { return titleOf(windows.host) == L"large-retouched.jpg - Retouch"; });
    for (int attempt = 0; attempt < ATTEMPTS && !seen; ++attempt) {
        const std::wstring name = L"copy" + std::to_wstring(attempt) + L".jpg";
        ASSERT_TRUE(saveAs(program, &windows, folder.path + name));
        seen = sawProgress(bar, [&] { return titleOf(windows.host) == name + L" - Retouch"; });
    }
    EXPECT_TRUE(seen);

    ASSERT_TRUE(saveAs(program, &windows, folder.path + L"again.bmp"));
    ASSERT_TRUE(waitUntil("the second file", [&] { return titleOf(windows.host) == L"again.bmp - Retouch"; }));
    PostMessageW(windows.host, WM_CLOSE, 0, 0);
    EXPECT_EQ(program.exitCode(), exitSaved);
    EXPECT_FALSE(readBytes(folder.path + L"large-retouched.jpg").empty());
    EXPECT_FALSE(readBytes(folder.path + L"again.bmp").empty());
    EXPECT_EQ(readBytes(folder.path + L"large.jpg"), photo);
}

TEST_F(HostWindow, GivesUpOpeningWhenItIsClosed)
{
    writeBytes(folder.path + L"large.jpg", readBytes(L"Z:" SAMPLES L"/seeding.jpg"));
    program.startRetouch(L"", folder);
    ASSERT_TRUE(waitForHost(program, &windows));
    const HWND bar = FindWindowExW(windows.host, nullptr, PROGRESS_CLASSW, nullptr);
    // Whoever comes too late finds the editor, closes it and tries again.
    bool gaveUp = false;
    for (int attempt = 0; attempt < ATTEMPTS && !gaveUp; ++attempt) {
        dropOn(program, windows.host, {folder.path + L"large.jpg"});
        ASSERT_TRUE(waitUntil("the bar", [&] { return IsWindowVisible(bar) || windowsOf(program).canvas; }));
        PostMessageW(windows.host, WM_CLOSE, 0, 0);
        ASSERT_TRUE(waitUntil("the bar to go", [&] { return !IsWindowVisible(bar); }));
        SendMessageW(windows.host, WM_NULL, 0, 0);  // answered when it waits again, or the editor has the photo
        gaveUp = titleOf(windows.host) == L"Retouch" && IsWindowEnabled(windows.host) && program.runs();
        if (gaveUp) break;
        ASSERT_TRUE(closesEditor());
    }
    EXPECT_TRUE(gaveUp);
    PostMessageW(windows.host, WM_CLOSE, 0, 0);
    EXPECT_EQ(program.exitCode(), exitNothingSaved);
}
