// The palette's buttons and bars, on the real template.
#include "canvas/view/cursor_outline.h"
#include "image/packed_bitmap.h"
#include "resources/resource_ids.h"
#include "session/ground/language.h"
#include "session/ground/module_state.h"
#include "session/ground/session_extras.h"
#include "tests/unit/windowed/stroke_model.h"
#include "tools/palette/palette.h"
#include "tools/palette/palette_controls.h"
#include "tools/painting/undo_history.h"

struct PaletteCommands : SessionFixture {
    ModuleHome home = {};
    HWND palette = nullptr;
    Dice dice = {1};
    reference::Picture first;

    bool openAll()
    {
        first = randomPicture(dice, 60, 40);
        if (!open(first)) return false;
        palette = openLocalDialog(moduleInstance, PALETTE_TEMPLATE, host, paletteDialogProc, 0);
        session->paletteDialog = palette;
        return palette != nullptr;
    }
    void SetUp() override
    {
        ASSERT_TRUE(moveModuleHome(&home));
        ASSERT_TRUE(openAll());
    }
    void TearDown() override
    {
        close();
        leaveModuleHome(&home);
    }
    void click(int id) { SendMessageA(palette, WM_COMMAND, (WPARAM)id, (LPARAM)GetDlgItem(palette, id)); }
    void scroll(int id, int code, int thumb = 0)
    {
        const UINT message = id == BAR_HEIGHT ? WM_VSCROLL : WM_HSCROLL;
        SendMessageA(palette, message, MAKEWPARAM(code, thumb), (LPARAM)GetDlgItem(palette, id));
    }
    void dragTo(int id, int position)
    {
        scroll(id, SB_THUMBTRACK, position);
        scroll(id, SB_THUMBPOSITION, position);
        scroll(id, SB_ENDSCROLL);
    }
    int bar(int id) { return GetScrollPos(GetDlgItem(palette, id), SB_CTL); }
    bool checked(int id) { return IsDlgButtonChecked(palette, id) == BST_CHECKED; }
    bool enabled(int id) { return IsWindowEnabled(GetDlgItem(palette, id)) != FALSE; }
    ToolSettings& settingsOf(uint32_t tool)
    {
        ToolSettings* found = session->toolSettings;
        while (found->toolId != tool)
            ++found;
        return *found;
    }
};

TEST_F(PaletteCommands, StartsWithBarsAndButtonsSet)
{
    EXPECT_EQ(16, bar(BAR_WIDTH));
    EXPECT_EQ(16, bar(BAR_HEIGHT));
    EXPECT_EQ(100, bar(BAR_OPACITY));
    for (int id : {CHECK_LOCK_LH, BUTTON_CIRCLE, BUTTON_EDGE_FULL})
        EXPECT_TRUE(checked(id)) << id;
    int low, high;
    GetScrollRange(GetDlgItem(palette, BAR_OPACITY), SB_CTL, &low, &high);
    EXPECT_TRUE(low == 40 && high == 100);
    GetScrollRange(GetDlgItem(palette, BAR_WIDTH), SB_CTL, &low, &high);
    EXPECT_TRUE(low == 1 && high == 48);
    EXPECT_EQ(0u, session->currentTool);
}

TEST_F(PaletteCommands, EveryToolKeepsItsOwnSettings)
{
    click(BUTTON_BRUSH);
    EXPECT_EQ((uint32_t)TOOL_BRUSH, session->currentTool);
    dragTo(BAR_WIDTH, 30);
    click(BUTTON_RECTANGLE);
    click(BUTTON_EDGE_SMOOTH);
    dragTo(BAR_OPACITY, 70);
    click(BUTTON_RUBBER);
    EXPECT_EQ(16u, session->brushWidth);
    EXPECT_EQ((uint32_t)SHAPE_CIRCLE, session->brushShape);
    EXPECT_EQ((uint32_t)EDGE_FULL, session->edgeMode);
    EXPECT_EQ(100u, session->opacity);
    EXPECT_TRUE(checked(BUTTON_CIRCLE) && checked(BUTTON_EDGE_FULL));
    EXPECT_EQ(16, bar(BAR_WIDTH));
    click(BUTTON_BRUSH);
    EXPECT_EQ(30u, session->brushWidth);
    EXPECT_EQ((uint32_t)SHAPE_RECTANGLE, session->brushShape);
    EXPECT_EQ((uint32_t)EDGE_SMOOTH, session->edgeMode);
    EXPECT_EQ(49u, session->opacity);
    EXPECT_TRUE(checked(BUTTON_RECTANGLE) && checked(BUTTON_EDGE_SMOOTH));
    EXPECT_EQ(30, bar(BAR_WIDTH));
    EXPECT_EQ(49, bar(BAR_OPACITY));
}

TEST_F(PaletteCommands, SettingsSurviveTheNextSession)
{
    click(BUTTON_AEROGRAPHE);
    dragTo(BAR_WIDTH, 21);
    click(BUTTON_EDGE_SMOOTH);
    session->paintColour = 0x123456;
    close();
    ASSERT_TRUE(openAll());
    EXPECT_EQ(21u, settingsOf(TOOL_AEROGRAPHE).width);
    click(BUTTON_AEROGRAPHE);
    EXPECT_EQ(21u, session->brushWidth);
    EXPECT_EQ((uint32_t)EDGE_SMOOTH, session->edgeMode);
    EXPECT_EQ(0x123456u, session->paintColour);
}

// The bar's position is stored squared and shown as it is stored.
TEST_F(PaletteCommands, OpacityIsStoredSquaredAndOnlyAtTheEnd)
{
    click(BUTTON_BRUSH);
    scroll(BAR_OPACITY, SB_THUMBTRACK, 40);
    EXPECT_EQ(100u, session->opacity) << "not before the release";
    scroll(BAR_OPACITY, SB_ENDSCROLL);
    EXPECT_EQ(16u, session->opacity);
    EXPECT_EQ(16u, settingsOf(TOOL_BRUSH).opacity);
    click(BUTTON_RUBBER);
    EXPECT_EQ(100, bar(BAR_OPACITY));
    click(BUTTON_BRUSH);
    EXPECT_EQ(16u, session->opacity);
    EXPECT_EQ(40, bar(BAR_OPACITY));
    dragTo(BAR_OPACITY, 100);
    EXPECT_EQ(100u, session->opacity);
    dragTo(BAR_OPACITY, 70);
    EXPECT_EQ(49u, session->opacity);
    dragTo(BAR_OPACITY, -5);
    EXPECT_EQ(16u, session->opacity);
}

TEST_F(PaletteCommands, LockMovesBothBarsAndKeepsTheirDifference)
{
    click(BUTTON_BRUSH);
    CheckDlgButton(palette, CHECK_LOCK_LH, BST_UNCHECKED);
    scroll(BAR_WIDTH, SB_LINEDOWN);
    EXPECT_TRUE(session->brushWidth == 17 && session->brushHeight == 16);
    CheckDlgButton(palette, CHECK_LOCK_LH, BST_CHECKED);
    scroll(BAR_WIDTH, SB_LINEDOWN);
    EXPECT_TRUE(session->brushWidth == 18 && session->brushHeight == 17);
    scroll(BAR_HEIGHT, SB_PAGEDOWN);
    EXPECT_TRUE(session->brushWidth == 26 && session->brushHeight == 25);
    scroll(BAR_HEIGHT, SB_THUMBPOSITION, 99);
    EXPECT_TRUE(session->brushWidth == 48 && session->brushHeight == 48);
    scroll(BAR_WIDTH, 7);
    EXPECT_TRUE(session->brushWidth == 48 && session->brushHeight == 48) << "an unknown code changes nothing";
}

TEST_F(PaletteCommands, SizeAndShapeDropThePickedUpPatchAndEdgeDoesNot)
{
    click(BUTTON_STAMP);
    const auto pick = [&] {
        sessionPress(20, 20);
        sessionRelease(20, 20);
        return session->maskCache != nullptr;
    };
    EXPECT_TRUE(pick());
    click(BUTTON_EDGE_SMOOTH);
    EXPECT_NE(nullptr, session->maskCache);
    scroll(BAR_WIDTH, SB_LINEUP);
    EXPECT_NE(nullptr, session->maskCache) << "not before the release";
    scroll(BAR_WIDTH, SB_ENDSCROLL);
    EXPECT_EQ(nullptr, session->maskCache);
    EXPECT_TRUE(pick());
    click(BUTTON_RECTANGLE);
    EXPECT_EQ(nullptr, session->maskCache);
    EXPECT_EQ(15, bitmapWidth(session->brushMask));
}

TEST_F(PaletteCommands, TextForcesAThinBrushAndLocksTheWidth)
{
    click(BUTTON_BRUSH);
    click(BUTTON_TEXT);
    EXPECT_EQ((uint32_t)TOOL_TEXT, session->currentTool);
    EXPECT_EQ(3u, session->brushWidth);
    EXPECT_FALSE(enabled(BAR_WIDTH));
    EXPECT_FALSE(enabled(CHECK_LOCK_LH));
    EXPECT_FALSE(checked(CHECK_LOCK_LH));
    EXPECT_TRUE(enabled(BAR_HEIGHT));
    EXPECT_LT(session->overlayHideCount, 1) << "no outline with Text";
    click(BUTTON_BRUSH);
    EXPECT_TRUE(enabled(BAR_WIDTH) && enabled(CHECK_LOCK_LH) && checked(CHECK_LOCK_LH));
    EXPECT_EQ(16u, session->brushWidth);
}

TEST_F(PaletteCommands, OutlineBrushIsRoundOnly)
{
    click(TOOL_OUTLINE_BRUSH);
    EXPECT_EQ((uint32_t)TOOL_OUTLINE_BRUSH, session->currentTool);
    CheckRadioButton(palette, BUTTON_CIRCLE, BUTTON_RECTANGLE, BUTTON_RECTANGLE);
    click(BUTTON_RECTANGLE);
    EXPECT_EQ((uint32_t)SHAPE_CIRCLE, session->brushShape);
    EXPECT_TRUE(checked(BUTTON_CIRCLE));
    EXPECT_FALSE(checked(BUTTON_RECTANGLE));
}

TEST_F(PaletteCommands, ColorsOnceArmsThePickerAndKeepsTheColourOutside)
{
    click(BUTTON_BRUSH);
    const COLORREF before = session->paintColour;
    click(BUTTON_COLORS);
    EXPECT_EQ((uint32_t)TOOL_COLORS, session->currentTool);
    EXPECT_LT(session->overlayHideCount, 0);
    sessionPress(7, 9);
    EXPECT_EQ(colorrefOf(first.at(7, 9)), session->paintColour);
    EXPECT_EQ(before, session->previousColour);
    sessionMove(8, 9);
    EXPECT_EQ(colorrefOf(first.at(8, 9)), session->paintColour);
    sessionMove(-50, 9);
    EXPECT_EQ(before, session->paintColour);
    sessionRelease(-50, 9);
    click(BUTTON_BRUSH);
    EXPECT_EQ((uint32_t)TOOL_BRUSH, session->currentTool);
}

TEST_F(PaletteCommands, UndoAndRedoButtonsAndCloseGivesTheOriginalBack)
{
    click(BUTTON_BRUSH);
    sessionPress(20, 20);
    sessionRelease(20, 20);
    EXPECT_FALSE(showsPicture(image, first));
    click(BUTTON_UNDO);
    EXPECT_TRUE(showsPicture(image, first));
    click(BUTTON_REDO);
    EXPECT_FALSE(showsPicture(image, first));
    EXPECT_EQ((uint32_t)TOOL_BRUSH, session->currentTool);
    click(BUTTON_CLOSE);
    EXPECT_TRUE(showsPicture(image, first));
    EXPECT_EQ(0, sessionResult);
    EXPECT_EQ(LEAVING_CLOSED, sessionExtras.leaving);
    MSG message;
    EXPECT_TRUE(PeekMessageA(&message, host, WM_CLOSE, WM_CLOSE, PM_REMOVE));
    sessionExtras.leaving = LEAVING_UNDECIDED;
}

TEST_F(PaletteCommands, SaveKeepsTheImage)
{
    click(BUTTON_BRUSH);
    sessionPress(20, 20);
    sessionRelease(20, 20);
    click(BUTTON_SAVE);
    EXPECT_FALSE(showsPicture(image, first));
    EXPECT_EQ(1, sessionResult);
    MSG message;
    EXPECT_TRUE(PeekMessageA(&message, host, WM_CLOSE, WM_CLOSE, PM_REMOVE));
    sessionExtras.leaving = LEAVING_UNDECIDED;
    sessionResult = 0;
}

TEST_F(PaletteCommands, UnknownCommandsChangeNothing)
{
    click(BUTTON_BRUSH);
    const SessionRecord before = *session;
    for (int id : {0, 1, 3, 113, 125, 153, 200, 206, 215, 9999})
        click(id);
    EXPECT_EQ(0, memcmp(before.toolSettings, session->toolSettings, sizeof before.toolSettings));
    EXPECT_EQ(before.currentTool, session->currentTool);
    EXPECT_EQ(before.brushWidth, session->brushWidth);
    EXPECT_EQ(before.overlayHideCount, session->overlayHideCount);
}

// The outline is to be seen with every painting tool, once the pointer has entered.
TEST_F(PaletteCommands, PaintingToolsShowTheOutline)
{
    for (int id : {BUTTON_BRUSH, BUTTON_RUBBER, BUTTON_AEROGRAPHE, BUTTON_STAMP, BUTTON_SMOOTH, BUTTON_SPOONBILL}) {
        click(BUTTON_SELECTION);
        EXPECT_LT(session->overlayHideCount, 0);
        click(id);
        EXPECT_GE(session->overlayHideCount, 0) << id;
    }
}
