#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <string>

#include "control_dialog.h"

static const std::vector<ControlSpec> tooltipControls = {
    {L"Bouton", L"BB:&Save && go BMP:[\xA3]#1215|#1216", 8, BS_PUSHBUTTON, 4, 4, 40, 14},
    {L"Bouton", L"BB:Undo", 190, BS_PUSHBUTTON, 50, 4, 40, 14},
    {L"Bouton", L"", 191, BS_PUSHBUTTON, 100, 4, 40, 14},
    {L"Bouton", L"BB:Read it", 192, BS_PUSHBUTTON, 4, 24, 40, 14},
    {L"SCROLLBAR", L"BB:O", 212, SBS_HORZ, 50, 24, 80, 10},
};

static BOOL CALLBACK collectTooltip(HWND window, LPARAM found)
{
    wchar_t name[64];
    GetClassNameW(window, name, 64);
    if (lstrcmpiW(name, TOOLTIPS_CLASSW) == 0) ((std::vector<HWND>*)found)->push_back(window);
    return TRUE;
}

static std::vector<HWND> tooltips()
{
    std::vector<HWND> found;
    EnumThreadWindows(GetCurrentThreadId(), collectTooltip, (LPARAM)&found);
    return found;
}

static std::wstring tipOf(HWND tooltip, HWND button)
{
    wchar_t text[256] = L"";
    TOOLINFOW entry = {};
    entry.cbSize = TTTOOLINFOW_V2_SIZE;
    entry.hwnd = button;
    entry.uId = (UINT_PTR)button;
    entry.lpszText = text;
    SendMessageW(tooltip, TTM_GETTEXTW, 256, (LPARAM)&entry);
    return text;
}

static int entryCount(HWND tooltip)
{
    return (int)SendMessageW(tooltip, TTM_GETTOOLCOUNT, 0, 0);
}

struct Tooltips : testing::Test {
    HWND dialog = (movePointer({5, 5}), openDialog(tooltipControls));  // the pointer is on no button yet
    void SetUp() override
    {
        ASSERT_TRUE(dialog);
        ASSERT_TRUE(activate(dialog));
        for (int id : {8, 190, 191})
            controlLibrary().setButtonPicture(item(id), solidBitmap(8, 8, 0x204060), 0);
        SetScrollRange(item(212), SB_CTL, 40, 100, FALSE);
        SetScrollPos(item(212), SB_CTL, 70, FALSE);
    }
    void TearDown() override { closeDialog(dialog); }
    HWND item(int id) const { return GetDlgItem(dialog, id); }
    void hover(int id)
    {
        movePointer(middleOf(item(id)));
        SendMessageW(item(id), WM_MOUSEMOVE, 0, MAKELPARAM(3, 3));
    }
};

TEST_F(Tooltips, OneWindowForADialogWithTheCaptions)
{
    hover(8);
    ASSERT_EQ(1u, tooltips().size());
    const HWND tooltip = tooltips()[0];
    hover(190);
    hover(8);
    EXPECT_EQ(1u, tooltips().size());
    EXPECT_EQ(2, entryCount(tooltip));
    EXPECT_EQ(L"Save & go", tipOf(tooltip, item(8)));
    EXPECT_EQ(L"Undo (Ctrl+Z)", tipOf(tooltip, item(190))) << "with the keys that do the same";
}

TEST_F(Tooltips, FollowTheText)
{
    hover(190);
    ASSERT_EQ(1u, tooltips().size());
    SetWindowTextW(item(190), L"BB:Back BMP:7");
    EXPECT_EQ(L"Back (Ctrl+Z)", tipOf(tooltips()[0], item(190)));
}

TEST_F(Tooltips, AppearUnderThePointer)
{
    movePointer(middleOf(item(190)));
    EXPECT_TRUE(waitFor(dialog, [&] { return tooltips().size() == 1 && IsWindowVisible(tooltips()[0]); }));
}

TEST_F(Tooltips, ButtonsWithoutTextHaveNone)
{
    hover(191);
    for (HWND tooltip : tooltips())
        EXPECT_EQ(L"", tipOf(tooltip, item(191)));
}

TEST_F(Tooltips, RepeatNoCaptionThatIsReadAlready)
{
    hover(192);
    for (HWND tooltip : tooltips())
        EXPECT_EQ(L"", tipOf(tooltip, item(192)));
    controlLibrary().setButtonPicture(item(192), solidBitmap(8, 8, 0x204060), 0);
    hover(192);
    ASSERT_EQ(1u, tooltips().size());
    EXPECT_EQ(L"Read it", tipOf(tooltips()[0], item(192)));
}

TEST_F(Tooltips, OfABarAreItsNameInFullWords)
{
    hover(212);
    for (HWND tooltip : tooltips())
        EXPECT_EQ(L"", tipOf(tooltip, item(212))) << "it has no name yet";
    EXPECT_EQ(0, controlLibrary().showBarValue(item(212), TRUE));
    EXPECT_EQ(1, controlLibrary().nameControl(item(212), L"Opacity"));
    hover(212);
    ASSERT_EQ(1u, tooltips().size());
    EXPECT_EQ(L"Opacity", tipOf(tooltips()[0], item(212)));
    EXPECT_EQ(0, controlLibrary().nameControl(nullptr, L"Opacity"));
    EXPECT_EQ(0, controlLibrary().nameControl(GetDesktopWindow(), L"Opacity"));
}

static std::wstring trackedText(HWND tooltip, HWND dialog)
{
    wchar_t text[256] = L"";
    TOOLINFOW entry = {};
    entry.cbSize = TTTOOLINFOW_V2_SIZE;
    entry.hwnd = dialog;
    entry.lpszText = text;
    SendMessageW(tooltip, TTM_GETTEXTW, 256, (LPARAM)&entry);
    return text;
}

TEST_F(Tooltips, ShowTheValueOfABarWhileItMoves)
{
    controlLibrary().nameControl(item(212), L"Opacity");
    EXPECT_EQ(1, controlLibrary().showBarValue(item(212), TRUE));
    ASSERT_EQ(1u, tooltips().size());
    EXPECT_TRUE(IsWindowVisible(tooltips()[0]));
    EXPECT_EQ(L"Opacity 70", trackedText(tooltips()[0], dialog));
    SetScrollPos(item(212), SB_CTL, 71, FALSE);
    EXPECT_EQ(1, controlLibrary().showBarValue(item(212), TRUE));
    EXPECT_EQ(L"Opacity 71", trackedText(tooltips()[0], dialog));
    EXPECT_EQ(1, controlLibrary().showBarValue(item(212), FALSE));
    EXPECT_FALSE(IsWindowVisible(tooltips()[0]));
}

TEST_F(Tooltips, GoWithTheButton)
{
    hover(8);
    hover(190);
    ASSERT_EQ(1u, tooltips().size());
    DestroyWindow(item(8));
    EXPECT_EQ(1, entryCount(tooltips()[0]));
}

TEST_F(Tooltips, ReleasingTheDialogDestroysTheWindow)
{
    hover(8);
    ASSERT_EQ(1u, tooltips().size());
    EXPECT_EQ(1, controlLibrary().releaseDialog(dialog));
    EXPECT_TRUE(tooltips().empty());
    EXPECT_EQ(1, controlLibrary().releaseDialog(dialog)) << "nothing left to release";
    hover(8);
    EXPECT_EQ(1u, tooltips().size());
    closeDialog(dialog);
    EXPECT_TRUE(tooltips().empty());
}
