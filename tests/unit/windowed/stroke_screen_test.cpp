// When a stroke paints and when it does not, and that the screen shows it at once.
#include "canvas/pointer_input.h"
#include "image/packed_bitmap.h"
#include "tests/unit/windowed/stroke_model.h"
#include "tools/painting/undo_history.h"

using reference::Picture;
using reference::Pixel;

struct StrokeScreen : SessionFixture {
    Dice dice = {1};
    StrokeModel model = {};

    bool start(int width, int height, bool visible = false)
    {
        const Picture picture = randomPicture(dice, width, height);
        model = strokeModel(picture);
        if (!open(picture, {0, 0}, visible)) return false;
        session->overlayEnabled = 0;  // the brush at the pointer is not what these look at
        return true;
    }
    bool same() { return showsPicture(image, model.scene.image); }
    // The canvas, one pixel of the image to one of the screen, looked at without waiting for messages.
    bool sameOnScreen() const
    {
        const Picture& picture = model.scene.image;
        const HDC screen = GetDC(host);
        int different = 0;
        for (int y = 0; y < picture.height; ++y)
            for (int x = 0; x < picture.width; ++x)
                different += GetPixel(screen, x, y) != colorrefOf(picture.at(x, y));
        ReleaseDC(host, screen);
        return different == 0;
    }
};

TEST_F(StrokeScreen, EverySegmentIsOnTheScreenAtOnce)
{
    ASSERT_TRUE(start(70, 50, true));
    for (uint32_t tool : paintingTools) {
        chooseBrush(model, {tool, 1, false, 15, 16, 100, randomPaint(dice)});
        press(model, 20, 15);
        EXPECT_TRUE(sameOnScreen()) << "press, tool " << tool;
        for (const POINT to : {POINT{50, 35}, POINT{66, 12}, POINT{10, 48}}) {
            move(model, to.x, to.y);
            EXPECT_TRUE(sameOnScreen()) << "move, tool " << tool;
        }
        release(model, 30, 30);
        press(model, 40, 20);  // Stamp paints at the second press
        EXPECT_TRUE(sameOnScreen()) << "second press, tool " << tool;
        release(model, 40, 20);
        EXPECT_TRUE(same());
    }
    chooseBrush(model, {TOOL_BRUSH, 1, false, 15, 16, 100, randomPaint(dice)});
    press(model, 20, 15);
    release(model, 20, 15);
    const Picture painted = model.scene.image;
    EXPECT_TRUE(modelUndo(model) && applyUndo(UNDO));
    UpdateWindow(session->canvasWindow);
    EXPECT_FALSE(showsPicture(image, painted));
    EXPECT_TRUE(sameOnScreen()) << "undone";
    EXPECT_TRUE(modelRedo(model) && applyUndo(REDO));
    UpdateWindow(session->canvasWindow);
    EXPECT_TRUE(sameOnScreen()) << "done again";
}

// A drag that began elsewhere, or whose capture was lost: what it painted could not be undone.
TEST_F(StrokeScreen, MovesPaintOnlyBetweenPressAndRelease)
{
    for (uint32_t tool : paintingTools) {
        ASSERT_TRUE(start(60, 40));
        const Picture first = model.scene.image;
        chooseBrush(model, {tool, 1, false, 9, 9, 49, randomPaint(dice)});
        sessionMove(10, 10);
        sessionMove(20, 20);
        EXPECT_TRUE(same()) << "before any press, tool " << tool;
        press(model, 30, 20);
        move(model, 35, 20);
        SendMessageA(session->canvasWindow, WM_CAPTURECHANGED, 0, 0);
        sessionMove(50, 30);
        sessionRelease(55, 30);
        sessionMove(10, 30);
        EXPECT_TRUE(same()) << "after a lost capture, tool " << tool;
        EXPECT_EQ(tool == TOOL_STAMP ? 0 : 1, session->undoCount);
        applyUndo(UNDO);
        EXPECT_TRUE(showsPicture(image, first)) << "undone, tool " << tool;
        close();
    }
}

// Nor does it paint once the pointer counts as outside, until it has come back.
TEST_F(StrokeScreen, MovesPaintOnlyWhileThePointerIsInside)
{
    ASSERT_TRUE(start(60, 40));
    chooseBrush(model, {TOOL_BRUSH, 1, false, 9, 9, 100, randomPaint(dice)});
    press(model, 30, 20);
    session->mouseInside = 0;
    sessionMove(5, 5);
    EXPECT_TRUE(same());
    session->mouseInside = 1;
    move(model, 40, 30);
    EXPECT_TRUE(same()) << "the segment starts where the pointer was last inside";
    release(model, 40, 30);
}

TEST_F(StrokeScreen, OnlyItsOwnTimerSprays)
{
    ASSERT_TRUE(start(60, 40));
    chooseBrush(model, {TOOL_AEROGRAPHE, 1, false, 9, 9, 16, randomPaint(dice)});
    press(model, 30, 20);
    for (const UINT_PTR other : {0, 2, 0xF118})
        SendMessageA(session->canvasWindow, WM_TIMER, other, 0);
    EXPECT_TRUE(same());
    tick(model);
    EXPECT_TRUE(same());
    release(model, 30, 20);
}
