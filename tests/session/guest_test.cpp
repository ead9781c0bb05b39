// A good guest: what the host finds afterwards, and sessions that end while a dialog of theirs is open.
#include <windows.h>

#include <commdlg.h>
#include <dlgs.h>

#include "tests/session/import_patch.h"
#include "tests/session/library_fixture.h"
#include "tests/session/resources_in_use.h"

struct Guest : SessionTest {
    void expectQuit(int code)
    {
        ASSERT_TRUE(waitForReturn(&host));
        EXPECT_EQ(0, host.outcome.result);
        EXPECT_EQ(0, host.outcome.windowsLeft);
        EXPECT_TRUE(host.outcome.quitLeft);
        EXPECT_EQ(code, host.outcome.quitCode);
    }
};

static LRESULT CALLBACK quitWhenDestroyed(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_DESTROY) PostQuitMessage(42);
    return DefWindowProcA(window, message, wParam, lParam);
}

TEST_F(Guest, AParentThatQuitsWhenItIsDestroyedFindsItsQuitMessage)
{
    ASSERT_TRUE(open());
    runOnHost(&host, [&] {
        SetWindowLongPtrA(host.parent, GWLP_WNDPROC, (LONG_PTR)quitWhenDestroyed);
        DestroyWindow(host.parent);
    });
    expectQuit(42);
}

TEST_F(Guest, AQuitMessageBeforeTheSessionsOwnIsHandedOn)
{
    ASSERT_TRUE(open());
    runOnHost(&host, [&] {
        PostQuitMessage(7);
        SendMessageA(host.dialog, WM_CLOSE, 0, 0);
    });
    expectQuit(7);
}

TEST_F(Guest, AQuitMessageBehindTheSessionsOwnIsHandedOn)
{
    ASSERT_TRUE(open());
    runOnHost(&host, [&] {
        SendMessageA(host.dialog, WM_CLOSE, 0, 0);
        PostQuitMessage(0);
    });
    expectQuit(0);
}

TEST_F(Guest, TheHostsOwnQuitMessageKeepsItsCode)
{
    ASSERT_TRUE(open());
    runOnHost(&host, [] { PostQuitMessage(9); });
    expectQuit(9);
}

TEST_F(Guest, TheParentIsTheActiveWindowAfterwards)
{
    ASSERT_TRUE(open());
    ASSERT_TRUE(clickControl(&host, ID_CLOSE));
    ASSERT_TRUE(waitForReturn(&host));
    checkReturned(0);
    EXPECT_TRUE(host.outcome.parentActive);
    ASSERT_TRUE(open());
    ASSERT_TRUE(clickControl(&host, ID_SAVE));
    ASSERT_TRUE(waitForReturn(&host));
    EXPECT_TRUE(host.outcome.parentActive);
    ASSERT_TRUE(open());
    runOnHost(&host, [&] { SetActiveWindow(host.dialog), DestroyWindow(host.dialog); });
    ASSERT_TRUE(waitForReturn(&host));
    EXPECT_TRUE(host.outcome.parentActive);
}

static LONG profileReads;

static DWORD WINAPI countedProfile(LPCSTR section, LPCSTR key, LPCSTR standard, LPSTR buffer, DWORD size)
{
    InterlockedIncrement(&profileReads);
    return GetProfileStringA(section, key, standard, buffer, size);
}

static DWORD WINAPI doNothing(LPVOID)
{
    return 0;
}

// The language is read at the session's start; the threads of the host cost nothing.
TEST_F(Guest, ThreadsOfTheHostReadNoLanguage)
{
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "GetProfileStringA", (void*)countedProfile));
    profileReads = 0;
    for (int i = 0; i < 5; ++i) {
        const HANDLE thread = CreateThread(nullptr, 0, doNothing, nullptr, 0, nullptr);
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
    }
    EXPECT_EQ(0, profileReads);
    ASSERT_TRUE(open());
    EXPECT_EQ(1, profileReads);
    ASSERT_TRUE(clickControl(&host, ID_CLOSE));
    ASSERT_TRUE(waitForReturn(&host));
    undoPatch(&patch);
}

// ---- sessions that end while a dialog is open ----

constexpr int MIX_COLOURS = 719;  // a button of the colour dialog

struct OpenDialog {
    const char* name;
    int button;   // of the palette
    int presses;  // until the dialog opens
    int control;  // that only the dialog has
};

static const OpenDialog dialogs[] = {
    {"colour", ID_COLORS, 2, MIX_COLOURS},
    {"font", 123, 2, cmb1},
    {"contrast", 114, 1, 150},
};

struct OpenDialogs : Guest, testing::WithParamInterface<OpenDialog> {
    void endWhileOpen(void (*end)(Host* host))
    {
        const std::vector<uint8_t> before = snapshot(photo);
        ASSERT_TRUE(open());
        for (int i = 0; i < GetParam().presses; ++i)
            PostMessageA(host.palette, WM_COMMAND, (WPARAM)GetParam().button, 0);
        ASSERT_TRUE(waitUntil("the dialog", [&] { return dialogWith(host, GetParam().control) != nullptr; }));
        end(&host);
        ASSERT_TRUE(waitForReturn(&host));
        checkReturned(0);
        EXPECT_TRUE(host.outcome.parentActive);
        EXPECT_TRUE(before == snapshot(photo));
    }
};

static void closeDialog(Host* host)
{
    PostMessageA(host->dialog, WM_CLOSE, 0, 0);
}

static void destroyDialog(Host* host)
{
    runOnHost(host, [&] { DestroyWindow(host->dialog); });
}

TEST_P(OpenDialogs, EndWithTheSessionAndLeaveNothing)
{
    int number = 0;
    expectGivenBack(4, 3, [&] { ASSERT_NO_FATAL_FAILURE(endWhileOpen(number++ % 2 ? closeDialog : destroyDialog)); });
}

INSTANTIATE_TEST_SUITE_P(Guest, OpenDialogs, testing::ValuesIn(dialogs),
                         [](const auto& info) { return std::string(info.param.name); });

// ---- the question before a stored selection is deleted ----

struct DeleteQuestion : LibrarySession {};

// The row that was asked about goes while the question is open, and another becomes the current one.
TEST_F(DeleteQuestion, DeletesTheFileThatWasAskedAboutAndNoOtherRow)
{
    for (int i = 1; i <= 3; ++i)
        putFile(i, referenceTiff(roundSelection((unsigned)i, 40, 30)));
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_EQ(3, storedCount(host));
    ASSERT_TRUE(clickStored(&host, 1));
    ASSERT_TRUE(askToDelete(&host));
    const HWND list = GetDlgItem(libraryWindow(host), ID_LIBRARY_LIST);
    runOnHost(&host, [&] {
        SendMessageA(list, LB_DELETESTRING, 1, 0);
        SendMessageA(list, LB_SETCURSEL, 0, 0);
    });
    ASSERT_TRUE(answer(&host, IDYES));
    EXPECT_TRUE(waitUntil("the file to go", [&] { return stored(2).empty(); }));
    ASSERT_TRUE(settle(&host));
    EXPECT_FALSE(stored(1).empty());
    EXPECT_FALSE(stored(3).empty());
    EXPECT_EQ(2, storedCount(host));
    closeAndCheck(before);
}
