// Thin strokes on a canvas that is smaller than the image: whatever a tool paints is on the screen at once, also
// where it is narrower than a pixel of the screen. The oracle is a repaint of everything.
#include "image/bitmap_block.h"
#include "image/packed_bitmap.h"
#include "selection/clear_selection.h"
#include "selection/selection.h"
#include "tests/unit/windowed/client_screen.h"
#include "tests/unit/windowed/stroke_model.h"
#include "tools/painting/undo_history.h"

constexpr SIZE CLIENT = {48, 40};
constexpr double SCALES[] = {1, 1.33, 2, 4.4, 6.3};  // image pixels to a screen pixel
constexpr uint32_t TOOLS[] = {TOOL_BRUSH, TOOL_RUBBER, TOOL_AEROGRAPHE, TOOL_STAMP, TOOL_SMOOTH, TOOL_SPOONBILL};

struct CanvasDrag {
    POINT from, to;  // on the screen, in tenths of a pixel
};
constexpr CanvasDrag DRAGS[] = {{{103, 56}, {103, 350}}, {{57, 119}, {431, 119}}, {{71, 64}, {398, 353}}};

struct ReducedCanvas : SessionFixture, testing::WithParamInterface<double> {
    Dice dice = {1};
    int changes = 0;  // steps that showed on the screen

    // Noise of large steps, so that every dab changes what it touches; other noise to come back with Rubber.
    bool start(SIZE client = CLIENT)
    {
        const int width = (int)(client.cx * GetParam()), height = (int)(client.cy * GetParam());
        if (!open(randomPicture(dice, width, height), client, true)) return false;
        session->overlayEnabled = 0;  // nothing at the pointer
        if (session->originalImage) GlobalFree(session->originalImage);
        session->originalImage = bitmapOf(randomPicture(dice, width, height));
        return session->originalImage != nullptr;
    }
    POINT onImage(POINT tenths) const
    {
        return {(LONG)(tenths.x * GetParam() / 10), (LONG)(tenths.y * GetParam() / 10)};
    }
    // True when the screen shows what it should; counts whether it shows something new.
    bool showsAll(std::vector<uint32_t>& before)
    {
        if (!showsWhatARepaintShows(session->canvasWindow)) return false;
        const std::vector<uint32_t> now = clientScreen(session->canvasWindow);
        changes += now != before;
        before = now;
        return true;
    }
    // Press, drag, release, undo and redo; the name of the first step whose result is not on the screen.
    const char* firstUnseen(const CanvasDrag& drag)
    {
        const POINT from = onImage(drag.from), to = onImage(drag.to);
        std::vector<uint32_t> shown = clientScreen(session->canvasWindow);
        sessionPress(from.x, from.y);
        if (!showsAll(shown)) return "press";
        sessionMove(to.x, to.y);
        if (!showsAll(shown)) return "move";
        sessionTick();
        if (!showsAll(shown)) return "timer";
        sessionRelease(to.x, to.y);
        if (!showsAll(shown)) return "release";
        applyUndo(UNDO);
        if (!showsAll(shown)) return "undo";
        applyUndo(REDO);
        return showsAll(shown) ? nullptr : "redo";
    }
};

TEST_P(ReducedCanvas, EveryThinStrokeClickUndoAndRedoIsSeen)
{
    ASSERT_TRUE(start());
    for (uint32_t tool : TOOLS) {
        changes = 0;
        for (int size = 1; size <= 8; ++size) {
            for (int shape : {SHAPE_CIRCLE, SHAPE_RECTANGLE}) {
                sessionBrush({tool, shape, size % 2 == 0, size, size, 100, {dice.upTo(255), dice.upTo(255), 7}});
                for (const CanvasDrag& drag : DRAGS) {
                    const char* unseen = firstUnseen(drag);
                    ASSERT_EQ(nullptr, unseen) << unseen << ", tool " << tool << ", brush " << size << ", shape "
                                               << shape << ", drag to " << drag.to.x << ", " << drag.to.y;
                }
            }
        }
        EXPECT_GT(changes, 0) << "tool " << tool << " painted nothing";
    }
}

// ---- tools that work with a selection, and text

constexpr SIZE LARGE_CLIENT = {150, 110};  // with room for the frame's buttons

struct ReducedTools : ReducedCanvas {
    std::vector<uint32_t> shown;

    void expectSeen(const char* when)
    {
        if (session->caretCreated) HideCaret(session->canvasWindow);  // it is drawn by the system, and blinks
        EXPECT_TRUE(showsAll(shown)) << when;
        if (session->caretCreated) ShowCaret(session->canvasWindow);
    }
    POINT middleOf(const RECT& rect) const { return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2}; }
    void click(POINT at, const char* name)
    {
        sessionPress(at.x, at.y);
        expectSeen(name);
        sessionRelease(at.x, at.y);
        expectSeen(name);
    }
    void drag(POINT from, POINT tenths, const char* name)
    {
        const POINT by = onImage(tenths);
        sessionPress(from.x, from.y);
        expectSeen(name);
        for (int part = 1; part <= 3; ++part) {
            sessionMove(from.x + by.x * part / 3, from.y + by.y * part / 3);
            expectSeen(name);
        }
        sessionRelease(from.x + by.x, from.y + by.y);
        expectSeen(name);
    }
    void drawSelection(int tenths)
    {
        session->currentTool = TOOL_SELECTION;
        std::vector<POINT> corners = {
            {600, 500}, {600 + tenths, 480}, {620 + tenths, 500 + tenths}, {590, 490 + tenths}};
        for (POINT& corner : corners)
            corner = onImage(corner);
        sessionPress(corners[0].x, corners[0].y);
        expectSeen("outline, press");
        for (const POINT& corner : corners) {
            sessionMove(corner.x, corner.y);
            expectSeen("outline, move");
        }
        sessionRelease(corners[3].x, corners[3].y);
        expectSeen("outline, release");
        ASSERT_EQ(1u, session->selectionActive);
    }
    void undoAndRedo()
    {
        applyUndo(UNDO);
        expectSeen("undo");
        applyUndo(REDO);
        expectSeen("redo");
    }
};

TEST_P(ReducedTools, EveryStepOfASelectionIsSeen)
{
    ASSERT_TRUE(start(LARGE_CLIENT));
    for (int size : {70, 400}) {
        SCOPED_TRACE(size);
        drawSelection(size);
        drag(middleOf(session->selectionRect), {70, 40}, "move");
        drag(middleOf(session->bottomRightHandle), {90, 70}, "resize");
        drag(middleOf(session->rotateButton), {-60, 90}, "turn");
        for (RECT SessionRecord::*button :
             {&SessionRecord::brighterButton, &SessionRecord::hueUpButton, &SessionRecord::contrastLessButton,
              &SessionRecord::flipVerticalButton, &SessionRecord::flipHorizontalButton, &SessionRecord::liftUpButton,
              &SessionRecord::applyButton}) {
            click(middleOf(session->*button), "button");
        }
        undoAndRedo();
        click(middleOf(session->closeButton), "close");
        if (session->selectionActive) clearSelection();  // of a small frame another button lies over that one
        expectSeen("closed");
    }
    EXPECT_GT(changes, 20);
}

TEST_P(ReducedTools, EveryDabOfTheOutlineBrushIsSeen)
{
    ASSERT_TRUE(start(LARGE_CLIENT));
    drawSelection(400);
    changes = 0;
    for (int size : {1, 2, 3, 5, 8, 48}) {
        sessionBrush({TOOL_OUTLINE_BRUSH, SHAPE_CIRCLE, false, size, size, 100, {}});
        const RECT& rect = session->selectionRect;
        click({rect.left + (LONG)(2 * GetParam()), (rect.top + rect.bottom) / 2}, "from inside");
        click({rect.right + 1, (rect.top + rect.bottom) / 2}, "from outside");
        click(middleOf(rect), "nothing met");
        if (!session->selectionActive) drawSelection(400);
    }
    EXPECT_GT(changes, 4);
}

TEST_P(ReducedTools, EveryStepOfTypingIsSeen)
{
    ASSERT_TRUE(start(LARGE_CLIENT));
    session->currentTool = TOOL_TEXT;
    session->paintColour = 0x0000FF;
    session->opacity = 100;
    for (int height : {6, 20, 60}) {
        SCOPED_TRACE(height);
        session->brushHeight = (uint32_t)height;
        click(onImage({200, 500}), "a line is opened");
        for (char character : {'W', 'i', '.', '\b', 'H'}) {
            SendMessageA(session->canvasWindow, WM_CHAR, (WPARAM)character, 0);
            expectSeen("typed");
        }
        SendMessageA(session->canvasWindow, WM_KEYDOWN, VK_RETURN, 0);
        SendMessageA(session->canvasWindow, WM_CHAR, VK_RETURN, 0);
        expectSeen("stamped");
        undoAndRedo();
        SendMessageA(session->canvasWindow, WM_CHAR, 'M', 0);
        expectSeen("typed");
        click(onImage({900, 900}), "stamped by a click elsewhere");
        SendMessageA(session->canvasWindow, WM_CHAR, 'T', 0);
        expectSeen("typed");
        SendMessageA(session->canvasWindow, WM_KEYDOWN, VK_ESCAPE, 0);
        SendMessageA(session->canvasWindow, WM_CHAR, VK_ESCAPE, 0);
        expectSeen("thrown away");
        EXPECT_EQ(nullptr, session->textBuffer);
    }
    EXPECT_GT(changes, 10);
}

static std::string nameOfScale(const testing::TestParamInfo<double>& info)
{
    return "OneTo" + std::to_string((int)(info.param * 100)) + "Hundredths";
}

INSTANTIATE_TEST_SUITE_P(Scales, ReducedCanvas, testing::ValuesIn(SCALES), nameOfScale);
INSTANTIATE_TEST_SUITE_P(Scales, ReducedTools, testing::ValuesIn(SCALES), nameOfScale);
