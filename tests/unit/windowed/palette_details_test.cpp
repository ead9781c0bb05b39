// What else hangs on the palette's buttons and bars: cursors, the selection, a line of text being typed, the
// preview, and the dialog's own messages.
#include <windows.h>
#include <commdlg.h>

#include <cstring>

#include "image/bitmap_locks.h"
#include "resources/resource_ids.h"
#include "session/ground/language.h"
#include "session/ground/module_state.h"
#include "tests/session/import_patch.h"
#include "tests/unit/windowed/stroke_model.h"
#include "tools/brush/brush_preview.h"
#include "tools/palette/palette.h"
#include "tools/palette/palette_controls.h"

struct PaletteDetails : SessionFixture {
    ModuleHome home = {};
    HWND palette = nullptr;
    Dice dice = {1};
    reference::Picture first;

    void SetUp() override
    {
        ASSERT_TRUE(moveModuleHome(&home));
        first = randomPicture(dice, 60, 40);
        ASSERT_TRUE(open(first));
        ASSERT_TRUE(openPalette());
    }
    void TearDown() override
    {
        close();
        leaveModuleHome(&home);
    }
    bool openPalette()
    {
        palette = openLocalDialog(moduleInstance, PALETTE_TEMPLATE, host, paletteDialogProc, 0);
        session->paletteDialog = palette;
        return palette != nullptr;
    }
    void click(int id) { SendMessageA(palette, WM_COMMAND, (WPARAM)id, (LPARAM)GetDlgItem(palette, id)); }
    void scroll(int id, int code, int thumb = 0)
    {
        const UINT message = id == BAR_HEIGHT ? WM_VSCROLL : WM_HSCROLL;
        SendMessageA(palette, message, MAKEWPARAM(code, thumb), (LPARAM)GetDlgItem(palette, id));
    }
    bool checked(int id) { return IsDlgButtonChecked(palette, id) == BST_CHECKED; }
    ToolSettings& settingsOf(uint32_t tool)
    {
        ToolSettings* found = session->toolSettings;
        while (found->toolId != tool)
            ++found;
        return *found;
    }
    void drawSelection()
    {
        click(BUTTON_SELECTION);
        sessionPress(10, 10);
        for (const POINT& to : {POINT{40, 12}, POINT{38, 30}, POINT{12, 28}})
            sessionMove(to.x, to.y);
        sessionRelease(12, 28);
    }
    void openTextLine()
    {
        if (session->currentTool != TOOL_TEXT) click(BUTTON_TEXT);
        sessionPress(20, 20);
        sessionRelease(20, 20);
    }
    // True when nothing but the preview has become invalid; everything is valid afterwards.
    bool previewOnlyInvalid()
    {
        RECT invalid;
        GetUpdateRect(palette, &invalid, FALSE);
        const RECT preview = previewArea(palette);
        ValidateRect(palette, nullptr);
        return EqualRect(&invalid, &preview) != FALSE;
    }
};

TEST_F(PaletteDetails, EveryToolHasItsCursor)
{
    const int cursors[][2] = {{TOOL_OUTLINE_BRUSH, 142}, {BUTTON_SELECTION, 114},  {BUTTON_BRUSH, 100},
                              {BUTTON_RUBBER, 108},      {BUTTON_AEROGRAPHE, 110}, {BUTTON_STAMP, 106},
                              {BUTTON_SMOOTH, 104},      {BUTTON_SPOONBILL, 112},  {BUTTON_TEXT, 124},
                              {BUTTON_COLORS, 102}};
    for (const auto& row : cursors) {
        const HCURSOR expected = LoadCursorA(moduleInstance, MAKEINTRESOURCEA(row[1]));
        ASSERT_NE(nullptr, expected) << row[1];
        ASSERT_NE(expected, (HCURSOR)GetClassLongPtrA(session->canvasWindow, GCLP_HCURSOR));
        click(row[0]);
        EXPECT_EQ((uint32_t)row[0], session->currentTool);
        EXPECT_EQ(expected, (HCURSOR)GetClassLongPtrA(session->canvasWindow, GCLP_HCURSOR)) << row[0];
    }
}

TEST_F(PaletteDetails, ToolsButSelectionAndColorsClearTheSelection)
{
    for (int id :
         {BUTTON_BRUSH, BUTTON_RUBBER, BUTTON_AEROGRAPHE, BUTTON_STAMP, BUTTON_SMOOTH, BUTTON_SPOONBILL, BUTTON_TEXT}) {
        drawSelection();
        ASSERT_EQ(1u, session->selectionActive) << id;
        click(id);
        EXPECT_EQ(0u, session->selectionActive) << id;
        EXPECT_TRUE(IsRectEmpty(&session->selectionRect)) << id;
    }
    for (int id : {BUTTON_SELECTION, BUTTON_COLORS, BUTTON_UNDO, BUTTON_RECTANGLE, BUTTON_EDGE_SMOOTH}) {
        drawSelection();
        click(id);
        EXPECT_EQ(1u, session->selectionActive) << id;
        click(BUTTON_BRUSH);
    }
}

TEST_F(PaletteDetails, ClosingClearsTheSelection)
{
    drawSelection();
    DestroyWindow(palette);
    session->paletteDialog = nullptr;
    EXPECT_EQ(0u, session->selectionActive);
    EXPECT_EQ(nullptr, session->selectionImage);
}

TEST_F(PaletteDetails, EveryCommandEndsTheLineOfText)
{
    for (int id : {BUTTON_UNDO, BUTTON_EDGE_SMOOTH, BUTTON_RECTANGLE, CHECK_LOCK_LH, 1, 9999}) {
        openTextLine();
        ASSERT_NE(0u, session->caretCreated) << id;
        click(id);
        EXPECT_EQ(0u, session->caretCreated) << id;
    }
}

TEST_F(PaletteDetails, LettingABarGoEndsTheLineOfText)
{
    openTextLine();
    scroll(BAR_HEIGHT, SB_LINEDOWN);
    EXPECT_NE(0u, session->caretCreated) << "not before the release";
    scroll(BAR_HEIGHT, SB_ENDSCROLL);
    EXPECT_EQ(0u, session->caretCreated);
}

TEST_F(PaletteDetails, LeavingColorsLoadsNoSettings)
{
    click(BUTTON_BRUSH);
    click(BUTTON_COLORS);
    session->paintColour = 0x00123456;  // as picked from the image
    click(BUTTON_RUBBER);
    EXPECT_EQ(0x00123456u, session->paintColour) << "the picked colour is taken along";
    click(BUTTON_BRUSH);
    EXPECT_EQ(0x00C0C0FFu, session->paintColour);
    click(BUTTON_RUBBER);
    EXPECT_EQ(0x00123456u, session->paintColour);
}

// Loading a tool's settings drops the patch that Stamp picked up, Selection's too. Colors has none to load, and
// leaving it loads none: the patch outlives both.
TEST_F(PaletteDetails, PatchGoesWhenSettingsAreLoaded)
{
    const auto pick = [&] {
        click(BUTTON_STAMP);
        sessionPress(20, 20);
        sessionRelease(20, 20);
        return session->maskCache != nullptr;
    };
    ASSERT_TRUE(pick());
    click(BUTTON_SELECTION);
    EXPECT_EQ(nullptr, session->maskCache);
    ASSERT_TRUE(pick());
    click(BUTTON_COLORS);
    EXPECT_NE(nullptr, session->maskCache);
    click(BUTTON_SELECTION);
    EXPECT_NE(nullptr, session->maskCache);
}

// "L = H" is shown as each tool's block has it; clicking it is not written back into the block.
TEST_F(PaletteDetails, BarsAndLockAreShownAsTheBlockHasThem)
{
    ToolSettings& smooth = settingsOf(TOOL_SMOOTH);
    smooth.lockLH = smooth.widthEnabled = smooth.heightEnabled = 0;
    click(BUTTON_SMOOTH);
    EXPECT_FALSE(checked(CHECK_LOCK_LH));
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(palette, CHECK_LOCK_LH)));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(palette, BAR_WIDTH)));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(palette, BAR_HEIGHT)));
    CheckDlgButton(palette, CHECK_LOCK_LH, BST_CHECKED);
    click(CHECK_LOCK_LH);
    click(BUTTON_BRUSH);
    EXPECT_EQ(0u, smooth.lockLH);
    EXPECT_TRUE(checked(CHECK_LOCK_LH));
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(palette, BAR_WIDTH)));
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(palette, BAR_HEIGHT)));
}

TEST_F(PaletteDetails, ShapeAndBarsAreKeptAtOnceEdgeWhenTheToolIsLeft)
{
    click(BUTTON_BRUSH);
    const ToolSettings& brush = settingsOf(TOOL_BRUSH);
    click(BUTTON_EDGE_SMOOTH);
    EXPECT_EQ((uint32_t)EDGE_FULL, brush.edge);
    click(BUTTON_RECTANGLE);
    EXPECT_EQ((uint32_t)SHAPE_RECTANGLE, brush.shape);
    EXPECT_EQ((uint32_t)EDGE_SMOOTH, brush.edge);
    scroll(BAR_WIDTH, SB_PAGEDOWN);
    EXPECT_EQ(24u, brush.width);
    EXPECT_EQ(24u, brush.height);
    session->opacity = 77;
    session->paintColour = 0x00010203;
    click(BUTTON_RUBBER);
    EXPECT_EQ(77u, brush.opacity);
    EXPECT_EQ(0x00010203u, brush.colour);
}

// The outline at the pointer takes the new colour at the release.
TEST_F(PaletteDetails, OutlineFollowsAPickedColourAtTheRelease)
{
    {
        const LockedPixels pixels(image);
        ASSERT_TRUE(pixels);
        memset(rowOf(pixels.view, 9), 0xFF, 60 * 3);
    }
    click(BUTTON_BRUSH);
    click(BUTTON_COLORS);
    sessionPress(7, 9);
    EXPECT_EQ(0x00FFFFFFu, session->paintColour);
    EXPECT_EQ(0x00FFFFFFu, session->previewBackground);
    sessionRelease(7, 9);
    EXPECT_EQ(0x00C0C0C0u, session->previewBackground) << "white is drawn on grey";
}

TEST_F(PaletteDetails, WhateverShowsInThePreviewInvalidatesIt)
{
    ShowWindow(host, SW_SHOWNOACTIVATE);
    ShowWindow(palette, SW_SHOWNOACTIVATE);
    // The check marks of the buttons are not what this is about.
    ShowWindow(GetDlgItem(palette, BUTTON_CIRCLE), SW_HIDE);
    click(BUTTON_BRUSH);
    UpdateWindow(palette);
    ValidateRect(palette, nullptr);

    click(BUTTON_RUBBER);
    EXPECT_TRUE(previewOnlyInvalid()) << "another tool";
    click(BUTTON_RECTANGLE);
    EXPECT_TRUE(previewOnlyInvalid()) << "another shape";
    scroll(BAR_WIDTH, SB_LINEDOWN);
    EXPECT_TRUE(previewOnlyInvalid()) << "another size";
    click(BUTTON_COLORS);
    EXPECT_FALSE(previewOnlyInvalid()) << "the picker alone changes nothing";
    sessionPress(7, 9);
    EXPECT_TRUE(previewOnlyInvalid()) << "a colour picked at the press";
    sessionMove(8, 9);
    EXPECT_TRUE(previewOnlyInvalid()) << "a colour picked along the way";
    sessionMove(8, 9);
    EXPECT_FALSE(previewOnlyInvalid()) << "the same colour again";
    sessionRelease(8, 9);
    click(BUTTON_TEXT);
    EXPECT_TRUE(previewOnlyInvalid()) << "the text tool's brush";
}

TEST_F(PaletteDetails, OutlineIsHiddenForToolsThatShowNone)
{
    for (int id : {BUTTON_SELECTION, BUTTON_TEXT}) {
        click(BUTTON_BRUSH);
        session->overlayHideCount = 1;
        click(id);
        EXPECT_LT(session->overlayHideCount, 0) << id;
        click(BUTTON_BRUSH);
        EXPECT_GE(session->overlayHideCount, 0);
    }
    click(BUTTON_BRUSH);
    session->overlayHideCount = 1;
    click(BUTTON_COLORS);
    EXPECT_EQ(0, session->overlayHideCount) << "Colors has no settings: it hides once only";
}

TEST_F(PaletteDetails, StartsOverWithEachSession)
{
    DestroyWindow(palette);
    session->brushShape = SHAPE_RECTANGLE;
    session->selectionActive = session->caretCreated = 1;
    session->caretIndex = 5;
    ASSERT_TRUE(openPalette());
    EXPECT_EQ((uint32_t)SHAPE_CIRCLE, session->brushShape);
    EXPECT_TRUE(checked(BUTTON_CIRCLE));
    EXPECT_FALSE(checked(BUTTON_RECTANGLE));
    EXPECT_TRUE(checked(BUTTON_EDGE_FULL));
    EXPECT_TRUE(checked(CHECK_LOCK_LH));
    EXPECT_EQ(0u, session->selectionActive);
    EXPECT_EQ(0u, session->caretCreated);
    EXPECT_EQ(0, session->caretIndex);
}

// The outline at the pointer changes its shape with the brush.
TEST_F(PaletteDetails, OutlineTakesTheChosenShape)
{
    click(BUTTON_BRUSH);
    const HDC dc = CreateCompatibleDC(nullptr);
    const auto cornerColour = [&] {
        const HGDIOBJ old = SelectObject(dc, session->outlineBitmap);
        const COLORREF colour = GetPixel(dc, 0, 0);
        SelectObject(dc, old);
        return colour;
    };
    EXPECT_EQ(session->previewBackground, cornerColour());
    click(BUTTON_RECTANGLE);
    EXPECT_EQ(session->paintColour, cornerColour());
    click(BUTTON_CIRCLE);
    EXPECT_EQ(session->previewBackground, cornerColour());
    DeleteDC(dc);
}

static int hideCountInDialog;
static uint32_t selectionInDialog;
static COLORREF answeredColour;

static BOOL WINAPI fakeChooseColor(CHOOSECOLORA* dialog)
{
    hideCountInDialog = session->overlayHideCount;
    dialog->rgbResult = answeredColour;
    return TRUE;
}

TEST_F(PaletteDetails, ColorsPressedAgainHidesTheOutlineForGood)
{
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), "ChooseColorA", (void*)fakeChooseColor));
    ShowWindow(host, SW_SHOWNOACTIVATE);
    ShowWindow(palette, SW_SHOWNOACTIVATE);
    UpdateWindow(palette);
    ValidateRect(palette, nullptr);
    answeredColour = RGB(255, 255, 255);
    click(BUTTON_COLORS);
    session->overlayHideCount = 1;
    click(BUTTON_COLORS);
    EXPECT_EQ(0, hideCountInDialog) << "nothing of it is under the dialog";
    EXPECT_LT(session->overlayHideCount, 0);
    EXPECT_EQ(answeredColour, session->paintColour);
    EXPECT_EQ(0x00C0C0C0u, session->previewBackground) << "its picture was made again for white";
    EXPECT_TRUE(previewOnlyInvalid());
    undoPatch(&patch);
}

static INT_PTR WINAPI fakeDialogBox(HINSTANCE, LPCWSTR, HWND, DLGPROC, LPARAM)
{
    hideCountInDialog = session->overlayHideCount;
    selectionInDialog = session->selectionActive;
    return 0;
}

// Contrast looks like a tool of the group but is none: the tool stays, with its settings and its button.
TEST_F(PaletteDetails, ContrastGivesTheButtonBackToTheTool)
{
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), "DialogBoxParamW", (void*)fakeDialogBox));
    drawSelection();
    session->overlayHideCount = 1;
    settingsOf(TOOL_CONTRAST).width = 40;
    CheckRadioButton(palette, BUTTON_FIRST_TOOL, BUTTON_LAST_TOOL, BUTTON_CONTRAST);
    click(BUTTON_CONTRAST);
    EXPECT_EQ(0u, selectionInDialog) << "the selection is cleared first";
    EXPECT_EQ(0, hideCountInDialog) << "nothing of the outline is under the dialog";
    EXPECT_EQ(1, session->overlayHideCount);
    EXPECT_EQ((uint32_t)TOOL_SELECTION, session->currentTool);
    EXPECT_EQ(16u, session->brushWidth);
    EXPECT_FALSE(checked(BUTTON_CONTRAST));
    EXPECT_TRUE(checked(BUTTON_SELECTION));

    session->currentTool = TOOL_NONE;
    CheckRadioButton(palette, BUTTON_FIRST_TOOL, BUTTON_LAST_TOOL, BUTTON_CONTRAST);
    click(BUTTON_CONTRAST);
    EXPECT_FALSE(checked(BUTTON_CONTRAST));
    EXPECT_FALSE(checked(BUTTON_SELECTION));
    undoPatch(&patch);
}

// Every point that is no control is held like a title bar, with a cursor that says so.
TEST_F(PaletteDetails, IsHeldByItsBackground)
{
    EXPECT_EQ(HTCAPTION, SendMessageA(palette, WM_NCHITTEST, 0, MAKELPARAM(5, 5)));
    SetCursor(nullptr);
    EXPECT_EQ(FALSE, paletteDialogProc(palette, WM_NCLBUTTONDOWN, HTCAPTION, 0)) << "the default handling moves it";
    EXPECT_EQ(LoadCursorA(moduleInstance, MAKEINTRESOURCEA(15001)), GetCursor());
    EXPECT_EQ(FALSE, paletteDialogProc(palette, WM_NCLBUTTONUP, HTCAPTION, 0));
    EXPECT_EQ(LoadCursorA(nullptr, (LPCSTR)IDC_ARROW), GetCursor());
}

TEST_F(PaletteDetails, BackgroundIsPaintedByTheControlLibrary)
{
    const HDC screen = GetDC(nullptr), dc = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, 30, 30);
    const HGDIOBJ old = SelectObject(dc, bitmap);
    EXPECT_NE(0, SendMessageA(palette, WM_ERASEBKGND, (WPARAM)dc, 0));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), GetPixel(dc, 20, 20));
    SelectObject(dc, old);
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
}

static bool propertyLeft;

static LRESULT CALLBACK lookAtTheEnd(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCDESTROY) propertyLeft = GetPropA(window, "left behind") != nullptr;
    return DefDlgProcA(window, message, wParam, lParam);
}

TEST_F(PaletteDetails, RemovesEveryPropertyAtTheEnd)
{
    SetPropA(palette, "left behind", (HANDLE)1);
    SetWindowLongPtrA(palette, GWLP_WNDPROC, (LONG_PTR)lookAtTheEnd);
    propertyLeft = true;
    DestroyWindow(palette);
    session->paletteDialog = nullptr;
    EXPECT_FALSE(propertyLeft);
}
