// Drags on a zoomed canvas with the real pointer and keys: taken back by Escape, and held at the border.
#include "tests/session/zoom_fixture.h"

static const int STROKE_TOOLS[] = {ID_BRUSH, 118, ID_AEROGRAPHE, 121, 122};

struct ZoomDrags : ZoomSession {
    void openAt200(int tool)
    {
        openOwnColours(1000, 750, 260, 195);
        ASSERT_TRUE(clickControl(&host, tool));
        ASSERT_TRUE(movePointerOnCanvas(&host, 130, 97));
        ASSERT_TRUE(turnWheel(120 * 6));
        ASSERT_EQ(200, percent());
    }
    void press(int x, int y)
    {
        ASSERT_TRUE(movePointerOnCanvas(&host, x, y));
        ASSERT_TRUE(pressButton(&host));
    }
    // Held there until the view has moved on; then back, and let go.
    void expectPansOn(const char* what)
    {
        const ShownPixel start = shownAt(5, 5);
        ASSERT_TRUE(movePointerOnCanvas(&host, 258, 70));
        EXPECT_TRUE(waitUntil(what, [&] { return shownAt(5, 5).x > start.x + 12; }));
        ASSERT_TRUE(movePointerOnCanvas(&host, 150, 80));
        const ShownPixel now = shownAt(5, 5);
        ASSERT_TRUE(releaseButton(&host));
        EXPECT_EQ(now.x, shownAt(5, 5).x) << "away from the border the view stays";
        EXPECT_EQ(start.y, shownAt(5, 5).y);
        expectRepaintChangesNothing(what);
    }
};

TEST_F(ZoomDrags, EscapeTakesAStrokeBackFittedAndZoomed)
{
    openOwnColours(600, 450, 260, 195);
    const std::vector<uint8_t> before = snapshot(photo);
    for (int zoomed = 0; zoomed < 2; ++zoomed) {
        for (int tool : STROKE_TOOLS) {
            SCOPED_TRACE(testing::Message() << "tool " << tool << " zoomed " << zoomed);
            ASSERT_TRUE(clickControl(&host, tool));
            press(60, 50);
            ASSERT_TRUE(movePointerOnCanvas(&host, 110, 80));
            ASSERT_TRUE(movePointerOnCanvas(&host, 90, 60));
            ASSERT_TRUE(tapKey(VK_ESCAPE));
            EXPECT_TRUE(before == snapshot(photo));
            ASSERT_TRUE(movePointerOnCanvas(&host, 70, 90));
            ASSERT_TRUE(releaseButton(&host));
            EXPECT_TRUE(before == snapshot(photo)) << "what still comes of the press";
            ASSERT_TRUE(tapKey('Z', {VK_CONTROL}));
            EXPECT_TRUE(before == snapshot(photo)) << "nothing to undo";
        }
        expectRepaintChangesNothing("taken back");
        ASSERT_TRUE(zoomTo(zoomed ? 0 : 200));
    }
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(drawStroke(&host, {{60, 50}, {90, 80}}));
    EXPECT_FALSE(before == snapshot(photo)) << "the next stroke paints";
    closeSession();
}

TEST_F(ZoomDrags, AMoveAResizeAndATurnPanOnAtTheBorder)
{
    const int fx = GetSystemMetrics(SM_CXFRAME), fy = GetSystemMetrics(SM_CYFRAME);
    const struct {
        const char* name;
        POINT grip;
    } drags[] = {
        {"a move", {110, 90}}, {"a resize", {160 + fx + 2, 120 + fy + 2}}, {"a turn", {160 + fx, 60 + 2 * fy}}};
    for (const auto& drag : drags) {
        SCOPED_TRACE(drag.name);
        openAt200(ID_SELECTION);
        ASSERT_TRUE(drawStroke(&host, {{60, 60}, {160, 60}, {160, 120}, {60, 120}, {60, 60}}));
        press(drag.grip.x, drag.grip.y);
        expectPansOn(drag.name);
        ASSERT_TRUE(tapKey(VK_ESCAPE));
        closeSession();
    }
}

// The colour under the tip becomes the paint colour: a dab of the Brush shows it.
TEST_F(ZoomDrags, ColorsPicksThePixelUnderItsTip)
{
    openAt200(ID_COLORS);
    const ShownPixel under = shownAt(143, 77);
    ASSERT_TRUE(drawStroke(&host, {{100, 60}, {143, 77}}));
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(drawStroke(&host, {{60, 50}}));
    ASSERT_TRUE(movePointer(&host, {1590, 600}));
    ASSERT_TRUE(settle(&host));
    EXPECT_TRUE(waitUntil("the dab", [&] { return shownAt(60, 50).x == under.x && shownAt(60, 50).y == under.y; }));
    closeSession();
}

// A stroke that is held beyond the border goes on where the pointer is: the view stays.
TEST_F(ZoomDrags, AStrokeHeldAtTheBorderLeavesTheView)
{
    openAt200(ID_AEROGRAPHE);
    const ShownPixel start = shownAt(5, 5);
    press(200, 90);
    ASSERT_TRUE(movePointerOnCanvas(&host, 259, 90));
    const size_t first = seenCount();
    const auto ticks = [&] {
        int count = 0;
        for (const SeenMessage& seen : seenSince(first))
            count += seen.window == host.canvas && seen.message == WM_TIMER;
        return count;
    };
    ASSERT_TRUE(waitUntil("the spray's timer", [&] { return ticks() > 4; }));
    EXPECT_EQ(start.x, shownAt(5, 5).x);
    EXPECT_EQ(start.y, shownAt(5, 5).y);
    ASSERT_TRUE(releaseButton(&host));
    closeSession();
}

// The caret stands behind what was typed, at the foot of where it will be stamped.
TEST_F(ZoomDrags, TheCaretStandsWhereTheNextLetterWillBeStamped)
{
    openAt200(ID_TEXT);
    ASSERT_TRUE(drawStroke(&host, {{61, 101}}));
    const auto caret = [&] {
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(host.threadId, &info);
        return info.hwndCaret == host.canvas ? info.rcCaret : RECT{};
    };
    const RECT opened = caret();
    EXPECT_NEAR(61, opened.left, 2);
    EXPECT_NEAR(101, opened.bottom, 3);
    ASSERT_TRUE(tapKey('H'));
    const RECT typed = caret();
    EXPECT_GT(typed.left, opened.left + 6) << "at twice the size";
    EXPECT_EQ(opened.bottom, typed.bottom);
    ASSERT_TRUE(tapKey(VK_ESCAPE));
    closeSession();
}
