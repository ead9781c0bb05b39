// The editing window: its place and size, keeping its proportions, and the pointer entering and leaving.
#include "tests/session/session_fixture.h"

struct EditingWindow : SessionTest {
    RECT windowRect()
    {
        RECT rect;
        GetWindowRect(host.dialog, &rect);
        return rect;
    }

    SIZE clientSize()
    {
        RECT rect;
        GetClientRect(host.dialog, &rect);
        return {rect.right, rect.bottom};
    }

    void expectCanvasFillsClient()
    {
        RECT canvas, client;
        GetClientRect(host.canvas, &canvas);
        GetClientRect(host.dialog, &client);
        EXPECT_EQ(client.right, canvas.right);
        EXPECT_EQ(client.bottom, canvas.bottom);
        POINT corner = {0, 0};
        MapWindowPoints(host.canvas, host.dialog, &corner, 1);
        EXPECT_EQ(0, corner.x);
        EXPECT_EQ(0, corner.y);
    }

    // Drags a point of the frame with the real pointer.
    void dragFrame(POINT from, int dx, int dy)
    {
        ASSERT_TRUE(movePointer(&host, from));
        const size_t first = seenCount();
        ASSERT_TRUE(pressButton(&host));
        ASSERT_TRUE(waitUntil("sizing to start", [&] { return wasSeen(first, host.dialog, WM_ENTERSIZEMOVE); }));
        ASSERT_TRUE(movePointer(&host, {from.x + dx / 2, from.y + dy / 2}));
        ASSERT_TRUE(movePointer(&host, {from.x + dx, from.y + dy}));
        ASSERT_TRUE(releaseButton(&host));
        ASSERT_TRUE(waitUntil("sizing to end", [&] { return wasSeen(first, host.dialog, WM_EXITSIZEMOVE); }));
        ASSERT_TRUE(settle(&host));
    }

    POINT middleOfRightBorder()
    {
        const RECT rect = windowRect();
        return {rect.right - 2, (rect.top + rect.bottom) / 2};
    }

    POINT middleOfBottomBorder()
    {
        const RECT rect = windowRect();
        return {(rect.left + rect.right) / 2, rect.bottom - 2};
    }
};

TEST_F(EditingWindow, HasTheCaptionOfItsParent)
{
    const wchar_t* const captions[] = {L"Host", L"\u041F\u043B\u044F\u0436 \u2014 \u6D77\u8FBA.jpg", L""};
    for (const wchar_t* caption : captions) {
        SetWindowTextW(host.parent, caption);
        ASSERT_TRUE(open());
        wchar_t text[64] = L"";
        GetWindowTextW(host.dialog, text, 64);
        EXPECT_STREQ(caption, text);
        closeAndCheck(snapshot(photo));
    }
}

TEST_F(EditingWindow, OccupiesTheRectangleOfTheCall)
{
    usePhoto(300, 200, 450, 300);
    ASSERT_TRUE(open());
    const RECT rect = windowRect();
    EXPECT_TRUE(EqualRect(&dialogRect, &rect))
        << rect.left << ' ' << rect.top << ' ' << rect.right << ' ' << rect.bottom;
    EXPECT_EQ(450, clientSize().cx);
    EXPECT_EQ(300, clientSize().cy);
    expectCanvasFillsClient();
    EXPECT_EQ(host.parent, GetWindow(host.dialog, GW_OWNER));
    EXPECT_EQ(host.dialog, GetWindow(host.palette, GW_OWNER));
    RECT palette;
    GetWindowRect(host.palette, &palette);
    EXPECT_EQ(palettePos.x, palette.left);
    EXPECT_EQ(palettePos.y, palette.top);
    EXPECT_FALSE(IsWindowEnabled(host.parent));
}

// A rectangle with nothing left inside the frame stands for the image's own size.
TEST_F(EditingWindow, RectangleTooSmallGivesTheImagesSize)
{
    const int frameX = 2 * GetSystemMetrics(SM_CXFRAME);
    const int frameY = 2 * GetSystemMetrics(SM_CYFRAME) + GetSystemMetrics(SM_CYCAPTION);
    const RECT tooSmall[] = {
        {70, 60, 70 + frameX, 400}, {70, 60, 500, 60 + frameY}, {70, 60, 70, 60}, {500, 400, 70, 60}};
    for (const RECT& rect : tooSmall) {
        dialogRect = rect;
        ASSERT_TRUE(open());
        EXPECT_EQ(300, clientSize().cx);
        EXPECT_EQ(200, clientSize().cy);
        EXPECT_EQ(rect.left, windowRect().left);
        EXPECT_EQ(rect.top, windowRect().top);
        expectCanvasFillsClient();
        closeAndCheck(snapshot(photo));
    }
}

TEST_F(EditingWindow, DraggingTheRightBorderMovesTheBottomAlong)
{
    ASSERT_TRUE(open());
    const RECT before = windowRect();
    const SIZE frame = {before.right - before.left - clientSize().cx, before.bottom - before.top - clientSize().cy};
    dragFrame(middleOfRightBorder(), 151, 0);
    const RECT after = windowRect();
    EXPECT_EQ(before.right + 151, after.right);
    EXPECT_EQ(before.left, after.left);
    EXPECT_EQ(before.top, after.top);
    const int width = after.right - after.left - frame.cx;
    EXPECT_EQ(200 * width / 300, clientSize().cy);
    expectCanvasFillsClient();
}

TEST_F(EditingWindow, DraggingTheBottomBorderMovesTheRightAlong)
{
    ASSERT_TRUE(open());
    const RECT before = windowRect();
    dragFrame(middleOfBottomBorder(), 0, 77);
    const RECT after = windowRect();
    EXPECT_EQ(before.bottom + 77, after.bottom);
    EXPECT_EQ(300 * 277 / 200, clientSize().cx);
    expectCanvasFillsClient();
}

// In a corner the height drives, whatever the width was dragged to.
TEST_F(EditingWindow, DraggingACornerFollowsTheHeight)
{
    ASSERT_TRUE(open());
    const RECT before = windowRect();
    dragFrame({before.right - 2, before.bottom - 2}, 10, 100);
    EXPECT_EQ(300, clientSize().cy);
    EXPECT_EQ(450, clientSize().cx);
}

// A size that changes both ways (the host's, or the system's) follows the border that was held last: the height
// after top, bottom and corners, the width after left and right.
TEST_F(EditingWindow, TheBorderHeldLastDecidesBetweenWidthAndHeight)
{
    ASSERT_TRUE(open());
    const RECT start = windowRect();
    const SIZE frame = {start.right - start.left - clientSize().cx, start.bottom - start.top - clientSize().cy};
    const auto resize = [&] {
        SetWindowPos(host.dialog, nullptr, 0, 0, 450 + frame.cx, 240 + frame.cy, SWP_NOMOVE | SWP_NOZORDER);
        settle(&host);
    };
    const RECT top = windowRect();
    dragFrame({(top.left + top.right) / 2, top.top + 1}, 0, -20);
    resize();
    EXPECT_EQ(240, clientSize().cy);
    EXPECT_EQ(360, clientSize().cx);
    dragFrame(middleOfRightBorder(), 30, 0);
    resize();
    EXPECT_EQ(450, clientSize().cx);
    EXPECT_EQ(300, clientSize().cy);
    dragFrame(middleOfBottomBorder(), 0, 30);
    resize();
    EXPECT_EQ(240, clientSize().cy);
    EXPECT_EQ(360, clientSize().cx);
}

TEST_F(EditingWindow, SizeBeyondTheScreenIsCutInProportion)
{
    ASSERT_TRUE(open());
    const RECT before = windowRect();
    const SIZE frame = {before.right - before.left - clientSize().cx, before.bottom - before.top - clientSize().cy};
    SetWindowPos(host.dialog, nullptr, 0, 0, 5000, before.bottom - before.top, SWP_NOMOVE | SWP_NOZORDER);
    ASSERT_TRUE(settle(&host));
    const RECT after = windowRect();
    const int screenWidth = GetSystemMetrics(SM_CXSCREEN), screenHeight = GetSystemMetrics(SM_CYSCREEN);
    int width = screenWidth, height = 200 * (screenWidth - frame.cx) / 300 + frame.cy;
    if (height > screenHeight) height = screenHeight, width = 300 * (screenHeight - frame.cy) / 200 + frame.cx;
    EXPECT_EQ(width, after.right - after.left);
    EXPECT_EQ(height, after.bottom - after.top);
    expectCanvasFillsClient();
}

TEST_F(EditingWindow, PointerEntersAndLeavesOnce)
{
    ASSERT_TRUE(open());
    RECT palette;
    GetWindowRect(GetDlgItem(host.palette, ID_BRUSH), &palette);
    const POINT outside = {palette.left + 5, palette.top + 5};
    ASSERT_TRUE(movePointer(&host, outside));
    size_t first = seenCount();
    for (int round = 1; round <= 3; ++round) {
        ASSERT_TRUE(movePointerOnCanvas(&host, 50, 50));
        ASSERT_TRUE(waitUntil("entering", [&] { return countSeen(first, host.canvas, POINTER_ENTERED) >= round; }));
        ASSERT_TRUE(movePointerOnCanvas(&host, 80, 60));
        ASSERT_TRUE(movePointerOnCanvas(&host, 120, 90));
        EXPECT_EQ(round, countSeen(first, host.canvas, POINTER_ENTERED));
        EXPECT_EQ(round - 1, countSeen(first, host.canvas, POINTER_LEFT));
        ASSERT_TRUE(movePointer(&host, outside));
        ASSERT_TRUE(waitUntil("leaving", [&] { return countSeen(first, host.canvas, POINTER_LEFT) >= round; }));
        ASSERT_TRUE(movePointer(&host, {outside.x + 3, outside.y + 3}));
        ASSERT_TRUE(movePointer(&host, outside));
        EXPECT_EQ(round, countSeen(first, host.canvas, POINTER_ENTERED));
        EXPECT_EQ(round, countSeen(first, host.canvas, POINTER_LEFT));
    }
}

TEST_F(EditingWindow, EnteringCarriesTheScreenPoint)
{
    ASSERT_TRUE(open());
    const size_t first = seenCount();
    const POINT screen = onCanvas(host, 33, 44);
    ASSERT_TRUE(movePointer(&host, screen));
    ASSERT_TRUE(waitUntil("entering", [&] { return wasSeen(first, host.canvas, POINTER_ENTERED); }));
    for (const SeenMessage& seen : seenSince(first))
        if (seen.message == POINTER_ENTERED && seen.window == host.canvas) {
            EXPECT_EQ(0u, seen.wParam);
            EXPECT_EQ(MAKELPARAM(screen.x, screen.y), seen.lParam);
        }
}

// The first press counts only after a move over the canvas.
TEST_F(EditingWindow, PressBeforeTheFirstMoveIsIgnored)
{
    ASSERT_TRUE(open());
    const std::vector<uint8_t> before = snapshot(photo);
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_EQ(0, countSeen(0, host.canvas, WM_MOUSEMOVE));
    PostMessageA(host.canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(60, 60));
    ASSERT_TRUE(waitUntil("the press", [&] { return wasSeen(0, host.canvas, WM_LBUTTONDOWN); }));
    ASSERT_TRUE(settle(&host));
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(host.threadId, &info);
    EXPECT_EQ(nullptr, info.hwndCapture);
    PostMessageA(host.canvas, WM_LBUTTONUP, 0, MAKELPARAM(60, 60));
    ASSERT_TRUE(settle(&host));
    EXPECT_TRUE(before == snapshot(photo));

    StrokeReplay replay = beginReplay(host, photo);
    replay.nextMessage = seenCount();
    replay.brush.chosen = true;
    ASSERT_TRUE(drawStroke(&host, {{60, 60}, {80, 80}}));
    expectPainted(&replay, host, photo);
    EXPECT_GT(changedPixels(replay), 200);
}
