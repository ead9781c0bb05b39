// The dialogs by keyboard: real keys in the session's own loop, which does no dialog navigation.
#include <windows.h>

#include <commctrl.h>

#include "tests/session/library_fixture.h"

struct Keyboard : LibrarySession {
    void SetUp() override
    {
        LibrarySession::SetUp();
        ASSERT_TRUE(open());
    }

    void focusOn(int id)
    {
        const HWND control = GetDlgItem(host.palette, id);
        runOnHost(&host, [&] { SetForegroundWindow(host.palette), SetFocus(control); });
        ASSERT_EQ(control, focusOf(host));
    }

    int focusedId() { return GetDlgCtrlID(focusOf(host)); }

    void press(WORD key)
    {
        pressKey(key);
        ASSERT_TRUE(settle(&host));
    }

    void pressShifted(WORD key)
    {
        keybd_event(VK_SHIFT, 0, 0, 0);
        pressKey(key);
        keybd_event(VK_SHIFT, 0, KEYEVENTF_KEYUP, 0);
        ASSERT_TRUE(settle(&host));
    }

    HWND contrast() { return dialogWith(host, ID_RESET_HUE); }

    void openContrast()
    {
        PostMessageW(host.palette, WM_COMMAND, ID_CONTRAST, 0);
        ASSERT_TRUE(waitUntil("the contrast dialog", [&] { return contrast() != nullptr; }));
        ASSERT_TRUE(settle(&host));
    }
};

// The order of the template, group by group, and round again.
TEST_F(Keyboard, TabWalksThePalette)
{
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    focusOn(ID_SAVE);
    const int order[] = {ID_CLOSE,  ID_UNDO, ID_REDO,   ID_LIBRARY, ID_BRUSH,   ID_WIDTH,
                         ID_HEIGHT, ID_LOCK, ID_CIRCLE, ID_FULL,    ID_OPACITY, ID_SAVE};
    int before = ID_SAVE;
    for (int id : order) {
        press(VK_TAB);
        ASSERT_EQ(id, focusedId());
        pressShifted(VK_TAB);
        ASSERT_EQ(before, focusedId());
        press(VK_TAB);
        before = id;
    }
    EXPECT_TRUE(isChecked(host, ID_BRUSH)) << "walking presses nothing";
}

TEST_F(Keyboard, ArrowsGoRoundAGroupAndSpacePresses)
{
    focusOn(ID_CIRCLE);
    press(VK_RIGHT);
    EXPECT_EQ(ID_RECTANGLE, focusedId());
    EXPECT_TRUE(isChecked(host, ID_CIRCLE));
    press(VK_SPACE);
    EXPECT_TRUE(isChecked(host, ID_RECTANGLE));
    press(VK_DOWN);
    EXPECT_EQ(ID_CIRCLE, focusedId());
    press(VK_UP);
    EXPECT_EQ(ID_RECTANGLE, focusedId());
}

TEST_F(Keyboard, ArrowsMoveABar)
{
    focusOn(ID_WIDTH);
    press(VK_RIGHT);
    EXPECT_EQ(17, scrollPosition(host, ID_WIDTH));
    press(VK_LEFT);
    press(VK_LEFT);
    EXPECT_EQ(15, scrollPosition(host, ID_WIDTH));
}

TEST_F(Keyboard, EnterKeepsAndEscapeCancelsTheContrast)
{
    const auto before = snapshot(photo);
    openContrast();
    EXPECT_EQ(ID_CONTRAST_OK, focusedId());
    press(VK_ESCAPE);
    ASSERT_TRUE(waitUntil("it to close", [&] { return !contrast(); }));
    EXPECT_TRUE(before == snapshot(photo));
    openContrast();
    press(VK_RETURN);
    ASSERT_TRUE(waitUntil("it to close", [&] { return !contrast(); }));
    EXPECT_FALSE(before == snapshot(photo)) << "OK changes the image even at the neutral positions";
}
