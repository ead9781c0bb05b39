// Escape while a button is down, with every tool: image, undo list, record and screen are what they were before the
// press, fitted and zoomed, and what still comes of that press changes nothing.
#include "canvas/painting_input.h"
#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/cursor_outline.h"
#include "canvas/view_change.h"
#include "session/ground/session_extras.h"
#include "image/bitmap_block.h"
#include "tests/unit/windowed/block_bytes.h"
#include "tests/unit/windowed/client_screen.h"
#include "tests/unit/windowed/stroke_model.h"
#include "tools/painting/undo_history.h"

constexpr SIZE IMAGE = {150, 110}, CLIENT = {75, 55};  // fitted shows every second pixel
constexpr int PERCENTS[] = {0, 100, 400};
constexpr uint32_t PAINTING_TOOLS[] = {TOOL_BRUSH,  TOOL_RUBBER, TOOL_AEROGRAPHE,
                                       TOOL_SMOOTH, TOOL_STAMP,  TOOL_SPOONBILL};
static const std::vector<POINT> path = {{70, 50}, {95, 70}, {-20, 30}, {160, 120}, {80, 52}};

static std::vector<uint8_t> bytesOf(const PixelPoint* points, int count)
{
    return points ? std::vector<uint8_t>((const uint8_t*)points, (const uint8_t*)(points + count))
                  : std::vector<uint8_t>();
}

// All that a press may not leave a trace in. Pictures that are made anew, and blocks that only mean something while a
// stroke runs, are left out of the record.
struct Everything {
    std::vector<uint8_t> record, image, patch, steps, outline, floating, mask;
    std::vector<uint32_t> screen;
    bool captured;
};

static Everything everything(HGLOBAL image)
{
    SessionRecord record = *session;
    record.outlineBitmap = record.saveUnderBitmap = nullptr;
    record.brushMask = record.maskCache = record.strokeCoverage = record.undoSnapshot = nullptr;
    record.undoSteps = nullptr;
    record.outlinePos = {0, 0};
    record.rowCount = 0;  // of the image, from the first outline on
    record.mouseInside = 1;
    Everything all = {};
    all.record.assign((const uint8_t*)&record, (const uint8_t*)(&record + 1));
    all.image = bytesOf(image);
    all.patch = bytesOf(session->maskCache);
    for (int i = 0; i < session->undoCount; ++i) {
        const UndoStep& step = session->undoSteps[i];
        all.steps.insert(all.steps.end(), (const uint8_t*)&step, (const uint8_t*)(&step + 1));
        const std::vector<uint8_t> patch = bytesOf(step.patch);
        all.steps.insert(all.steps.end(), patch.begin(), patch.end());
    }
    all.outline = bytesOf(session->outlinePoints, session->outlinePointCount);
    all.floating = bytesOf(session->selectionImage);
    all.mask = bytesOf(session->selectionMask);
    UpdateWindow(session->canvasWindow);
    all.screen = clientScreen(session->canvasWindow);
    all.captured = GetCapture() == session->canvasWindow;
    return all;
}

static void expectSame(const Everything& before, const Everything& after)
{
    for (size_t i = 0; i < before.record.size(); ++i)
        EXPECT_EQ(before.record[i], after.record[i]) << "byte " << i % 4 << " of field " << i / 4;
    EXPECT_TRUE(before.image == after.image);
    EXPECT_TRUE(before.patch == after.patch);
    EXPECT_TRUE(before.steps == after.steps);
    EXPECT_TRUE(before.outline == after.outline);
    EXPECT_TRUE(before.floating == after.floating);
    EXPECT_TRUE(before.mask == after.mask);
    EXPECT_TRUE(before.screen == after.screen);
    EXPECT_FALSE(after.captured);
}

struct PressCancel : SessionFixture, testing::WithParamInterface<int> {
    Dice dice = {3};

    bool start()
    {
        if (!open(randomPicture(dice, IMAGE.cx, IMAGE.cy), CLIENT, true)) return false;
        session->overlayEnabled = 0;  // nothing at the pointer
        GlobalFree(session->originalImage);
        session->originalImage = bitmapOf(randomPicture(dice, IMAGE.cx, IMAGE.cy));
        CanvasView view = GetParam() ? fullSizeView(sessionExtras.canvas.view) : sessionExtras.canvas.view;
        while (viewPercent(view) < GetParam())
            view = steppedAboutCentre(view, 1);
        showView(session->canvasWindow, view);
        return viewPercent(sessionExtras.canvas.view) == GetParam() && session->originalImage;
    }
    void choose(uint32_t tool, int size = 9, bool soft = false)
    {
        sessionBrush({tool, SHAPE_CIRCLE, soft, size, size, 70, {dice.upTo(255), 20, 90}});
        rebuildOutline(session->canvasWindow, 0);
    }
    void click(int x, int y)
    {
        sessionPress(x, y);
        sessionRelease(x, y);
    }
    void escape() { SendMessageA(session->canvasWindow, WM_KEYDOWN, VK_ESCAPE, 0); }
    // Presses, drags, cancels, and goes on with the button down; then lets go.
    void cancelled(const std::vector<POINT>& points)
    {
        InvalidateRect(session->canvasWindow, nullptr, FALSE);  // with the map
        const Everything before = everything(image);
        sessionPress(points[0].x, points[0].y);
        for (size_t i = 1; i < points.size(); ++i) {
            sessionMove(points[i].x, points[i].y);
            sessionTick();
        }
        escape();
        expectSame(before, everything(image));
        EXPECT_FALSE(KillTimer(session->canvasWindow, SPRAY_TIMER)) << "the timer is ended";
        sessionMove(40, 60);
        sessionTick();
        sessionRelease(44, 61);
        expectSame(before, everything(image));
        EXPECT_TRUE(showsWhatARepaintShows(session->canvasWindow));
    }
    void drawSelection()
    {
        session->currentTool = TOOL_SELECTION;
        sessionPress(50, 40);
        for (const POINT& to : {POINT{100, 38}, POINT{104, 75}, POINT{52, 78}})
            sessionMove(to.x, to.y);
        sessionRelease(50, 41);
    }
};

TEST_P(PressCancel, AStrokeHasNotBeen)
{
    ASSERT_TRUE(start());
    choose(TOOL_BRUSH);
    for (int x : {60, 75, 90})
        click(x, 55);
    for (uint32_t tool : PAINTING_TOOLS) {
        for (int undone = 0; undone < 3; ++undone) {  // something to redo, too
            for (bool soft : {false, true}) {
                SCOPED_TRACE(testing::Message() << "tool " << tool << " undone " << undone << " soft " << soft);
                choose(tool, 9 + undone, soft);
                if (tool == TOOL_STAMP && soft) click(66, 48);  // with a patch in hand; else the press picks one up
                cancelled(path);
                if (HasFailure()) return;
            }
            applyUndo(UNDO);
        }
        for (int i = 0; i < 4; ++i)
            applyUndo(REDO);
        EXPECT_EQ(session->undoCount, session->undoPosition);
    }
}

// The press of a stamp drops what could be redone, as every stroke does, unless it is taken back.
TEST_P(PressCancel, AStampThatStaysEndsWhatCouldBeRedone)
{
    ASSERT_TRUE(start());
    choose(TOOL_STAMP);
    click(66, 48);
    for (int x : {60, 75, 90})
        click(x, 55);
    applyUndo(UNDO);
    applyUndo(UNDO);
    const std::vector<uint8_t> before = bytesOf(image);
    cancelled({{80, 50}});
    EXPECT_EQ(3, session->undoCount);
    sessionPress(80, 50);
    EXPECT_EQ(2, session->undoCount) << "at the press already";
    sessionRelease(80, 50);
    EXPECT_EQ(2, session->undoCount);
    EXPECT_FALSE(before == bytesOf(image));
    applyUndo(UNDO);
    EXPECT_TRUE(before == bytesOf(image));
    applyUndo(REDO);
    applyUndo(REDO);
    EXPECT_EQ(2, session->undoPosition);
}

TEST_P(PressCancel, TheNextStrokeIsAsEver)
{
    ASSERT_TRUE(start());
    const std::vector<uint8_t> before = bytesOf(image);
    choose(TOOL_BRUSH);
    cancelled(path);
    sessionPress(60, 50);
    sessionMove(80, 60);
    sessionRelease(80, 60);
    EXPECT_EQ(1, session->undoCount);
    EXPECT_FALSE(before == bytesOf(image));
    applyUndo(UNDO);
    EXPECT_TRUE(before == bytesOf(image));
}

TEST_P(PressCancel, ThePickedColourIsTheFormerOne)
{
    ASSERT_TRUE(start());
    session->currentTool = TOOL_COLORS;
    click(70, 52);
    click(71, 53);
    cancelled(path);
}

TEST_P(PressCancel, ADragOfTheSelectionHasNotBeen)
{
    ASSERT_TRUE(start());
    session->currentTool = TOOL_SELECTION;
    cancelled({{50, 40}, {100, 38}, {104, 75}, {52, 78}});  // its outline
    drawSelection();
    ASSERT_EQ(1u, session->selectionActive);
    session->trackRect = session->reshapeRect = {};
    const Everything before = everything(image);
    sessionExtras.canvas.pointer = {CLIENT.cx / 2, CLIENT.cy / 2};
    const POINT inside = imagePointOf(session->canvasWindow, sessionExtras.canvas.pointer);
    sessionPress(inside.x, inside.y);
    EXPECT_EQ(1u, session->trackingSelection);
    sessionMove(inside.x + 6, inside.y + 4);
    escape();
    const Everything after = everything(image);
    EXPECT_TRUE(before.screen == after.screen);
    EXPECT_TRUE(before.floating == after.floating);
    EXPECT_TRUE(before.outline == after.outline);
    EXPECT_FALSE(after.captured);
    sessionMove(inside.x - 6, inside.y + 4);
    sessionRelease(inside.x - 6, inside.y + 4);
    EXPECT_TRUE(before.screen == everything(image).screen);
}

TEST_P(PressCancel, ADabOfTheOutlineBrushHasNotBeen)
{
    ASSERT_TRUE(start());
    drawSelection();
    ASSERT_EQ(1u, session->selectionActive);
    for (int size : {11, 48}) {
        SCOPED_TRACE(size);
        choose(TOOL_OUTLINE_BRUSH, size);
        for (const POINT& at : {POINT{54, 60}, POINT{49, 60}, POINT{75, 58}, POINT{140, 100}}) {
            SCOPED_TRACE(at.x);
            cancelled({at, {at.x + 4, at.y}});
            if (HasFailure()) return;
        }
    }
    // And one that stays.
    const Everything before = everything(image);
    choose(TOOL_OUTLINE_BRUSH, 11);
    click(54, 60);
    EXPECT_FALSE(before.floating == everything(image).floating);
}

// From outside a brush that reaches every point cuts all of it away.
TEST_P(PressCancel, ASelectionPaintedAwayComesBack)
{
    ASSERT_TRUE(start());
    session->currentTool = TOOL_SELECTION;
    sessionPress(60, 50);
    for (const POINT& to : {POINT{68, 50}, POINT{68, 57}, POINT{60, 57}})
        sessionMove(to.x, to.y);
    sessionRelease(60, 51);
    ASSERT_EQ(1u, session->selectionActive);
    choose(TOOL_OUTLINE_BRUSH, 48);
    sessionPress(58, 53);
    ASSERT_EQ(0u, session->selectionActive);
    escape();
    sessionRelease(58, 53);
    ASSERT_EQ(1u, session->selectionActive);
    cancelled({{58, 53}});
    click(58, 53);
    EXPECT_EQ(0u, session->selectionActive);
    EXPECT_EQ(nullptr, session->selectionImage);
}

INSTANTIATE_TEST_SUITE_P(Views, PressCancel, testing::ValuesIn(PERCENTS), [](const testing::TestParamInfo<int>& info) {
    return info.param ? "At" + std::to_string(info.param) : std::string("Fitted");
});
