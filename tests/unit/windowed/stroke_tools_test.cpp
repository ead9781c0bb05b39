// Presses, moves and releases of every painting tool against the reference's dabs.
#include "canvas/painting_input.h"
#include "canvas/view/cursor_outline.h"
#include "image/packed_bitmap.h"
#include "tests/unit/windowed/stroke_model.h"
#include "tools/painting/dab_engine.h"
#include "tools/painting/undo_history.h"

using reference::Picture;
using reference::Pixel;

struct StrokeTools : SessionFixture {
    Dice dice = {1};
    StrokeModel model = {};

    bool start(int width, int height, SIZE client = {0, 0})
    {
        const Picture picture = randomPicture(dice, width, height);
        model = strokeModel(picture);
        return open(picture, client);
    }
    bool same() { return showsPicture(image, model.scene.image); }
};

static const SIZE brushSizes[] = {{1, 1}, {2, 48}, {3, 3}, {15, 16}, {48, 48}};
static const int opacities[] = {16, 49, 100};  // what the bar's 40, 70 and 100 store

// A press and a few moves somewhere around the image, borders included.
static void drawSomething(StrokeModel& model, Dice& dice)
{
    const int width = model.scene.image.width, height = model.scene.image.height;
    const auto x = [&] { return dice.between(-6, width + 6); };
    const auto y = [&] { return dice.between(-6, height + 6); };
    press(model, x(), y());
    for (int k = dice.upTo(3); k > 0; --k) {
        if (model.brush.tool == TOOL_AEROGRAPHE) tick(model);
        move(model, x(), y());
    }
    release(model, x(), y());
}

static bool drawWithEveryBrush(StrokeTools& test, uint32_t tool)
{
    for (int soft = 0; soft < 2; ++soft)
        for (int shape = 0; shape < 2; ++shape)
            for (const SIZE& size : brushSizes)
                for (int opacity : opacities) {
                    const ModelBrush brush = {
                        tool, shape, soft != 0, size.cx, size.cy, opacity, randomPaint(test.dice)};
                    chooseBrush(test.model, brush);
                    for (int k = 0; k < 2; ++k)
                        drawSomething(test.model, test.dice);
                    if (test.same()) continue;
                    ADD_FAILURE() << "tool " << tool << " soft " << soft << " shape " << shape << " size " << size.cx
                                  << "x" << size.cy << " opacity " << opacity << " image "
                                  << test.model.scene.image.width << "x" << test.model.scene.image.height;
                    return false;
                }
    return true;
}

TEST_F(StrokeTools, EveryToolEdgeShapeSizeAndOpacityAroundTheBorders)
{
    for (uint32_t tool : paintingTools)
        for (int width = 37; width <= 40; ++width) {  // every row padding
            ASSERT_TRUE(start(width, 29));
            ASSERT_TRUE(drawWithEveryBrush(*this, tool));
            close();
        }
}

TEST_F(StrokeTools, ImagesOneToThreePixelsHigh)
{
    for (uint32_t tool : paintingTools)
        for (int height = 1; height <= 3; ++height) {
            ASSERT_TRUE(start(40, height, {40, 60}));
            ASSERT_TRUE(drawWithEveryBrush(*this, tool)) << height;
            close();
        }
}

TEST_F(StrokeTools, ImagesOneToFivePixelsWide)
{
    for (uint32_t tool : paintingTools)
        for (int width = 1; width <= 5; ++width)
            for (int height : {width, 31}) {
                ASSERT_TRUE(start(width, height));
                ASSERT_TRUE(drawWithEveryBrush(*this, tool));
                close();
            }
}

TEST_F(StrokeTools, ScaleOfTheCanvasDoesNotMatter)
{
    for (SIZE client : {SIZE{74, 37}, SIZE{500, 250}}) {  // 0.37 and 2.5
        ASSERT_TRUE(start(200, 100, client));
        for (uint32_t tool : paintingTools) {
            chooseBrush(model, {tool, 0, true, 15, 16, 49, randomPaint(dice)});
            for (int k = 0; k < 4; ++k)
                drawSomething(model, dice);
            ASSERT_TRUE(same()) << "tool " << tool << " client " << client.cx;
        }
        close();
    }
}

TEST_F(StrokeTools, PressBeforeThePointerEnteredDoesNothing)
{
    ASSERT_TRUE(start(30, 30));
    chooseBrush(model, {TOOL_BRUSH, 0, false, 9, 9, 100, {1, 2, 3}});
    session->mouseInside = 0;
    sessionPress(10, 10);
    sessionMove(20, 20);
    sessionRelease(20, 20);
    EXPECT_TRUE(same());
    EXPECT_EQ(0, session->undoCount);
}

TEST_F(StrokeTools, RecordKnowsThePressAndTheLatestPoint)
{
    ASSERT_TRUE(start(60, 40));
    for (uint32_t tool :
         {(uint32_t)TOOL_BRUSH, (uint32_t)TOOL_COLORS, (uint32_t)TOOL_TEXT, (uint32_t)TOOL_OUTLINE_BRUSH}) {
        session->currentTool = tool;
        sessionPress(10, 11);
        for (const POINT& point : session->clickPoints)
            EXPECT_TRUE(point.x == 10 && point.y == 11) << tool;
        EXPECT_TRUE(session->strokePoint.x == 10 && session->strokePrevPoint.y == 11) << tool;
        EXPECT_EQ(11, session->dirtyBox.maxY) << tool;
        sessionMove(20, 12);
        EXPECT_TRUE(session->strokePoint.x == 20 && session->strokePrevPoint.x == 10) << tool;
        sessionRelease(21, 13);
        EXPECT_TRUE(session->clickPoints[0].x == 10 && session->clickPoints[1].x == 21) << tool;
        EXPECT_TRUE(session->strokePoint.x == 21 && session->strokePrevPoint.x == 21) << tool;
        EXPECT_EQ(nullptr, GetCapture()) << tool;
    }
}

// The outline is off the screen while a tool works, but the outline brush is itself what one aims with.
TEST_F(StrokeTools, PressHidesTheOutlineExceptWithTheOutlineBrush)
{
    ASSERT_TRUE(start(60, 40));
    for (uint32_t tool : {(uint32_t)TOOL_SMOOTH, (uint32_t)TOOL_STAMP, (uint32_t)TOOL_COLORS, (uint32_t)TOOL_SELECTION,
                          (uint32_t)TOOL_OUTLINE_BRUSH}) {
        session->currentTool = tool;
        session->overlayHideCount = 1;
        sessionPress(10, 11);
        EXPECT_EQ(tool == TOOL_OUTLINE_BRUSH ? 1 : 0, session->overlayHideCount) << tool;
        sessionRelease(10, 11);
        EXPECT_EQ(1, session->overlayHideCount) << tool;
    }
}

// Another window takes the pointer away in the middle of a stroke, and no release will come.
TEST_F(StrokeTools, CaptureLostToAnotherWindowEndsTheStrokeAndStaysThere)
{
    ASSERT_TRUE(start(60, 40));
    chooseBrush(model, {TOOL_BRUSH, 1, false, 5, 5, 100, {9, 9, 9}});
    const Picture before = model.scene.image;
    press(model, 10, 10);
    move(model, 20, 13);
    EXPECT_EQ(session->canvasWindow, GetCapture());
    SetCapture(host);
    EXPECT_EQ(host, GetCapture()) << "what the other window has taken is its own";
    EXPECT_EQ(0u, session->pressActive);
    EXPECT_TRUE(same());
    EXPECT_EQ(1, session->undoCount);
    applyUndo(UNDO);
    EXPECT_TRUE(showsPicture(image, before));
    ReleaseCapture();
}

TEST_F(StrokeTools, BrushFillsADragButSmoothDabsAtThePositionsOnly)
{
    ASSERT_TRUE(start(60, 40));
    chooseBrush(model, {TOOL_BRUSH, 1, false, 1, 1, 100, {9, 9, 9}});
    press(model, 10, 10);
    move(model, 20, 13);
    int painted = 0;
    for (const Pixel& pixel : model.scene.image.pixels)
        painted += pixel.blue == 9 && pixel.green == 9 && pixel.red == 9;
    EXPECT_EQ(11, painted);
    release(model, 20, 13);
    EXPECT_TRUE(same());
}

TEST_F(StrokeTools, FirstStampClickPicksThePatchUpAndTheNextPaintsIt)
{
    ASSERT_TRUE(start(60, 40));
    chooseBrush(model, {TOOL_STAMP, 1, false, 9, 9, 100, {}});
    const Picture before = model.scene.image;
    sessionPress(15, 15);
    EXPECT_TRUE(showsPicture(image, before));
    EXPECT_NE(nullptr, session->maskCache);
    EXPECT_EQ(0, session->undoCount) << "a click that picks up is no step";
    sessionMove(40, 20);
    sessionRelease(40, 20);
    EXPECT_TRUE(showsPicture(image, before)) << "it does not paint while dragging";
    sessionPress(40, 20);
    EXPECT_FALSE(showsPicture(image, before));
    EXPECT_EQ(1, session->undoCount) << "registered at the press";
    sessionRelease(40, 20);
    EXPECT_EQ(1, session->undoCount);
    applyUndo(UNDO);
    EXPECT_TRUE(showsPicture(image, before));
}

TEST_F(StrokeTools, StampKeepsItsPatchUntilSizeOrShapeChange)
{
    ASSERT_TRUE(start(60, 40));
    chooseBrush(model, {TOOL_STAMP, 1, false, 9, 9, 100, {}});
    press(model, 15, 15);
    release(model, 15, 15);
    const HGLOBAL patch = session->maskCache;
    for (int k = 0; k < 3; ++k) {
        press(model, 20 + 9 * k, 20);
        release(model, 20 + 9 * k, 20);
        EXPECT_EQ(patch, session->maskCache);
    }
    EXPECT_TRUE(same());
    chooseBrush(model, {TOOL_STAMP, 1, false, 9, 11, 100, {}});
    const Picture before = model.scene.image;
    press(model, 30, 30);
    release(model, 30, 30);
    EXPECT_TRUE(showsPicture(image, before)) << "after a change of size the click picks up again";
    EXPECT_TRUE(same());
}

// The rectangle that a Stamp press registers is as wide as twice half the brush: nothing for one pixel.
TEST_F(StrokeTools, StampOfOnePixelIsNotUndone)
{
    ASSERT_TRUE(start(20, 20));
    chooseBrush(model, {TOOL_STAMP, 1, false, 1, 1, 100, {}});
    press(model, 3, 3);
    release(model, 3, 3);
    press(model, 10, 10);
    release(model, 10, 10);
    EXPECT_TRUE(same());
    EXPECT_EQ(0, session->undoCount);
}

TEST_F(StrokeTools, SpoonbillPicksANewPatchEachStrokeAndKeepsItAlongTheStroke)
{
    ASSERT_TRUE(start(80, 40));
    chooseBrush(model, {TOOL_SPOONBILL, 0, false, 9, 9, 100, {}});
    press(model, 10, 10);
    const HGLOBAL first = duplicateBitmap(session->maskCache, 1);
    move(model, 30, 20);
    move(model, 50, 12);
    release(model, 50, 12);
    EXPECT_TRUE(same());
    press(model, 70, 30);
    ASSERT_EQ(GlobalSize(first), GlobalSize(session->maskCache));
    EXPECT_NE(0, memcmp(GlobalLock(first), GlobalLock(session->maskCache), GlobalSize(first)));
    GlobalUnlock(first);
    GlobalUnlock(session->maskCache);
    GlobalFree(first);
    release(model, 70, 30);
    EXPECT_TRUE(same());
}

TEST_F(StrokeTools, AerographeBuildsUpAtEveryTick)
{
    ASSERT_TRUE(start(40, 40));
    chooseBrush(model, {TOOL_AEROGRAPHE, 0, false, 16, 16, 40, {10, 200, 250}});
    press(model, 20, 20);
    for (int k = 0; k < 5; ++k) {
        const Picture before = model.scene.image;
        tick(model);
        EXPECT_FALSE(showsPicture(image, before));
        EXPECT_TRUE(same());
    }
    release(model, 20, 20);
    EXPECT_TRUE(same());
}

TEST_F(StrokeTools, AerographeTimerRunsWhileTheButtonIsDown)
{
    ASSERT_TRUE(start(40, 40));
    chooseBrush(model, {TOOL_AEROGRAPHE, 0, false, 1, 1, 49, {10, 200, 250}});
    sessionPress(20, 20);
    MSG message;
    EXPECT_GT(GetMessageA(&message, session->canvasWindow, WM_TIMER, WM_TIMER), 0);  // else the suite's time runs out
    EXPECT_EQ(SPRAY_TIMER, message.wParam);
    sessionRelease(20, 20);
    EXPECT_FALSE(KillTimer(session->canvasWindow, SPRAY_TIMER)) << "it is gone already";
}

TEST_F(StrokeTools, SoftAerographeSpraysTwiceTheBrushAndUndoCoversIt)
{
    ASSERT_TRUE(start(80, 60));
    chooseBrush(model, {TOOL_AEROGRAPHE, 0, true, 10, 10, 100, {0, 0, 255}});
    const Picture before = model.scene.image;
    press(model, 40, 30);
    release(model, 40, 30);
    EXPECT_TRUE(same());
    EXPECT_EQ(2u, session->maskScale);
    ASSERT_EQ(1, session->undoCount);
    const RECT& rect = session->undoSteps[0].rect;
    EXPECT_EQ(40 - 11, rect.left);
    EXPECT_EQ(30 - 11, rect.top);
    EXPECT_EQ(40 + 11, rect.right);
    EXPECT_EQ(30 + 12, rect.bottom);
    int changed = 0;
    for (size_t k = 0; k < before.pixels.size(); ++k)
        changed += before.pixels[k].red != model.scene.image.pixels[k].red;
    EXPECT_GT(changed, 150) << "more than a 10 x 10 brush covers";
    applyUndo(UNDO);
    EXPECT_TRUE(showsPicture(image, before));
}

TEST_F(StrokeTools, RubberBringsTheFirstImageBackAlsoAfterUndo)
{
    ASSERT_TRUE(start(80, 70));
    const Picture first = model.scene.image;
    for (int k = 0; k < 3; ++k) {
        chooseBrush(model, {TOOL_BRUSH, 1, false, 48, 48, 100, randomPaint(dice)});
        press(model, 40, 35);
        release(model, 40, 35);
    }
    modelUndo(model);
    applyUndo(UNDO);
    EXPECT_TRUE(same());
    EXPECT_FALSE(showsPicture(image, first));
    chooseBrush(model, {TOOL_RUBBER, 1, false, 48, 48, 100, {}});
    press(model, 40, 35);
    move(model, 42, 37);
    move(model, 42, 37);
    release(model, 42, 37);
    EXPECT_TRUE(same());
    EXPECT_TRUE(showsPicture(image, first));
}

TEST_F(StrokeTools, DabOutsideTheImagePaintsNothingButExtendsTheDirtyBox)
{
    ASSERT_TRUE(start(30, 30));
    chooseBrush(model, {TOOL_BRUSH, 0, false, 9, 9, 100, {1, 2, 3}});
    const Picture before = model.scene.image;
    press(model, 200, -100);
    EXPECT_TRUE(showsPicture(image, before));
    strokeTo(session->canvasWindow, {300, -200}, {300, -200});
    EXPECT_EQ(200, session->dirtyBox.minX);
    EXPECT_EQ(300, session->dirtyBox.maxX);
    EXPECT_EQ(-200, session->dirtyBox.minY);
    EXPECT_EQ(-100, session->dirtyBox.maxY);
    sessionRelease(300, -200);
    EXPECT_EQ(0, session->undoCount);
}

TEST_F(StrokeTools, ToolsThatDoNotPaintAnswerZero)
{
    ASSERT_TRUE(start(30, 30));
    for (uint32_t tool : {TOOL_NONE, TOOL_CONTRAST, TOOL_SELECTION, TOOL_TEXT, TOOL_COLORS}) {
        session->currentTool = tool;
        EXPECT_EQ(0, strokeTo(session->canvasWindow, {3, 3}, {9, 9}));
    }
    EXPECT_TRUE(same());
}

TEST_F(StrokeTools, DabNeedsCoverageImageAndMask)
{
    ASSERT_TRUE(start(30, 30));
    chooseBrush(model, {TOOL_BRUSH, 0, false, 9, 9, 100, {1, 2, 3}});
    EXPECT_EQ(0, paintDab(TOOL_BRUSH, {5, 5, 14, 14})) << "no stroke has begun";
    ASSERT_EQ(1, beginStroke());
    EXPECT_EQ(1, paintDab(TOOL_BRUSH, {500, 5, 514, 14}));
    GlobalFree(session->brushMask);
    session->brushMask = nullptr;
    EXPECT_EQ(0, paintDab(TOOL_BRUSH, {5, 5, 14, 14}));
    EXPECT_TRUE(same());
}

TEST_F(StrokeTools, CoverageOfOneStrokeIsGoneInTheNext)
{
    ASSERT_TRUE(start(60, 60));
    for (int soft = 0; soft < 2; ++soft) {
        chooseBrush(model, {TOOL_BRUSH, 0, soft != 0, 16, 16, 49, randomPaint(dice)});
        for (int k = 0; k < 12; ++k) {
            press(model, dice.between(-4, 64), dice.between(-4, 64));
            move(model, dice.between(-4, 64), dice.between(-4, 64));
            move(model, 30, 30);
            release(model, 30, 30);
            ASSERT_TRUE(same()) << "soft " << soft << " stroke " << k;
        }
    }
}

// A brush over both sides of the picture brings back shifted pixels, black where they come from outside.
TEST_F(StrokeTools, RubberOverBothSidesOfANarrowImage)
{
    ASSERT_TRUE(start(4, 30));
    chooseBrush(model, {TOOL_RUBBER, 1, false, 20, 5, 100, {}});
    press(model, 2, 10);
    release(model, 2, 10);
    EXPECT_TRUE(same());
    EXPECT_EQ(0,
              model.scene.image.at(0, 10).red + model.scene.image.at(0, 10).green + model.scene.image.at(0, 10).blue);
}

// The colour that the brush's picture leaves out stands where the mask is empty; outside the image it is black.
TEST_F(StrokeTools, PickedUpPatchIsFilledOutsideTheMaskAndBlackOutsideTheImage)
{
    ASSERT_TRUE(start(60, 40));
    for (const Pixel colour : {Pixel{10, 20, 30}, Pixel{255, 255, 255}}) {
        chooseBrush(model, {TOOL_STAMP, 0, false, 16, 16, 100, colour});
        rebuildOutline(session->canvasWindow, 1);
        sessionPress(1, 20);  // the patch reaches from column -7 to 8, from line 12 to 27
        sessionRelease(1, 20);
        COLORREF corner = 0, outside = 1, inside = 0;
        EXPECT_TRUE(getPixelColour(session->maskCache, 0, 0, &corner));
        EXPECT_TRUE(getPixelColour(session->maskCache, 3, 8, &outside));
        EXPECT_TRUE(getPixelColour(session->maskCache, 10, 8, &inside));
        EXPECT_EQ(colour.red == 255 ? 0x00C0C0C0u : 0x00FFFFFFu, corner);
        EXPECT_EQ(0u, outside);
        EXPECT_EQ(colorrefOf(model.scene.image.at(3, 20)), inside);
    }
}

TEST_F(StrokeTools, ShapeOfTheSameSizeMakesAnotherMask)
{
    ASSERT_TRUE(start(60, 40));
    for (int shape : {0, 1, 0}) {
        chooseBrush(model, {TOOL_BRUSH, shape, false, 16, 16, 100, randomPaint(dice)});
        press(model, 30, 20);
        release(model, 30, 20);
        EXPECT_TRUE(same()) << "shape " << shape;
    }
}

// Choosing an edge makes no mask; the stroke does.
TEST_F(StrokeTools, EdgeOfTheAerographeCountsFromTheNextStroke)
{
    ASSERT_TRUE(start(60, 40));
    for (bool soft : {false, true, false}) {
        chooseBrush(model, {TOOL_AEROGRAPHE, 0, soft, 10, 8, 100, randomPaint(dice)});
        press(model, 30, 20);
        release(model, 30, 20);
        EXPECT_TRUE(same()) << "soft " << soft;
        EXPECT_EQ(soft ? 2u : 1u, session->maskScale);
    }
}
