// Every way out of a session but Save is a Close: 0, and the bytes of the call.
#include "tests/session/session_fixture.h"

struct Leaving : SessionTest {
    std::vector<uint8_t> before;

    void openAndPaint()
    {
        ASSERT_TRUE(open());
        StrokeReplay replay = beginReplay(host, photo);
        before = replay.before;
        ASSERT_TRUE(chooseBrush(&host, &replay));
        ASSERT_TRUE(drawStroke(&host, {{40, 40}, {90, 60}}));
        ASSERT_FALSE(before == snapshot(photo)) << "the stroke must have painted";
    }

    void expectClosed()
    {
        ASSERT_TRUE(waitForReturn(&host));
        checkReturned(0);
        EXPECT_TRUE(before == snapshot(photo));
    }

    void expectNextSessionWorks()
    {
        openAndPaint();
        closeAndCheck(before);
    }
};

// The middle of a part of the window's frame, found by asking the window.
static bool findHitCode(HWND window, LRESULT code, POINT* found)
{
    RECT rect;
    GetWindowRect(window, &rect);
    int count = 0;
    POINT sum = {0, 0};
    for (int y = rect.top; y < rect.top + 40; y += 4)
        for (int x = rect.right - 1; x > rect.right - 120; x -= 4)
            if (SendMessageA(window, WM_NCHITTEST, 0, MAKELPARAM(x, y)) == code) {
                sum = {sum.x + x, sum.y + y};
                ++count;
            }
    if (!count) return false;
    *found = {sum.x / count, sum.y / count};
    return true;
}

TEST_F(Leaving, CloseButtonOfTheTitleBar)
{
    openAndPaint();
    POINT button;
    ASSERT_TRUE(findHitCode(host.dialog, HTCLOSE, &button));
    ASSERT_TRUE(movePointer(&host, button));
    ASSERT_TRUE(pressButtonOnly());
    ASSERT_TRUE(releaseButton(&host));
    expectClosed();
    expectNextSessionWorks();
}

TEST_F(Leaving, AltF4)
{
    openAndPaint();
    runOnHost(&host, [&] { SetForegroundWindow(host.dialog), SetFocus(host.canvas); });
    pressAltF4();
    expectClosed();
    expectNextSessionWorks();
}

TEST_F(Leaving, AltF4OnThePalette)
{
    openAndPaint();
    runOnHost(&host, [&] { SetForegroundWindow(host.palette), SetActiveWindow(host.palette); });
    pressAltF4();
    expectClosed();
    expectNextSessionWorks();
}

TEST_F(Leaving, CloseMessage)
{
    openAndPaint();
    PostMessageA(host.dialog, WM_CLOSE, 0, 0);
    expectClosed();
    expectNextSessionWorks();
}

TEST_F(Leaving, EscapeInTheDialog)
{
    openAndPaint();
    PostMessageA(host.dialog, WM_COMMAND, IDCANCEL, 0);
    expectClosed();
    expectNextSessionWorks();
}

TEST_F(Leaving, ParentDestroyed)
{
    openAndPaint();
    runOnHost(&host, [&] { DestroyWindow(host.parent); });
    expectClosed();
}

TEST_F(Leaving, DialogDestroyedByTheHost)
{
    openAndPaint();
    runOnHost(&host, [&] { DestroyWindow(host.dialog); });
    expectClosed();
    expectNextSessionWorks();
}

TEST_F(Leaving, SystemShuttingDown)
{
    openAndPaint();
    EXPECT_TRUE(SendMessageA(host.dialog, WM_QUERYENDSESSION, 0, 0));
    EXPECT_TRUE(host.running);
    SendMessageA(host.dialog, WM_ENDSESSION, TRUE, 0);
    EXPECT_TRUE(before == snapshot(photo)) << "the process may end as soon as the message returns";
    expectClosed();
    expectNextSessionWorks();
}

TEST_F(Leaving, ShutdownThatIsCalledOffGoesOn)
{
    openAndPaint();
    SendMessageA(host.dialog, WM_QUERYENDSESSION, 0, 0);
    SendMessageA(host.dialog, WM_ENDSESSION, FALSE, 0);
    EXPECT_TRUE(host.running);
    EXPECT_FALSE(before == snapshot(photo));
    closeAndCheck(before);
}

// The host's own quit message ends the session as a Close and is handed back to the host's loop.
TEST_F(Leaving, QuitMessageOfTheHost)
{
    openAndPaint();
    runOnHost(&host, [] { PostQuitMessage(7); });
    ASSERT_TRUE(waitForReturn(&host));
    EXPECT_EQ(0, host.outcome.result);
    EXPECT_EQ(0, host.outcome.windowsLeft);
    EXPECT_TRUE(host.outcome.quitLeft);
    EXPECT_TRUE(before == snapshot(photo));
    expectNextSessionWorks();
}

TEST_F(Leaving, WhileTheButtonIsHeld)
{
    openAndPaint();
    ASSERT_TRUE(movePointerOnCanvas(&host, 100, 100));
    ASSERT_TRUE(pressButton(&host));
    ASSERT_TRUE(movePointerOnCanvas(&host, 140, 120));
    PostMessageA(host.dialog, WM_CLOSE, 0, 0);
    expectClosed();
    letGoOfButton();
    expectNextSessionWorks();
}

// Close posts the end of the session; what still comes in before it must not be painted.
TEST_F(Leaving, InputBehindCloseIsNotPainted)
{
    openAndPaint();
    runOnHost(&host, [&] {
        SendMessageA(host.palette, WM_COMMAND, ID_CLOSE, 0);
        PostMessageA(host.canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(150, 100));
        PostMessageA(host.canvas, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(170, 100));
        PostMessageA(host.canvas, WM_LBUTTONUP, 0, MAKELPARAM(170, 100));
    });
    expectClosed();
}

TEST_F(Leaving, SaveAfterCloseByTitleBarOfAnEarlierSession)
{
    openAndPaint();
    PostMessageA(host.dialog, WM_CLOSE, 0, 0);
    expectClosed();
    openAndPaint();
    saveAndCheck();
    EXPECT_FALSE(before == snapshot(photo));
    usePhoto(300, 200);
    openAndPaint();  // and the 1 of that Save is not repeated
    PostMessageA(host.dialog, WM_CLOSE, 0, 0);
    expectClosed();
}
