// Brush strokes with the real pointer, held against the reference byte for byte. Both builds run these
// tests against the same reference, so both make the same bytes.
#include "tests/session/screen_part.h"
#include "tests/session/session_fixture.h"

struct Painting : SessionTest {
    StrokeReplay replay;

    void openWithBrush()
    {
        ASSERT_TRUE(open());
        replay = beginReplay(host, photo);
        ASSERT_TRUE(chooseBrush(&host, &replay));
    }

    void stroke(const std::vector<POINT>& clientPoints) { ASSERT_TRUE(drawStroke(&host, clientPoints)); }

    void expectEqual(int atLeastChanged)
    {
        expectPainted(&replay, host, photo);
        EXPECT_GE(changedPixels(replay), atLeastChanged);
    }

    // What the canvas shows is what it shows once all of it is painted again. The outline stays where it is meanwhile,
    // far from the strokes: the display's pointer is there too, wherever the system looks for it.
    void expectNoSeams()
    {
        RECT client;
        GetClientRect(host.canvas, &client);
        ASSERT_TRUE(placePointer(&host, onCanvas(host, client.right - 1, client.bottom - 1)));
        EXPECT_TRUE(showsWhatAFullRepaintShows(&host));
    }

    void saveAndExpectEqual(int atLeastChanged)
    {
        expectEqual(atLeastChanged);
        saveAndCheck();
        EXPECT_TRUE(expectedBlock(replay) == snapshot(photo)) << "Save must keep the painted picture";
        printf("checksum of the painted block: %08x\n", (unsigned)checksum(snapshot(photo)));
    }
};

static const std::vector<POINT> zigzag = {{40, 40}, {90, 60}, {60, 110}, {160, 115}, {165, 70}, {45, 45}};

TEST_F(Painting, FullEdgeAtFullOpacity)
{
    openWithBrush();
    stroke(zigzag);
    saveAndExpectEqual(2000);
}

TEST_F(Painting, SingleClickIsOneDab)
{
    openWithBrush();
    stroke({{100, 100}});
    // 16 x 16 less the empty column and line, less the corners of the circle.
    saveAndExpectEqual(150);
    EXPECT_LE(changedPixels(replay), 15 * 15);
}

TEST_F(Painting, FullEdgeAtLowerOpacityLaysPaintOncePerStroke)
{
    openWithBrush();
    ASSERT_TRUE(lowerOpacity(&host, &replay, 3));
    EXPECT_LT(replay.brush.opacity, 100);
    EXPECT_GE(replay.brush.opacity, 16);
    stroke(zigzag);
    stroke({{40, 120}, {200, 60}});  // a second stroke does build up where it crosses the first
    saveAndExpectEqual(2500);
}

TEST_F(Painting, SmoothEdgeAtFullOpacity)
{
    openWithBrush();
    ASSERT_TRUE(chooseEdge(&host, &replay, true));
    stroke(zigzag);
    saveAndExpectEqual(1500);
}

TEST_F(Painting, SmoothEdgeAtLowerOpacity)
{
    openWithBrush();
    ASSERT_TRUE(chooseEdge(&host, &replay, true));
    ASSERT_TRUE(lowerOpacity(&host, &replay, 3));
    stroke(zigzag);
    stroke({{40, 120}, {200, 60}});
    saveAndExpectEqual(1500);
}

TEST_F(Painting, RectangleBrush)
{
    openWithBrush();
    ASSERT_TRUE(chooseShape(&host, &replay, 1));
    stroke(zigzag);
    ASSERT_TRUE(chooseShape(&host, &replay, 0));
    stroke({{200, 40}, {230, 160}});
    saveAndExpectEqual(2500);
}

TEST_F(Painting, EdgesMayChangeBetweenStrokes)
{
    openWithBrush();
    stroke({{30, 30}, {120, 90}});
    ASSERT_TRUE(chooseEdge(&host, &replay, true));
    stroke({{120, 30}, {30, 90}});
    ASSERT_TRUE(chooseEdge(&host, &replay, false));
    ASSERT_TRUE(lowerOpacity(&host, &replay, 2));
    stroke({{75, 20}, {75, 120}});
    saveAndExpectEqual(2000);
}

// With the button held the pointer may leave the canvas and come back.
static const std::vector<POINT> acrossBorders[] = {
    {{30, 80}, {5, 85}, {-12, 90}, {3, 100}, {40, 110}},           // left
    {{120, 30}, {125, 4}, {130, -10}, {140, 2}, {150, 40}},        // top
    {{270, 80}, {296, 85}, {312, 90}, {298, 100}, {260, 110}},     // right
    {{120, 170}, {125, 197}, {130, 212}, {140, 198}, {150, 160}},  // bottom
    {{20, 20}, {2, 2}, {-8, -8}, {1, 1}},                          // corners
    {{280, 180}, {299, 199}, {307, 207}},
    {{280, 20}, {299, 0}},
    {{20, 180}, {0, 199}},
};

TEST_F(Painting, FullEdgeOverEachBorder)
{
    openWithBrush();
    for (const std::vector<POINT>& path : acrossBorders)
        stroke(path);
    saveAndExpectEqual(3000);
}

TEST_F(Painting, SmoothEdgeOverEachBorder)
{
    openWithBrush();
    ASSERT_TRUE(chooseEdge(&host, &replay, true));
    for (const std::vector<POINT>& path : acrossBorders)
        stroke(path);
    saveAndExpectEqual(2000);
}

TEST_F(Painting, LowerOpacityOverEachBorder)
{
    openWithBrush();
    ASSERT_TRUE(lowerOpacity(&host, &replay, 3));
    for (const std::vector<POINT>& path : acrossBorders)
        stroke(path);
    saveAndExpectEqual(3000);
}

TEST_F(Painting, EnlargedCanvas)
{
    usePhoto(301, 203, 700, 472);
    openWithBrush();
    stroke({{20, 20}, {400, 300}, {690, 10}, {350, 460}});
    ASSERT_TRUE(chooseEdge(&host, &replay, true));
    stroke({{5, 460}, {600, 100}});
    saveAndExpectEqual(5000);
}

TEST_F(Painting, ReducedCanvas)
{
    usePhoto(1501, 997, 523, 347);
    openWithBrush();
    stroke({{20, 20}, {400, 300}, {522, 10}, {250, 346}});
    ASSERT_TRUE(chooseEdge(&host, &replay, true));
    stroke({{5, 340}, {500, 100}});
    saveAndExpectEqual(20000);
}

// A dab repaints its surroundings only, and nobody must see their edge: not when the picture is enlarged or
// reduced by a factor that does not come out even, and not after Undo either.
TEST_F(Painting, RepaintedPartsShowNoSeams)
{
    const SIZE scales[][2] = {{{1000, 700}, {370, 259}}, {{301, 203}, {693, 467}}, {{613, 411}, {600, 402}}};
    for (const SIZE(&scale)[2] : scales) {
        SCOPED_TRACE(scale[1].cx);
        usePhoto(scale[0].cx, scale[0].cy, scale[1].cx, scale[1].cy);
        openWithBrush();
        stroke({{20, 20}, {200, 150}, {301, 40}});
        ASSERT_TRUE(chooseShape(&host, &replay, 1));  // paints up to the very border of a dab
        for (int i = 0; i < 12; ++i)
            stroke({{20 + 23 * i, 200 + i}});
        expectNoSeams();
        ASSERT_TRUE(clickControl(&host, ID_UNDO));
        expectNoSeams();
        closeAndCheck(replay.before);
    }
}

// Nothing is resized then, and yet the canvas has to learn the scale of the image.
TEST_F(Painting, WindowOfTheSizeThatTheDialogIsMadeWith)
{
    ASSERT_TRUE(open());
    RECT made = {0, 0, 320, 200};  // dialog units
    ASSERT_TRUE(MapDialogRect(host.dialog, &made));
    closeAndCheck(snapshot(photo));
    usePhoto(301, 203, made.right, made.bottom);
    openWithBrush();
    stroke({{20, 20}, {400, 300}});
    saveAndExpectEqual(1000);
}

TEST_F(Painting, ImageNarrowerThanTheBrush)
{
    usePhoto(11, 9, 550, 450);
    openWithBrush();
    stroke({{275, 225}});
    stroke({{10, 10}, {540, 10}});
    ASSERT_TRUE(chooseEdge(&host, &replay, true));
    stroke({{275, 225}, {300, 440}});
    saveAndExpectEqual(40);
}

TEST_F(Painting, OddSizesAndPaddedRows)
{
    for (int width = 301; width <= 303; ++width) {
        SCOPED_TRACE(width);
        usePhoto(width, 201);
        openWithBrush();
        ASSERT_TRUE(chooseEdge(&host, &replay, width & 1));
        stroke({{280, 20}, {298, 180}, {200, 150}});
        saveAndExpectEqual(1000);
    }
}

TEST_F(Painting, BrushSizes)
{
    openWithBrush();
    // Both bars move together while "L = H" is checked.
    ASSERT_TRUE(clickScrollBar(&host, ID_WIDTH, 2));
    replay.brush.width = scrollPosition(host, ID_WIDTH);
    replay.brush.height = scrollPosition(host, ID_HEIGHT);
    EXPECT_GT(replay.brush.width, 16);
    EXPECT_EQ(replay.brush.width, replay.brush.height);
    stroke({{60, 60}, {120, 100}});
    replayNew(&replay, host);

    ASSERT_TRUE(clickControl(&host, ID_LOCK));
    EXPECT_FALSE(isChecked(host, ID_LOCK));
    ASSERT_TRUE(clickScrollBar(&host, ID_HEIGHT, -2));
    ASSERT_TRUE(clickScrollBar(&host, ID_WIDTH, 1));
    replay.brush.width = scrollPosition(host, ID_WIDTH);
    replay.brush.height = scrollPosition(host, ID_HEIGHT);
    EXPECT_GT(replay.brush.width, replay.brush.height);
    stroke({{200, 60}, {160, 150}});
    ASSERT_TRUE(chooseEdge(&host, &replay, true));
    stroke({{240, 60}, {200, 150}});
    saveAndExpectEqual(3000);
}

TEST_F(Painting, CloseGivesTheOriginalBytesBack)
{
    openWithBrush();
    stroke(zigzag);
    stroke(acrossBorders[0]);
    expectEqual(2000);
    closeAndCheck(replay.before);
}

TEST_F(Painting, NothingIsPaintedWithoutATool)
{
    ASSERT_TRUE(open());
    replay = beginReplay(host, photo);
    stroke(zigzag);
    EXPECT_TRUE(replay.before == snapshot(photo));
    saveAndCheck();
    EXPECT_TRUE(replay.before == snapshot(photo));
}

TEST_F(Painting, NothingIsPaintedWhileTheButtonIsUp)
{
    openWithBrush();
    for (const POINT& point : zigzag)
        ASSERT_TRUE(movePointerOnCanvas(&host, point.x, point.y));
    EXPECT_TRUE(replay.before == snapshot(photo));
}

TEST_F(Painting, NoDepthButTwentyFourBitsIsPainted)
{
    for (int depth : {8, 32}) {
        SCOPED_TRACE(depth);
        freeImage(&photo);
        photo = makePhoto(300, 200, 3, depth);
        const std::vector<uint8_t> before = snapshot(photo);
        ASSERT_TRUE(open());
        ASSERT_TRUE(clickControl(&host, ID_BRUSH));
        stroke(zigzag);
        stroke(acrossBorders[0]);
        ASSERT_TRUE(clickControl(&host, ID_SOFT));
        stroke(zigzag);
        EXPECT_TRUE(before == snapshot(photo));
        saveAndCheck();
        EXPECT_TRUE(before == snapshot(photo));
    }
}

TEST_F(Painting, SecondSessionPaintsOnTheSavedPicture)
{
    openWithBrush();
    stroke(zigzag);
    saveAndExpectEqual(2000);
    openWithBrush();
    stroke({{200, 30}, {220, 150}});
    expectEqual(1000);
    closeAndCheck(replay.before);
}

TEST_F(Painting, AfterTheWindowIsResized)
{
    openWithBrush();
    stroke({{30, 30}, {60, 60}});
    replayNew(&replay, host);
    ASSERT_TRUE(placePointer(&host, onCanvas(host, 70, 50)));  // the brush's picture stays where it is
    SetWindowPos(host.dialog, nullptr, 0, 0, 640, 400, SWP_NOMOVE | SWP_NOZORDER);
    ASSERT_TRUE(settle(&host));
    const SIZE small = replay.client;
    takeCanvasSize(&replay, host);
    EXPECT_GT(replay.client.cx, small.cx);
    expectNoSeams();  // all of the canvas shows the new scale
    restPointer();
    stroke({{100, 200}, {500, 300}});
    saveAndExpectEqual(1500);
}
