// A command of the palette or the library that arrives while a press on the canvas runs: the press ends first, as
// the release at its last point would. The oracle is the same command after a real release there.
#include <iterator>

#include "image/bitmap_locks.h"
#include "resources/resource_ids.h"
#include "session/ground/language.h"
#include "session/ground/module_state.h"
#include "tests/unit/windowed/stroke_model.h"
#include "tools/palette/palette.h"
#include "tools/painting/undo_history.h"

using reference::Picture;

struct PressAndCommand : SessionFixture {
    ModuleHome home = {};
    HWND palette = nullptr;
    Picture first = {};

    void SetUp() override { ASSERT_TRUE(moveModuleHome(&home)); }
    void TearDown() override
    {
        close();
        leaveModuleHome(&home);
    }
    bool start()
    {
        Dice dice = {7};
        DeleteFileA((home.directory + "KOVRTCH.INI").c_str());  // every session starts from the same settings
        first = randomPicture(dice, 60, 40);
        if (!open(first)) return false;
        palette = openLocalDialog(moduleInstance, PALETTE_TEMPLATE, host, paletteDialogProc, 0);
        session->paletteDialog = palette;
        return palette != nullptr;
    }
    void click(int id) { SendMessageA(palette, WM_COMMAND, (WPARAM)id, (LPARAM)GetDlgItem(palette, id)); }
    // The button goes down with a tool and moves on to (44, 26).
    void beginDrag(int tool)
    {
        click(tool);
        sessionPress(20, 12);
        sessionMove(36, 30);
        sessionMove(44, 26);
    }
    // Everything that still comes of a drag whose press has ended must change nothing.
    void finishLate()
    {
        sessionMove(10, 10);
        sessionTick();
        sessionRelease(12, 9);
    }
};

// What a drag and a command leave behind.
struct PressOutcome {
    std::vector<uint8_t> image;
    int steps, position;
    RECT rect;  // of the last step
    uint32_t tool, hit, tracking, rotating, selected, pressed;
    int32_t hidden;
    RECT selection;
    bool captured;
};

static std::vector<uint8_t> bitmapBytes(HGLOBAL image)
{
    const LockedBitmap bitmap(image);
    if (!bitmap) return {};
    const uint8_t* bytes = (const uint8_t*)bitmap.block.header;
    return {bytes, bytes + bitmap.block.size};
}

static PressOutcome outcome(HGLOBAL image)
{
    const int steps = session->undoCount;
    return {bitmapBytes(image),
            steps,
            session->undoPosition,
            steps > 0 ? session->undoSteps[steps - 1].rect : RECT{},
            session->currentTool,
            session->selectionHitCode,
            session->trackingSelection,
            session->rotatingSelection,
            session->selectionActive,
            session->pressActive,
            session->overlayHideCount,
            session->selectionRect,
            GetCapture() == session->canvasWindow};
}

static void expectSame(const PressOutcome& expected, const PressOutcome& actual)
{
    EXPECT_TRUE(expected.image == actual.image);
    EXPECT_EQ(expected.steps, actual.steps);
    EXPECT_EQ(expected.position, actual.position);
    EXPECT_TRUE(EqualRect(&expected.rect, &actual.rect));
    EXPECT_EQ(expected.tool, actual.tool);
    EXPECT_EQ(expected.hit, actual.hit);
    EXPECT_EQ(expected.tracking, actual.tracking);
    EXPECT_EQ(expected.rotating, actual.rotating);
    EXPECT_EQ(expected.selected, actual.selected);
    EXPECT_EQ(expected.hidden, actual.hidden);
    EXPECT_TRUE(EqualRect(&expected.selection, &actual.selection));
    EXPECT_EQ(0u, actual.pressed);
    EXPECT_FALSE(actual.captured);
}

constexpr int TOOLS[] = {BUTTON_BRUSH,  BUTTON_RUBBER,    BUTTON_AEROGRAPHE, BUTTON_STAMP,
                         BUTTON_SMOOTH, BUTTON_SPOONBILL, BUTTON_SELECTION};
constexpr int COMMANDS[] = {BUTTON_BRUSH, BUTTON_AEROGRAPHE, BUTTON_SELECTION, BUTTON_COLORS,      BUTTON_TEXT,
                            BUTTON_UNDO,  BUTTON_REDO,       BUTTON_RECTANGLE, BUTTON_EDGE_SMOOTH, BUTTON_CLOSE};

// All commands with the Brush and with Selection, which differ most; every third with each of the others, so that
// each command meets several of them.
static bool isTried(int tool, int command)
{
    return TOOLS[tool] == BUTTON_BRUSH || TOOLS[tool] == BUTTON_SELECTION || (tool + command) % 3 == 0;
}

TEST_F(PressAndCommand, EveryCommandFindsThePressEnded)
{
    for (int toolIndex = 0; toolIndex < (int)std::size(TOOLS); ++toolIndex) {
        for (int commandIndex = 0; commandIndex < (int)std::size(COMMANDS); ++commandIndex) {
            if (!isTried(toolIndex, commandIndex)) continue;
            const int tool = TOOLS[toolIndex], command = COMMANDS[commandIndex];
            SCOPED_TRACE(testing::Message() << "tool " << tool << " command " << command);
            PressOutcome outcomes[2];
            for (int inMidPress = 0; inMidPress < 2; ++inMidPress) {
                ASSERT_TRUE(start());
                beginDrag(tool);
                if (!inMidPress) sessionRelease(44, 26);
                click(command);
                outcomes[inMidPress] = outcome(image);
                if (inMidPress) {
                    const std::vector<uint8_t> before = outcomes[1].image;
                    if (command != BUTTON_COLORS) finishLate();
                    EXPECT_TRUE(before == bitmapBytes(image));
                    EXPECT_EQ(outcomes[1].steps, session->undoCount);
                }
                close();
            }
            expectSame(outcomes[0], outcomes[1]);
        }
    }
}

TEST_F(PressAndCommand, ScrollingABarEndsThePress)
{
    ASSERT_TRUE(start());
    beginDrag(BUTTON_BRUSH);
    SendMessageA(palette, WM_HSCROLL, SB_LINEDOWN, (LPARAM)GetDlgItem(palette, BAR_WIDTH));
    EXPECT_EQ(0u, session->pressActive);
    EXPECT_EQ(1, session->undoCount);
    const std::vector<uint8_t> painted = bitmapBytes(image);
    finishLate();
    EXPECT_TRUE(painted == bitmapBytes(image));
}

TEST_F(PressAndCommand, LibraryCommandsEndThePress)
{
    ASSERT_TRUE(start());
    CheckDlgButton(palette, BUTTON_LIBRARY, BST_CHECKED);
    click(BUTTON_LIBRARY);
    ASSERT_NE(nullptr, session->libraryDialog);
    beginDrag(BUTTON_BRUSH);
    SendMessageA(session->libraryDialog, WM_COMMAND, BUTTON_DELETE, 0);
    EXPECT_EQ(0u, session->pressActive);
    EXPECT_EQ(1, session->undoCount);
    DestroyWindow(session->libraryDialog);
    session->libraryDialog = nullptr;
}

// A drag of the floating selection, by its middle.
TEST_F(PressAndCommand, SelectionClearedUnderItsDragLeavesNothingBehind)
{
    ASSERT_TRUE(start());
    click(BUTTON_SELECTION);
    sessionPress(10, 8);
    for (const POINT& to : {POINT{44, 9}, POINT{42, 32}, POINT{12, 30}})
        sessionMove(to.x, to.y);
    sessionRelease(11, 29);
    ASSERT_EQ(1u, session->selectionActive);
    sessionPress(27, 20);
    sessionMove(30, 22);
    click(BUTTON_BRUSH);
    EXPECT_EQ(0u, session->selectionActive);
    EXPECT_EQ(0u, session->trackingSelection);
    finishLate();
    EXPECT_TRUE(showsPicture(image, first));
}

// A timer message that was on its way when the press ended.
TEST_F(PressAndCommand, SprayTimerPaintsOnlyInAPress)
{
    ASSERT_TRUE(start());
    click(BUTTON_AEROGRAPHE);
    session->opacity = 40;
    sessionPress(44, 26);
    const std::vector<uint8_t> before = bitmapBytes(image);
    sessionTick();
    EXPECT_FALSE(before == bitmapBytes(image));
    sessionRelease(44, 26);
    const std::vector<uint8_t> released = bitmapBytes(image);
    sessionTick();
    EXPECT_TRUE(released == bitmapBytes(image));
}
