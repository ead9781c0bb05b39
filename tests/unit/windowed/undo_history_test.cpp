// Undo and redo against a model that keeps whole images.
#include "image/packed_bitmap.h"
#include "session/ground/window_props.h"
#include "tests/unit/windowed/stroke_model.h"
#include "tools/painting/undo_history.h"

using reference::Picture;
using reference::Pixel;

struct UndoHistory : SessionFixture {
    Dice dice = {1};
    StrokeModel model = {};

    bool start(int width, int height)
    {
        const Picture picture = randomPicture(dice, width, height);
        model = strokeModel(picture);
        return open(picture);
    }
    bool same() { return showsPicture(image, model.scene.image); }
    void paint(int x, int y)
    {
        chooseBrush(model, {TOOL_BRUSH, 0, false, 9, 9, 100, {dice.upTo(255), dice.upTo(255), dice.upTo(255)}});
        press(model, x, y);
        release(model, x, y);
    }
    // Both answer alike.
    bool undo() { return modelUndo(model) == applyUndo(UNDO); }
    bool redo() { return modelRedo(model) == applyUndo(REDO); }
};

TEST_F(UndoHistory, WithoutAStepUndoAndRedoAnswerZero)
{
    ASSERT_TRUE(start(20, 20));
    EXPECT_EQ(0, applyUndo(UNDO));
    EXPECT_EQ(0, applyUndo(REDO));
    EXPECT_TRUE(same());
    EXPECT_EQ(0, session->undoPosition);
}

TEST_F(UndoHistory, ThreeUndosAfterOneStrokeThenOneRedoBringItBack)
{
    ASSERT_TRUE(start(30, 30));
    const Picture first = model.scene.image;
    paint(12, 12);
    const Picture painted = model.scene.image;
    for (int k = 0; k < 3; ++k)
        EXPECT_EQ(1, applyUndo(UNDO));
    EXPECT_TRUE(showsPicture(image, first));
    EXPECT_EQ(-2, session->undoPosition);
    EXPECT_EQ(1, applyUndo(REDO));
    EXPECT_TRUE(showsPicture(image, painted));
    EXPECT_EQ(1, session->undoPosition);
}

TEST_F(UndoHistory, NewStrokeAfterUndoMakesRedoImpossible)
{
    ASSERT_TRUE(start(40, 30));
    paint(8, 8);
    paint(20, 20);
    EXPECT_TRUE(undo() && undo() && undo());
    paint(30, 10);
    const Picture after = model.scene.image;
    EXPECT_EQ(1, session->undoCount);
    EXPECT_EQ(1, applyUndo(REDO));
    EXPECT_TRUE(showsPicture(image, after));
}

TEST_F(UndoHistory, RectangleIsClampedToTheImage)
{
    ASSERT_TRUE(start(30, 20));
    paint(0, 0);
    paint(29, 19);
    ASSERT_EQ(2, session->undoCount);
    const RECT topLeft = session->undoSteps[0].rect, bottomRight = session->undoSteps[1].rect;
    const RECT expectedTopLeft = {0, 0, 5, 6}, expectedBottomRight = {24, 14, 30, 20};
    EXPECT_TRUE(EqualRect(&expectedTopLeft, &topLeft));
    EXPECT_TRUE(EqualRect(&expectedBottomRight, &bottomRight));
    EXPECT_EQ(5, bitmapWidth(session->undoSteps[0].patch));
    EXPECT_EQ(6, bitmapHeight(session->undoSteps[0].patch));
    EXPECT_EQ((uint32_t)TOOL_BRUSH, session->undoSteps[0].toolId);
}

TEST_F(UndoHistory, PushWithoutImageOrRectangleFailsAndKeepsTheHistory)
{
    ASSERT_TRUE(start(30, 20));
    paint(10, 10);
    EXPECT_TRUE(undo());
    const RECT empty = {5, 5, 5, 9};
    EXPECT_EQ(0, pushUndoStep(&empty));
    EXPECT_EQ(1, session->undoCount);
    EXPECT_TRUE(redo());
    EXPECT_TRUE(same());
    const RECT some = {5, 5, 9, 9};
    setWindowProp(host, PROP_IMAGE, nullptr);
    EXPECT_EQ(0, pushUndoStep(&some));
    setWindowProp(host, PROP_IMAGE, image);
}

static void randomStroke(UndoHistory& test)
{
    Dice& dice = test.dice;
    const int width = test.model.scene.image.width, height = test.model.scene.image.height;
    if (dice.upTo(2) == 0) chooseBrush(test.model, randomBrush(dice));
    press(test.model, dice.between(-30, width + 30), dice.between(-30, height + 30));
    for (int k = dice.upTo(2); k > 0; --k)
        move(test.model, dice.between(-3, width + 3), dice.between(-3, height + 3));
    if (test.model.brush.tool == TOOL_AEROGRAPHE) tick(test.model);
    release(test.model, dice.between(0, width), dice.between(0, height));
}

// Of ten steps so many are strokes, and so many of the rest take one back.
static void randomSteps(UndoHistory& test, int steps, int strokes, int undos)
{
    chooseBrush(test.model, randomBrush(test.dice));
    for (int step = 0; step < steps; ++step) {
        const int kind = test.dice.upTo(9);
        if (kind < strokes) {
            randomStroke(test);
        } else {
            ASSERT_TRUE(kind < strokes + undos ? test.undo() : test.redo());
        }
        ASSERT_TRUE(test.same()) << "step " << step;
        ASSERT_EQ(test.model.position, session->undoPosition) << "step " << step;
        ASSERT_EQ((int)test.model.steps.size(), session->undoCount);
    }
}

TEST_F(UndoHistory, ThousandsOfRandomStepsEqualTheModel)
{
    for (uint64_t seed = 1; seed <= 120; ++seed) {
        dice = {seed};
        ASSERT_TRUE(start(dice.between(1, 40), dice.between(1, 30)));
        SCOPED_TRACE(seed);
        randomSteps(*this, 40, 5, 3);
        if (HasFatalFailure()) return;
        close();
    }
}

// Stamp's rectangle may miss a column of thin brushes; every other tool's holds all that it changed.
TEST_F(UndoHistory, UndoingEverythingGivesTheFirstImageAndRedoingTheLast)
{
    for (uint64_t seed = 1; seed <= 20; ++seed) {
        dice = {seed};
        ASSERT_TRUE(start(dice.between(1, 50), dice.between(1, 50)));
        const Picture first = model.scene.image;
        for (int k = 0; k < 30; ++k) {
            ModelBrush brush = randomBrush(dice);
            if (brush.tool == TOOL_STAMP) brush.tool = TOOL_SPOONBILL;
            chooseBrush(model, brush);
            press(model, dice.upTo(50), dice.upTo(50));
            move(model, dice.upTo(50), dice.upTo(50));
            release(model, 0, 0);
        }
        const Picture last = model.scene.image;
        for (int k = 0; k < 40; ++k)
            applyUndo(UNDO);
        ASSERT_TRUE(showsPicture(image, first)) << "seed " << seed;
        for (int k = 0; k < 40; ++k)
            applyUndo(REDO);
        ASSERT_TRUE(showsPicture(image, last)) << "seed " << seed;
        close();
    }
}

// Images of many tiles, strokes over many of them.
TEST_F(UndoHistory, RandomStepsOnLargerImagesEqualTheModel)
{
    for (uint64_t seed = 1; seed <= 12; ++seed) {
        dice = {seed};
        ASSERT_TRUE(start(dice.between(100, 330), dice.between(100, 250)));
        SCOPED_TRACE(seed);
        randomSteps(*this, 25, 6, 3);
        if (HasFatalFailure()) return;
        close();
    }
}
