// Undo and redo against a model that keeps whole images, and what the history costs.
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

static ModelBrush randomBrush(Dice& dice)
{
    static const uint32_t tools[] = {TOOL_BRUSH, TOOL_RUBBER, TOOL_AEROGRAPHE, TOOL_STAMP, TOOL_SMOOTH, TOOL_SPOONBILL};
    static const int opacities[] = {16, 49, 100};
    return {tools[dice.upTo(5)],
            dice.upTo(1),
            dice.upTo(1) != 0,
            dice.between(1, 20),
            dice.between(1, 20),
            opacities[dice.upTo(2)],
            {dice.upTo(255), dice.upTo(255), dice.upTo(255)}};
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

TEST_F(UndoHistory, ThousandsOfRandomStepsEqualTheModel)
{
    for (uint64_t seed = 1; seed <= 120; ++seed) {
        dice = {seed};
        ASSERT_TRUE(start(dice.between(1, 40), dice.between(1, 30)));
        chooseBrush(model, randomBrush(dice));
        for (int step = 0; step < 40; ++step) {
            const int kind = dice.upTo(9);
            if (kind < 5) {
                randomStroke(*this);
            } else {
                ASSERT_TRUE(kind < 8 ? undo() : redo());
            }
            ASSERT_TRUE(same()) << "seed " << seed << " step " << step;
            ASSERT_EQ(model.position, session->undoPosition) << "seed " << seed << " step " << step;
            ASSERT_EQ((int)model.steps.size(), session->undoCount);
        }
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

// How many more movable blocks the process could have.
static int spareHandles()
{
    std::vector<HGLOBAL> blocks;
    while (HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 1))
        blocks.push_back(block);
    for (HGLOBAL block : blocks)
        GlobalFree(block);
    return (int)blocks.size();
}

TEST_F(UndoHistory, ThousandsOfStrokesLeakNoHandles)
{
    ASSERT_TRUE(start(40, 30));
    for (int k = 0; k < 50; ++k)
        randomStroke(*this);
    close();
    const int before = spareHandles();
    for (int round = 0; round < 4; ++round) {
        ASSERT_TRUE(start(40, 30));
        chooseBrush(model, randomBrush(dice));
        for (int k = 0; k < 600; ++k) {
            sessionBrush(randomBrush(dice));
            sessionPress(dice.upTo(40), dice.upTo(30));
            sessionMove(dice.upTo(40), dice.upTo(30));
            sessionRelease(0, 0);
            if (dice.upTo(2) == 0) applyUndo(UNDO);
            if (dice.upTo(3) == 0) applyUndo(REDO);
        }
        close();
    }
    EXPECT_EQ(before, spareHandles());
}

// Only the first strokes are whole ones: copying the photo a thousand times says nothing about the steps.
TEST_F(UndoHistory, ThousandStrokesOnALargePhotoKeepPatchesOnly)
{
    const HGLOBAL photo = createBitmap(6000, 4000, 24);
    ASSERT_TRUE(openOn(photo, {600, 400}, false));
    sessionBrush({TOOL_BRUSH, 0, false, 16, 16, 100, {1, 2, 3}});
    for (int k = 0; k < 1000; ++k) {
        const int x = dice.between(100, 5800), y = dice.between(100, 3800);
        if (k < 10) {
            sessionPress(x, y);
            sessionMove(x + 50, y + 20);
            sessionRelease(x + 50, y + 20);
        } else {
            session->dirtyBox = {x, x + 50, y, y + 20};
            session->pressActive = 1;
            sessionRelease(x + 50, y + 20);
        }
    }
    ASSERT_EQ(1000, session->undoCount);
    size_t kept = GlobalSize(GlobalHandle(session->undoSteps));
    for (int k = 0; k < 1000; ++k)
        kept += GlobalSize(session->undoSteps[k].patch);
    printf("1000 strokes of 50 x 20 pixels on 6000 x 4000 keep %zu bytes\n", kept);
    // 50 x 20 between the ends, half a brush and a margin of 1 around, one more at the bottom.
    const size_t patch = (size_t)rowStride(50 + 2 * 9, 24) * (20 + 2 * 9 + 1) + 40;
    EXPECT_LE(kept, 1000 * (patch + sizeof(UndoStep) + 16));
}
