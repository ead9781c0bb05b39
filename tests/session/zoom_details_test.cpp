// What goes with a zoomed view: the title, the hand, the brush's outline, and what arrows leave of a selection.
#include <algorithm>
#include <cstdlib>

#include "tests/session/zoom_fixture.h"

constexpr int HAND = 15001;

struct ZoomDetails : ZoomSession {
    void openLarge() { openOwnColours(1000, 750, 260, 195); }

    HCURSOR cursorOfHost()
    {
        HCURSOR cursor = nullptr;
        runOnHost(&host, [&] { cursor = GetCursor(); });
        return cursor;
    }

    // What differs from `bare`, without the map's rows; empty where nothing does.
    RECT changedSince(const reference::StoredPicture& bare) const
    {
        const reference::StoredPicture now = shownBy(host.canvas);
        const size_t stride = (size_t)reference::strideOf(now.width);
        RECT box = {now.width, now.height, 0, 0};
        for (int y = 0; y < now.height * 3 / 4 - 7; ++y)
            for (int x = 0; x < now.width; ++x) {
                const size_t at = stride * (size_t)(now.height - 1 - y) + 3 * (size_t)x;
                if (std::equal(&now.bytes[at], &now.bytes[at] + 3, &bare.bytes[at])) continue;
                box = {std::min<LONG>(box.left, x), std::min<LONG>(box.top, y), std::max<LONG>(box.right, x + 1),
                       std::max<LONG>(box.bottom, y + 1)};
            }
        return box;
    }
};

TEST_F(ZoomDetails, TheTitleEndsWithThePercentageWhileZoomed)
{
    openLarge();
    ASSERT_TRUE(movePointerOnCanvas(&host, 130, 97));
    const struct {
        const wchar_t *name, *zoomed[3];
    } titles[] = {{L"Photo 1", {L"Photo 1 - 33 %", L"Photo 1 - 50 %", L"Photo 1 - 67 %"}},
                  {L"", {L"33 %", L"50 %", L"67 %"}}};
    for (const auto& row : titles) {
        runOnHost(&host, [&] { SetWindowTextW(host.dialog, row.name); });
        for (const wchar_t* expected : row.zoomed) {
            ASSERT_TRUE(turnWheel(120));
            EXPECT_EQ(expected, title());
        }
        ASSERT_TRUE(turnWheel(-360));
        EXPECT_EQ(row.name, title()) << "fitted";
    }
    closeSession();
}

TEST_F(ZoomDetails, TheHandShowsWhileTheViewIsHeld)
{
    openLarge();
    const HCURSOR hand = LoadCursorA(library.module, MAKEINTRESOURCEA(HAND));
    ASSERT_TRUE(hand);
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(drawStroke(&host, {{130, 97}}));  // the canvas has the keys
    holdKey(VK_SPACE, true);
    EXPECT_NE(hand, cursorOfHost()) << "fitted there is nothing to hold";
    holdKey(VK_SPACE, false);
    ASSERT_TRUE(turnWheel(360));
    EXPECT_NE(hand, cursorOfHost());
    holdKey(VK_SPACE, true);
    EXPECT_EQ(hand, cursorOfHost()) << "Space";
    holdKey(VK_SPACE, false);
    EXPECT_NE(hand, cursorOfHost());
    ASSERT_TRUE(pressMiddle());
    ASSERT_TRUE(movePointerOnCanvas(&host, 110, 90));
    EXPECT_EQ(hand, cursorOfHost()) << "the middle button";
    ASSERT_TRUE(releaseMiddle());
    ASSERT_TRUE(movePointerOnCanvas(&host, 111, 90));
    EXPECT_NE(hand, cursorOfHost());
    closeSession();
}

// A brush of 16 pixels: so large is its outline at the pointer.
TEST_F(ZoomDetails, TheBrushsOutlineHasItsTrueSize)
{
    openLarge();
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_EQ(16, scrollPosition(host, ID_WIDTH));
    ASSERT_TRUE(drawStroke(&host, {{20, 20}}));  // the canvas has the keys
    for (int percentage : {100, 200, 300, 600, 3200}) {
        ASSERT_TRUE(zoomTo(percentage));
        leaveCanvas();
        const reference::StoredPicture bare = shownBy(host.canvas);
        ASSERT_TRUE(placePointer(&host, onCanvas(host, 130, 70)));
        const int size = 16 * percentage / 100, within = percentage / 100 + 1, rows = clientHeight * 3 / 4 - 7;
        const RECT expected = {std::max(0, 130 - size / 2), std::max(0, 70 - size / 2),
                               std::min(clientWidth, 130 + size / 2), std::min(rows, 70 + size / 2)};
        RECT box = {};
        EXPECT_TRUE(waitUntil("the outline",
                              [&] {
                                  box = changedSince(bare);
                                  return abs(box.left - expected.left) <= within &&
                                         abs(box.right - expected.right) <= within &&
                                         abs(box.top - expected.top) <= within &&
                                         abs(box.bottom - expected.bottom) <= within;
                              }))
            << percentage << ": " << box.left << " " << box.top << " " << box.right << " " << box.bottom;
    }
    closeSession();
}

// There and back by arrows a turned selection is as it was, and Undo takes back the stroke before it.
TEST_F(ZoomDetails, ArrowsLeaveNoStepAndNothingCompounds)
{
    openLarge();
    const int fx = GetSystemMetrics(SM_CXFRAME), fy = GetSystemMetrics(SM_CYFRAME);
    const std::vector<uint8_t> before = snapshot(photo);
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(drawStroke(&host, {{40, 40}, {90, 60}}));
    EXPECT_FALSE(before == snapshot(photo));
    ASSERT_TRUE(turnWheel(120 * 6));
    ASSERT_TRUE(clickControl(&host, ID_SELECTION));
    ASSERT_TRUE(drawStroke(&host, {{60, 60}, {160, 60}, {160, 120}, {60, 120}, {60, 60}}));
    leaveCanvas();
    const reference::StoredPicture unturned = shownBy(host.canvas);
    ASSERT_TRUE(drawStroke(&host, {{160 + fx, 60 + 2 * fy}, {156 + fx, 90}, {150, 100}}));
    leaveCanvas();
    const reference::StoredPicture turned = shownBy(host.canvas);
    EXPECT_FALSE(unturned.bytes == turned.bytes);
    for (WORD key : {VK_RIGHT, VK_RIGHT, VK_DOWN, VK_LEFT, VK_LEFT, VK_UP})
        ASSERT_TRUE(tapKey(key));
    EXPECT_TRUE(turned.bytes == shownBy(host.canvas).bytes);
    ASSERT_TRUE(tapKey(VK_LEFT, {VK_SHIFT}));
    EXPECT_FALSE(turned.bytes == shownBy(host.canvas).bytes);
    ASSERT_TRUE(tapKey(VK_ESCAPE));
    ASSERT_TRUE(tapKey('Z', {VK_CONTROL}));
    EXPECT_TRUE(before == snapshot(photo)) << "the stroke is the last step";
    closeSession();
}

TEST_F(ZoomDetails, AnOpenLineOfTextKeepsWhatIsUndoneAndTheBrushsSize)
{
    openLarge();
    const std::vector<uint8_t> before = snapshot(photo);
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(drawStroke(&host, {{40, 40}, {90, 60}}));
    const std::vector<uint8_t> painted = snapshot(photo);
    ASSERT_TRUE(clickControl(&host, ID_TEXT));
    ASSERT_TRUE(drawStroke(&host, {{60, 100}}));
    const int height = scrollPosition(host, ID_HEIGHT);
    ASSERT_TRUE(tapKey('Z', {VK_CONTROL}));
    ASSERT_TRUE(tapKey(VK_OEM_4));
    ASSERT_TRUE(tapKey(VK_OEM_6));
    ASSERT_TRUE(tapKey(VK_OEM_6));
    EXPECT_TRUE(painted == snapshot(photo)) << "the line has the keys";
    EXPECT_EQ(height, scrollPosition(host, ID_HEIGHT));
    ASSERT_TRUE(tapKey(VK_ESCAPE));
    ASSERT_TRUE(tapKey('Z', {VK_CONTROL}));
    EXPECT_TRUE(before == snapshot(photo)) << "now the canvas has them";
    closeSession();
}
