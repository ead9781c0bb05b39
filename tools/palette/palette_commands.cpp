// What the palette's buttons do.
#include <windows.h>
#include <commdlg.h>

#include "canvas/view/canvas_press.h"
#include "canvas/view/cursor_outline.h"
#include "color/contrast_dialog.h"
#include "image/original_image.h"
#include "library/library_dialog.h"
#include "resources/resource_ids.h"
#include "selection/clear_selection.h"
#include "session/ground/module_state.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "text/font_dialog.h"
#include "text/text_tool.h"
#include "tools/brush/brush_mask.h"
#include "tools/brush/brush_preview.h"
#include "tools/brush/picked_patch.h"
#include "tools/palette/palette_controls.h"
#include "tools/painting/undo_history.h"

static void setToolCursor(const Tool& tool)
{
    const HCURSOR cursor = LoadCursorA(moduleInstance, MAKEINTRESOURCEA(tool.cursorId));
    ShowCursor(FALSE);
    SetClassLongPtrA(session->canvasWindow, GCLP_HCURSOR, (LONG_PTR)cursor);
    ShowCursor(TRUE);
}

static void hideOutlineOnce()
{
    if (session->overlayHideCount >= 0) hideOutline(session->canvasWindow);
}

static void hideOutlineFully()
{
    while (session->overlayHideCount >= 0)
        hideOutline(session->canvasWindow);
}

static void unhideOutline()
{
    while (session->overlayHideCount < 0)
        showOutline(session->canvasWindow);
}

// A command that is not the current tool: the settings of the tool being left are kept, those of the
// one chosen become the current ones. Contrast is no tool to work with, and Colors keeps no settings.
static void switchSettings(HWND palette, uint32_t id)
{
    if (id == session->currentTool) return;
    saveToolSettings(session->currentTool);
    if (session->currentTool != TOOL_COLORS && id != TOOL_CONTRAST) loadToolSettings(palette, id);
    const Tool* const tool = findTool(id);
    if (tool && tool->start.showOutline) unhideOutline();
}

static void postCloseToHost()
{
    PostMessageA(session->hostDialog, WM_CLOSE, 0, 0);
}

static void closeSession(HWND, int)
{
    giveBackOriginal();
    postCloseToHost();
    sessionResult = 0;
    sessionExtras.leaving = LEAVING_CLOSED;
}

static void saveSession(HWND, int)
{
    postCloseToHost();
    sessionResult = 1;
    sessionExtras.leaving = LEAVING_SAVED;
}

static void adjustContrast(HWND palette, int id)
{
    clearSelection();
    hideOutline(session->canvasWindow);
    openContrastDialog(palette, id);
    if (!sessionGoesOn()) return;
    CheckDlgButton(palette, id, BST_UNCHECKED);
    if (session->currentTool) {
        CheckRadioButton(palette, BUTTON_FIRST_TOOL, BUTTON_LAST_TOOL, (int)session->currentTool);
    }
    showOutline(session->canvasWindow);
}

static void makeCurrent(const Tool& tool)
{
    if (tool.clearsSelection) clearSelection();
    session->currentTool = tool.id;
    rebuildOutline(session->canvasWindow, 1);
    setToolCursor(tool);
}

// Tools that show no brush: it stays as it is, out of sight.
static void makeCurrentWithoutOutline(const Tool& tool)
{
    session->currentTool = tool.id;
    setToolCursor(tool);
    hideOutlineOnce();
}

static void chooseSelection(HWND, int)
{
    makeCurrentWithoutOutline(*findTool(TOOL_SELECTION));
}

static void chooseText(HWND palette, int)
{
    if (session->currentTool == TOOL_TEXT) {
        hideOutline(session->canvasWindow);
        chooseTextFont(palette);
        if (!sessionGoesOn()) return;
        invalidateBrushPreview();
        showOutline(session->canvasWindow);
        return;
    }
    makeCurrent(*findTool(TOOL_TEXT));
    invalidateBrushPreview();
    hideOutlineOnce();
}

// Custom colours are not kept from call to call: each call offers the paint colour sixteen times.
static COLORREF chosenColour(HWND palette)
{
    COLORREF custom[16];
    for (COLORREF& colour : custom)
        colour = session->paintColour;
    CHOOSECOLORA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = palette;
    dialog.rgbResult = session->paintColour;
    dialog.lpCustColors = custom;
    dialog.Flags = CC_RGBINIT | CC_FULLOPEN;
    return ChooseColorA(&dialog) ? dialog.rgbResult : session->paintColour;
}

static void chooseColours(HWND palette, int)
{
    if (session->currentTool != TOOL_COLORS) return makeCurrentWithoutOutline(*findTool(TOOL_COLORS));
    hideOutline(session->canvasWindow);
    const COLORREF chosen = chosenColour(palette);
    if (!sessionGoesOn()) return;
    session->paintColour = chosen;
    rebuildOutline(session->canvasWindow, 1);
    invalidateBrushPreview();
    hideOutlineFully();
}

static void toggleLibrary(HWND palette, int id)
{
    showLibraryDialog(IsDlgButtonChecked(palette, id) == BST_CHECKED, session->hostDialog);
}

static void undo(HWND, int)
{
    applyUndo(UNDO);
}

static void redo(HWND, int)
{
    applyUndo(REDO);
}

static void chooseShape(HWND palette, int id)
{
    if (session->currentTool == TOOL_OUTLINE_BRUSH && id == BUTTON_RECTANGLE) {
        CheckRadioButton(palette, BUTTON_CIRCLE, BUTTON_RECTANGLE, BUTTON_CIRCLE);
        return;
    }
    session->brushShape = id == BUTTON_CIRCLE ? SHAPE_CIRCLE : SHAPE_RECTANGLE;
    saveToolSettings(session->currentTool);
    dropPickedPatch();
    buildBrushMask((int)session->brushWidth, (int)session->brushHeight);
    rebuildOutline(session->canvasWindow, 0);
    invalidateBrushPreview();
}

static void chooseEdge(HWND, int id)
{
    session->edgeMode = id == BUTTON_EDGE_FULL ? EDGE_FULL : EDGE_SMOOTH;
}

// Everything but tools that a click simply makes current.
struct PaletteCommand {
    int id;
    void (*run)(HWND palette, int id);
};

static const PaletteCommand commands[] = {
    {BUTTON_CLOSE, closeSession},
    {BUTTON_SAVE, saveSession},
    {BUTTON_CONTRAST, adjustContrast},
    {BUTTON_SELECTION, chooseSelection},
    {BUTTON_TEXT, chooseText},
    {BUTTON_COLORS, chooseColours},
    {BUTTON_LIBRARY, toggleLibrary},
    {BUTTON_UNDO, undo},
    {BUTTON_REDO, redo},
    {BUTTON_CIRCLE, chooseShape},
    {BUTTON_RECTANGLE, chooseShape},
    {BUTTON_EDGE_FULL, chooseEdge},
    {BUTTON_EDGE_SMOOTH, chooseEdge},
};

void runPaletteCommand(HWND palette, int id)
{
    if (sessionExtras.leaving != LEAVING_UNDECIDED) return;  // Close and Save are the last word
    // Under a dialog of its own only a message from outside can command it; that must not open a second one.
    if (!IsWindowEnabled(palette) && id != BUTTON_CLOSE && id != BUTTON_SAVE) return;
    endCanvasPress();
    switchSettings(palette, (uint32_t)id);
    endText(session->canvasWindow);
    for (const PaletteCommand& command : commands) {
        if (command.id == id) return command.run(palette, id);
    }
    if (const Tool* const tool = findTool((uint32_t)id)) makeCurrent(*tool);
}
