// The tools on a zoomed canvas: strokes, the selection, text and the keys, with the real pointer and keyboard.
#include "tests/session/zoom_fixture.h"

struct ZoomTools : ZoomSession {
    StrokeReplay replay;

    void openLarge() { openOwnColours(1000, 750, 260, 195); }

    // From fitted, so that a percentage is always at the same place of the image.
    bool zoomAnew(int percentage) { return tapKey('0') && zoomTo(percentage); }

    void strokeAt(int percentage, POINT corner, const std::vector<POINT>& points)
    {
        ASSERT_TRUE(zoomAnew(percentage));
        replayNew(&replay, host);
        replay.zoom = percentage / 100;
        replay.zoomOrigin = corner;
        ASSERT_TRUE(drawStroke(&host, points));
        expectPainted(&replay, host, photo);
    }

    void click(int x, int y) { ASSERT_TRUE(drawStroke(&host, {{x, y}})); }

    // Client points of image points while an image pixel is a screen pixel.
    std::vector<POINT> clientOf(std::vector<POINT> image)
    {
        const ShownPixel first = shownAt(0, 0);
        for (POINT& point : image)
            point = {point.x - first.x, point.y - first.y};
        return image;
    }

    void drag(const std::vector<POINT>& image) { ASSERT_TRUE(drawStroke(&host, clientOf(image))); }

    void panTo(int x, int y)
    {
        const ShownPixel first = shownAt(0, 0);
        const POINT from = {first.x > x ? 5 : 254, first.y > y ? 5 : 100};
        ASSERT_TRUE(movePointerOnCanvas(&host, from.x, from.y));
        ASSERT_TRUE(pressMiddle());
        ASSERT_TRUE(movePointerOnCanvas(&host, from.x + first.x - x, from.y + first.y - y));
        ASSERT_TRUE(releaseMiddle());
    }

    std::vector<uint8_t> colourOf(int x, int y) const
    {
        const std::vector<uint8_t> bytes = snapshot(photo);
        const size_t stride = (size_t)(photo.width * 3 + 3) & ~(size_t)3;
        const size_t at = sizeof(BITMAPINFOHEADER) + stride * (size_t)(photo.height - 1 - y) + 3 * (size_t)x;
        return {bytes.begin() + (ptrdiff_t)at, bytes.begin() + (ptrdiff_t)at + 3};
    }

    ShownPixel pixelAt(int x, int y) const { return pixelOfColour(colourOf(x, y).data()); }
};

TEST_F(ZoomTools, StrokesPaintThePixelsUnderThePointerAndBeyondTheBorders)
{
    openLarge();
    click(20, 20);               // no tool yet; the canvas has the keys
    std::vector<POINT> corners;  // while the colours still tell
    for (int percentage : {100, 300, 1600}) {
        ASSERT_TRUE(zoomAnew(percentage));
        corners.push_back(imageCorner(percentage));
    }
    ASSERT_TRUE(tapKey('0'));
    replay = beginReplay(host, photo);
    ASSERT_TRUE(chooseBrush(&host, &replay));
    click(20, 20);  // fitted; the canvas has the keys again
    strokeAt(100, corners[0], {{40, 40}, {90, 60}, {60, 110}});
    strokeAt(100, corners[0], {{100, 30}, {300, 60}, {130, 220}, {-30, 180}, {-20, -10}, {120, 100}});
    strokeAt(300, corners[1], {{30, 30}, {130, 60}, {60, 90}});
    strokeAt(300, corners[1], {{200, 150}, {290, 230}, {-30, 100}, {50, -40}});
    strokeAt(1600, corners[2], {{30, 30}, {37, 41}, {100, 90}});
    strokeAt(1600, corners[2], {{250, 180}, {300, 150}, {120, 240}, {200, 190}});  // also where the map is
    EXPECT_GT(changedPixels(replay), 2000);
    expectRepaintChangesNothing("after the strokes");
    closeSession();
}

TEST_F(ZoomTools, KeysUndoAndRedoThroughThePalette)
{
    openLarge();
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    const std::vector<uint8_t> before = snapshot(photo);
    ASSERT_TRUE(drawStroke(&host, {{40, 40}, {90, 60}}));
    const std::vector<uint8_t> after = snapshot(photo);
    ASSERT_FALSE(before == after);
    ASSERT_TRUE(tapKey('Z', {VK_CONTROL}));
    EXPECT_TRUE(before == snapshot(photo));
    ASSERT_TRUE(tapKey('Y', {VK_CONTROL}));
    EXPECT_TRUE(after == snapshot(photo));
    ASSERT_TRUE(tapKey('Z', {VK_CONTROL}));
    ASSERT_TRUE(tapKey('Z', {VK_CONTROL, VK_SHIFT}));
    EXPECT_TRUE(after == snapshot(photo));
    closeSession();
}

TEST_F(ZoomTools, BracketsStepBothBrushBars)
{
    openLarge();
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    click(40, 40);
    ASSERT_TRUE(tapKey(VK_OEM_6));
    EXPECT_EQ(17, scrollPosition(host, ID_WIDTH));
    EXPECT_EQ(17, scrollPosition(host, ID_HEIGHT));
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(tapKey(VK_OEM_4));
    EXPECT_EQ(1, scrollPosition(host, ID_WIDTH));
    EXPECT_EQ(1, scrollPosition(host, ID_HEIGHT));
    ASSERT_TRUE(clickControl(&host, ID_LOCK));
    click(60, 40);
    ASSERT_TRUE(tapKey(VK_OEM_6));
    EXPECT_EQ(2, scrollPosition(host, ID_WIDTH));
    EXPECT_EQ(2, scrollPosition(host, ID_HEIGHT));
    for (int i = 0; i < 48; ++i)
        ASSERT_TRUE(tapKey(VK_OEM_6));
    EXPECT_EQ(48, scrollPosition(host, ID_WIDTH));
    EXPECT_EQ(48, scrollPosition(host, ID_HEIGHT));
    closeSession();
}

TEST_F(ZoomTools, AnOpenLineOfTextHasAllTheKeys)
{
    openLarge();
    ASSERT_TRUE(clickControl(&host, ID_TEXT));
    click(60, 100);
    ASSERT_TRUE(tapKey(VK_ADD));
    ASSERT_TRUE(tapKey('1'));
    EXPECT_EQ(name, title());
    const std::vector<uint8_t> before = snapshot(photo);
    ASSERT_TRUE(tapKey(VK_RETURN));
    EXPECT_FALSE(before == snapshot(photo)) << "the line was stamped";
    ASSERT_TRUE(tapKey(VK_ESCAPE));
    ASSERT_TRUE(tapKey(VK_ADD));
    EXPECT_EQ(33, percent()) << "without a line the canvas has them";
    closeSession();
}

// What is typed shows where it will be stamped.
TEST_F(ZoomTools, TextShowsWhereItIsStamped)
{
    openLarge();
    ASSERT_TRUE(clickControl(&host, ID_TEXT));
    ASSERT_TRUE(movePointerOnCanvas(&host, 130, 97));
    ASSERT_TRUE(turnWheel(120 * 6));
    EXPECT_EQ(200, percent());
    click(60, 100);
    for (WORD key : {'W', 'H', 'I'})
        ASSERT_TRUE(tapKey(key));
    runOnHost(&host, [&] { HideCaret(host.canvas); });
    const auto withoutMap = [&] {
        reference::StoredPicture shown = shownBy(host.canvas);
        shown.bytes.erase(shown.bytes.begin(), shown.bytes.begin() + (ptrdiff_t)reference::strideOf(shown.width) * 60);
        return shown.bytes;
    };
    ASSERT_TRUE(movePointer(&host, {1590, 600}));
    ASSERT_TRUE(settle(&host));
    const std::vector<uint8_t> typed = withoutMap();
    ASSERT_TRUE(tapKey(VK_RETURN));
    ASSERT_TRUE(tapKey(VK_ESCAPE));
    ASSERT_TRUE(settle(&host));
    EXPECT_TRUE(typed == withoutMap());
    closeSession();
}

TEST_F(ZoomTools, ArrowsMoveAFloatingSelectionAndEnterAppliesIt)
{
    openLarge();
    ASSERT_TRUE(clickControl(&host, ID_SELECTION));
    ASSERT_TRUE(movePointerOnCanvas(&host, 130, 97));
    ASSERT_TRUE(turnWheel(120 * 4));
    const std::vector<uint8_t> before = snapshot(photo);
    const ShownPixel inside = shownAt(100, 70);
    ASSERT_TRUE(drawStroke(&host, {{60, 50}, {140, 50}, {140, 100}, {60, 100}, {60, 50}}));
    ASSERT_TRUE(tapKey(VK_RIGHT));
    ASSERT_TRUE(tapKey(VK_DOWN, {VK_SHIFT}));
    ASSERT_TRUE(tapKey(VK_RIGHT, {VK_SHIFT}));
    ASSERT_TRUE(tapKey(VK_UP));
    EXPECT_TRUE(before == snapshot(photo)) << "untouched until it is applied";
    expectRepaintChangesNothing("moved by keys");
    ASSERT_TRUE(tapKey(VK_RETURN));
    const ShownPixel moved = pixelAt(inside.x + 11, inside.y + 9);
    EXPECT_EQ(inside.x, moved.x);
    EXPECT_EQ(inside.y, moved.y);
    closeSession();
}

TEST_F(ZoomTools, EscapeEndsADragThenClosesTheSelection)
{
    openLarge();
    ASSERT_TRUE(clickControl(&host, ID_SELECTION));
    ASSERT_TRUE(movePointerOnCanvas(&host, 130, 97));
    ASSERT_TRUE(turnWheel(120 * 4));
    const reference::StoredPicture bare = shownBy(host.canvas);
    ASSERT_TRUE(movePointerOnCanvas(&host, 60, 50));
    ASSERT_TRUE(pressButton(&host));
    ASSERT_TRUE(movePointerOnCanvas(&host, 150, 90));
    ASSERT_TRUE(tapKey(VK_ESCAPE));
    EXPECT_TRUE(bare.bytes == shownBy(host.canvas).bytes) << "the outline has not been";
    ASSERT_TRUE(releaseButton(&host));
    ASSERT_TRUE(drawStroke(&host, {{60, 50}, {140, 50}, {140, 100}, {60, 100}, {60, 50}}));
    const reference::StoredPicture floating = shownBy(host.canvas);
    ASSERT_TRUE(movePointerOnCanvas(&host, 100, 75));
    ASSERT_TRUE(pressButton(&host));
    ASSERT_TRUE(movePointerOnCanvas(&host, 130, 60));
    EXPECT_FALSE(floating.bytes == shownBy(host.canvas).bytes);
    ASSERT_TRUE(tapKey(VK_ESCAPE));
    EXPECT_TRUE(floating.bytes == shownBy(host.canvas).bytes) << "the move has not been";
    ASSERT_TRUE(releaseButton(&host));
    EXPECT_TRUE(floating.bytes == shownBy(host.canvas).bytes);
    ASSERT_TRUE(tapKey(VK_ESCAPE));
    EXPECT_TRUE(bare.bytes == shownBy(host.canvas).bytes) << "the selection is closed";
    closeSession();
}

// A drag that is held at the border pans on; away from it the view stays.
TEST_F(ZoomTools, ADragHeldAtTheBorderPansOn)
{
    openLarge();
    ASSERT_TRUE(clickControl(&host, ID_SELECTION));
    ASSERT_TRUE(movePointerOnCanvas(&host, 130, 97));
    ASSERT_TRUE(turnWheel(120 * 4));
    const ShownPixel start = shownAt(5, 5);
    ASSERT_TRUE(movePointerOnCanvas(&host, 60, 50));
    ASSERT_TRUE(pressButton(&host));
    ASSERT_TRUE(movePointerOnCanvas(&host, 259, 60));
    EXPECT_TRUE(waitUntil("the view to move on", [&] { return shownAt(5, 5).x > start.x + 30; }));
    ASSERT_TRUE(movePointerOnCanvas(&host, 200, 80));
    ASSERT_TRUE(releaseButton(&host));
    EXPECT_EQ(start.y, shownAt(5, 5).y);
    expectRepaintChangesNothing("drawn over the border");
    closeSession();
}

// The same edit twice: fitted, with the image at its own size, and zoomed to 100 % in a small canvas that pans.
TEST_F(ZoomTools, AZoomedEditOfASelectionIsThatOfAFittedOne)
{
    const int fx = GetSystemMetrics(SM_CXFRAME), fy = GetSystemMetrics(SM_CYFRAME);
    std::vector<uint8_t> edited[2];
    for (int zoomed = 0; zoomed < 2; ++zoomed) {
        openOwnColours(500, 375, zoomed ? 260 : 500, zoomed ? 195 : 375);
        ASSERT_TRUE(clickControl(&host, ID_SELECTION));
        if (zoomed) {
            ASSERT_TRUE(movePointerOnCanvas(&host, 130, 97));
            while (percent() != 100)
                ASSERT_TRUE(turnWheel(120));
        }
        if (zoomed) panTo(150, 110);
        drag({{200, 150}, {260, 140}, {320, 150}, {320, 230}, {260, 215}, {200, 230}, {200, 150}});
        if (zoomed) panTo(120, 100);
        drag({{260, 185}, {250, 190}, {240, 200}});  // moved by (-20, 15)
        drag({{298, 205}, {310, 205}, {323, 205}});  // the right side by 25
        if (zoomed) {
            panTo(170, 120);
            ASSERT_TRUE(tapKey('0'));
            ASSERT_TRUE(tapKey('1'));
            panTo(150, 120);
        }
        // The rotation button: right of the corner, below the handle.
        const POINT grip = {325 + 2 * fx + 1 - fx - 1, 155 - 2 * fy - 1 + 4 * fy + 1};
        drag({grip, {grip.x - 3, grip.y + 20}, {grip.x - 10, grip.y + 40}});
        ASSERT_TRUE(tapKey(VK_RETURN));
        edited[zoomed] = snapshot(photo);
        closeSession();
    }
    EXPECT_TRUE(edited[0] == edited[1]);
    usePhoto(500, 375);
}

TEST_F(ZoomTools, TheMapGivesWayAndFollowsWhatIsPainted)
{
    openLarge();
    click(20, 20);
    ASSERT_TRUE(zoomTo(200));
    const auto isImage = [&](int x, int y) {
        const ShownPixel first = shownAt(0, 0), here = shownAt(x, y);
        return abs(here.x - first.x - x / 2) <= 1 && abs(here.y - first.y - y / 2) <= 1;
    };
    EXPECT_FALSE(isImage(220, 165)) << "the map is in the lower right corner";
    EXPECT_TRUE(isImage(30, 165));
    ASSERT_TRUE(movePointerOnCanvas(&host, 215, 160));
    EXPECT_TRUE(isImage(220, 165)) << "it has given way";
    EXPECT_FALSE(isImage(30, 165));
    ASSERT_TRUE(movePointerOnCanvas(&host, 100, 50));
    EXPECT_FALSE(isImage(220, 165));
    EXPECT_TRUE(isImage(30, 165));
    // A stroke shows in the map when it has ended, and when it is undone.
    const auto mapNow = [&] {
        const POINT corner = onCanvas(host, 189, 141);
        return screenPart({corner.x, corner.y, corner.x + 65, corner.y + 48}).bytes;
    };
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(movePointer(&host, {1590, 600}));
    ASSERT_TRUE(settle(&host));
    const std::vector<uint8_t> before = mapNow();
    ASSERT_TRUE(drawStroke(&host, {{60, 40}, {140, 60}, {70, 90}}));
    ASSERT_TRUE(movePointer(&host, {1590, 600}));
    EXPECT_TRUE(waitUntil("the stroke to show in the map", [&] { return mapNow() != before; }));
    ASSERT_TRUE(tapKey('Z', {VK_CONTROL}));
    EXPECT_TRUE(waitUntil("the map without it", [&] { return mapNow() == before; }));
    closeSession();
}
