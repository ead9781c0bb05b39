// Zooming and panning with the real wheel, middle button, Space and keys: what the canvas shows at each step.
#include "tests/session/zoom_fixture.h"

static const int steps[] = {33, 50, 67, 100, 150, 200, 300, 400, 600, 800, 1200, 1600, 3200};

struct Zoom : ZoomSession {
    void openLarge() { openOwnColours(1000, 750, 260, 195); }  // fitted shows 26 %

    void expectPixel(ShownPixel expected, ShownPixel shown, const char* when)
    {
        EXPECT_EQ(expected.x, shown.x) << when;
        EXPECT_EQ(expected.y, shown.y) << when;
    }

    void focusCanvas()
    {
        ASSERT_TRUE(movePointerOnCanvas(&host, 20, 20));
        ASSERT_TRUE(pressButton(&host));
        ASSERT_TRUE(releaseButton(&host));
    }
};

TEST_F(Zoom, TheWheelGoesThroughAllStepsAndKeepsThePixelUnderThePointer)
{
    openLarge();
    const reference::StoredPicture fitted = shownBy(host.canvas);
    EXPECT_EQ(name, title());
    ASSERT_TRUE(movePointerOnCanvas(&host, 141, 83));
    ShownPixel under = {};
    for (int percentage : steps) {
        ASSERT_TRUE(turnWheel(120));
        EXPECT_EQ(percentage, percent());
        expectShown(percentage, "zooming in");
        if (percentage == 33) under = shownAt(141, 83);
        expectPixel(under, shownAt(141, 83), "zooming in");
    }
    EXPECT_NEAR(141 * 1000 / 260, under.x, 1);
    EXPECT_NEAR(83 * 750 / 195, under.y, 1);
    ASSERT_TRUE(turnWheel(120));
    EXPECT_EQ(3200, percent());
    for (int i = (int)(sizeof steps / sizeof steps[0]) - 2; i >= 0; --i) {
        ASSERT_TRUE(turnWheel(-120));
        EXPECT_EQ(steps[i], percent());
        expectShown(steps[i], "zooming out");
        expectPixel(under, shownAt(141, 83), "zooming out");
    }
    ASSERT_TRUE(turnWheel(-120));
    EXPECT_EQ(name, title());
    EXPECT_TRUE(fitted.bytes == shownBy(host.canvas).bytes) << "fitted again, as if nothing had been";
    ASSERT_TRUE(turnWheel(-120));
    EXPECT_TRUE(fitted.bytes == shownBy(host.canvas).bytes);
    closeSession();
}

TEST_F(Zoom, FineWheelsAddUp)
{
    openLarge();
    ASSERT_TRUE(movePointerOnCanvas(&host, 100, 60));
    ASSERT_TRUE(turnWheel(50));
    ASSERT_TRUE(turnWheel(50));
    EXPECT_EQ(0, percent());
    ASSERT_TRUE(turnWheel(50));
    EXPECT_EQ(33, percent());
    ASSERT_TRUE(turnWheel(90));
    EXPECT_EQ(50, percent());
    ASSERT_TRUE(turnWheel(360));
    EXPECT_EQ(150, percent());
    ASSERT_TRUE(turnWheel(-60));
    EXPECT_EQ(150, percent());
    ASSERT_TRUE(turnWheel(-60));
    EXPECT_EQ(100, percent());
    closeSession();
}

TEST_F(Zoom, WhatAnEarlierSessionTurnedDoesNotCount)
{
    openLarge();
    ASSERT_TRUE(movePointerOnCanvas(&host, 100, 60));
    ASSERT_TRUE(turnWheel(90));
    EXPECT_EQ(0, percent());
    closeSession();
    openLarge();
    ASSERT_TRUE(movePointerOnCanvas(&host, 101, 60));
    ASSERT_TRUE(turnWheel(60));
    EXPECT_EQ(0, percent()) << "the rest of a notch is the session's";
    ASSERT_TRUE(turnWheel(60));
    EXPECT_EQ(33, percent());
    closeSession();
}

TEST_F(Zoom, OverThePaletteTheWheelDoesNothing)
{
    openLarge();
    focusCanvas();
    RECT palette;
    GetWindowRect(host.palette, &palette);
    ASSERT_TRUE(movePointer(&host, {palette.left + 30, palette.top + 40}));
    ASSERT_TRUE(turnWheel(120));
    EXPECT_EQ(0, percent());
    closeSession();
}

// The palette has the keys after a click on it; the wheel still turns what lies under the pointer.
TEST_F(Zoom, TheWheelZoomsWhileThePaletteHasTheFocus)
{
    openLarge();
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(movePointerOnCanvas(&host, 100, 60));
    ASSERT_TRUE(turnWheel(120));
    EXPECT_EQ(33, percent());
    closeSession();
}

TEST_F(Zoom, TheMiddleButtonDragsTheView)
{
    openLarge();
    focusCanvas();
    ASSERT_TRUE(zoomTo(400));
    const ShownPixel held = shownAt(130, 90);
    ASSERT_TRUE(movePointerOnCanvas(&host, 130, 90));
    ASSERT_TRUE(pressMiddle());
    for (const POINT& to : {POINT{90, 91}, POINT{20, 40}, POINT{250, 3}, POINT{131, 90}}) {
        ASSERT_TRUE(movePointerOnCanvas(&host, to.x, to.y));
        expectShown(400, "panning");
        expectPixel(held, shownAt(to.x, to.y), "the view follows the drag");
    }
    ASSERT_TRUE(releaseMiddle());
    ASSERT_TRUE(movePointerOnCanvas(&host, 10, 10));
    expectPixel(held, shownAt(131, 90), "after the drag it stays");
    expectRepaintChangesNothing("after the drag");
    closeSession();
}

TEST_F(Zoom, SpaceAndTheLeftButtonDragTheViewAndPaintNothing)
{
    openLarge();
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(drawStroke(&host, {{130, 90}}));  // gives the canvas the keys
    const std::vector<uint8_t> before = snapshot(photo);
    ASSERT_TRUE(turnWheel(600));
    const ShownPixel held = shownAt(180, 90);
    ASSERT_TRUE(movePointerOnCanvas(&host, 180, 90));
    holdKey(VK_SPACE, true);
    ASSERT_TRUE(pressButton(&host));
    ASSERT_TRUE(movePointerOnCanvas(&host, 60, 110));
    expectPixel(held, shownAt(60, 110), "the view follows the drag");
    ASSERT_TRUE(releaseButton(&host));
    holdKey(VK_SPACE, false);
    EXPECT_TRUE(before == snapshot(photo));
    // Without Space the button paints again.
    ASSERT_TRUE(drawStroke(&host, {{60, 110}, {80, 120}}));
    EXPECT_FALSE(before == snapshot(photo));
    closeSession();
}

TEST_F(Zoom, ShiftAndTiltPanSidewaysByATenth)
{
    openLarge();
    ASSERT_TRUE(movePointerOnCanvas(&host, 130, 90));
    focusCanvas();
    ASSERT_TRUE(zoomTo(200));
    const ShownPixel start = shownAt(0, 0);
    ASSERT_TRUE(tiltWheel(120));
    EXPECT_EQ(start.x + 13, shownAt(0, 0).x) << "26 screen pixels to the right";
    ASSERT_TRUE(tiltWheel(-240));
    EXPECT_EQ(start.x - 13, shownAt(0, 0).x);
    holdKey(VK_SHIFT, true);
    ASSERT_TRUE(turnWheel(120));
    EXPECT_EQ(start.x - 26, shownAt(0, 0).x) << "wheel up: to the left";
    ASSERT_TRUE(turnWheel(-120));
    holdKey(VK_SHIFT, false);
    EXPECT_EQ(start.x - 13, shownAt(0, 0).x);
    EXPECT_EQ(start.y, shownAt(0, 0).y);
    expectShown(200, "panned sideways");
    closeSession();
}

TEST_F(Zoom, KeysOfBothBlocks)
{
    openLarge();
    focusCanvas();
    const struct {
        WORD key;
        int percent;
    } taps[] = {{VK_ADD, 33},       {VK_OEM_PLUS, 50}, {VK_OEM_MINUS, 33}, {VK_SUBTRACT, 0}, {'1', 100},
                {VK_OEM_PLUS, 150}, {'0', 0},          {VK_NUMPAD1, 100},  {VK_NUMPAD0, 0}};
    for (const auto& tap : taps) {
        ASSERT_TRUE(tapKey(tap.key));
        EXPECT_EQ(tap.percent, percent()) << tap.key;
        if (tap.percent) expectShown(tap.percent, "by key");
    }
    ASSERT_TRUE(tapKey(VK_OEM_PLUS, {VK_SHIFT}));
    EXPECT_EQ(33, percent());
    // About the centre.
    ASSERT_TRUE(zoomTo(1600));
    EXPECT_NEAR(500, shownAt(130, 97).x, 1);
    EXPECT_NEAR(375, shownAt(130, 97).y, 1);
    closeSession();
}

TEST_F(Zoom, AResizedWindowKeepsScaleAndCentreUntilFitIsAsLarge)
{
    openLarge();
    focusCanvas();
    ASSERT_TRUE(zoomTo(50));
    const auto resize = [&](int width) {
        runOnHost(&host, [&] {
            RECT window;
            GetWindowRect(host.dialog, &window);
            SetWindowPos(host.dialog, nullptr, 0, 0, width, window.bottom - window.top, SWP_NOMOVE | SWP_NOZORDER);
        });
        settle(&host);
        RECT client;
        GetClientRect(host.canvas, &client);
        clientWidth = client.right;
        clientHeight = client.bottom;
    };
    RECT window;
    GetWindowRect(host.dialog, &window);
    const int width = window.right - window.left;
    const ShownPixel centre = shownAt(130, 97);
    resize(width + 100);
    EXPECT_EQ(50, percent());
    expectShown(50, "larger");
    EXPECT_NEAR(centre.x, shownAt(clientWidth / 2, clientHeight / 2).x, 2);
    EXPECT_NEAR(centre.y, shownAt(clientWidth / 2, clientHeight / 2).y, 2);
    expectRepaintChangesNothing("larger");
    resize(width + 300);  // 560 of 1000
    EXPECT_EQ(name, title());
    resize(width);
    EXPECT_EQ(name, title()) << "fitted stays fitted";
    closeSession();
}
