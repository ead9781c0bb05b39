// What the palette's buttons do.
#include <windows.h>
#include <commdlg.h>

#include "canvas/view/canvas_press.h"
#include "canvas/view/cursor_outline.h"
#include "color/contrast_dialog.h"
#include "image/original_image.h"
#include "library/library_dialog.h"
#include "resources/resource_ids.h"
#include "selection/selection.h"
#include "session/ground/module_state.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "text/text_tool.h"
#include "tools/brush/brush_mask.h"
#include "tools/brush/brush_preview.h"
#include "tools/palette/palette_controls.h"
#include "tools/painting/undo_history.h"

namespace {

struct ToolCursor {
    uint32_t tool;
    int cursorId;
};

const ToolCursor toolCursors[] = {
    {TOOL_OUTLINE_BRUSH, CURSOR_OUTLINE_BRUSH},
    {TOOL_SELECTION, CURSOR_SELECTION},
    {TOOL_BRUSH, CURSOR_BRUSH},
    {TOOL_RUBBER, CURSOR_RUBBER},
    {TOOL_AEROGRAPHE, CURSOR_AEROGRAPHE},
    {TOOL_STAMP, CURSOR_STAMP},
    {TOOL_SMOOTH, CURSOR_SMOOTH},
    {TOOL_SPOONBILL, CURSOR_SPOONBILL},
    {TOOL_TEXT, CURSOR_TEXT},
    {TOOL_COLORS, CURSOR_COLORS},
};

void setToolCursor(uint32_t tool)
{
    for (const ToolCursor& row : toolCursors) {
        if (row.tool != tool) continue;
        const HCURSOR cursor = LoadCursorA(moduleInstance, MAKEINTRESOURCEA(row.cursorId));
        ShowCursor(FALSE);
        SetClassLongPtrA(session->canvasWindow, GCLP_HCURSOR, (LONG_PTR)cursor);
        ShowCursor(TRUE);
    }
}

bool paintsWithOutline(uint32_t tool)
{
    return tool >= TOOL_OUTLINE_BRUSH && tool <= TOOL_SPOONBILL && tool != TOOL_SELECTION;
}

bool keepsSettings(uint32_t tool)
{
    return tool >= TOOL_OUTLINE_BRUSH && tool <= TOOL_TEXT;
}

void hideOutlineOnce()
{
    if (session->overlayHideCount >= 0) hideOutline(session->canvasWindow);
}

void hideOutlineFully()
{
    while (session->overlayHideCount >= 0)
        hideOutline(session->canvasWindow);
}

void unhideOutline()
{
    while (session->overlayHideCount < 0)
        showOutline(session->canvasWindow);
}

// A command that is not the current tool: the settings of the tool being left are kept, those of the
// one chosen become the current ones. Contrast is no tool to work with, and Colors keeps no settings.
void switchSettings(HWND palette, uint32_t id)
{
    if (id == session->currentTool) return;
    if (keepsSettings(session->currentTool)) saveToolSettings(session->currentTool);
    if (session->currentTool != TOOL_COLORS && id != TOOL_CONTRAST) loadToolSettings(palette, id);
    if (paintsWithOutline(id)) unhideOutline();
}

void postCloseToHost()
{
    PostMessageA(session->hostDialog, WM_CLOSE, 0, 0);
}

void closeSession(HWND, int)
{
    giveBackOriginal();
    postCloseToHost();
    sessionResult = 0;
    sessionExtras.leaving = LEAVING_CLOSED;
}

void saveSession(HWND, int)
{
    postCloseToHost();
    sessionResult = 1;
    sessionExtras.leaving = LEAVING_SAVED;
}

void adjustContrast(HWND palette, int id)
{
    clearSelection();
    hideOutline(session->canvasWindow);
    openContrastDialog(palette, id);
    CheckDlgButton(palette, id, BST_UNCHECKED);
    if (session->currentTool) {
        CheckRadioButton(palette, BUTTON_FIRST_TOOL, BUTTON_LAST_TOOL, (int)session->currentTool);
    }
    showOutline(session->canvasWindow);
}

void makeCurrent(uint32_t tool)
{
    session->currentTool = tool;
    rebuildOutline(session->canvasWindow, 1);
    setToolCursor(tool);
}

void chooseOutlineBrush(HWND, int id)
{
    makeCurrent((uint32_t)id);
}

void chooseSelection(HWND, int id)
{
    session->currentTool = (uint32_t)id;
    setToolCursor(session->currentTool);
    hideOutlineOnce();
}

void choosePaintingTool(HWND, int id)
{
    clearSelection();
    makeCurrent((uint32_t)id);
}

void chooseText(HWND palette, int id)
{
    if (session->currentTool == TOOL_TEXT) {
        hideOutline(session->canvasWindow);
        chooseTextFont(palette);
        invalidateBrushPreview();
        showOutline(session->canvasWindow);
        return;
    }
    clearSelection();
    makeCurrent((uint32_t)id);
    invalidateBrushPreview();
    hideOutlineOnce();
}

// Custom colours are not kept from call to call: each call offers the paint colour sixteen times.
COLORREF chosenColour(HWND palette)
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

void chooseColours(HWND palette, int id)
{
    if (session->currentTool != TOOL_COLORS) {
        session->currentTool = (uint32_t)id;
        setToolCursor(session->currentTool);
        hideOutlineOnce();
        return;
    }
    hideOutline(session->canvasWindow);
    session->paintColour = chosenColour(palette);
    rebuildOutline(session->canvasWindow, 1);
    invalidateBrushPreview();
    hideOutlineFully();
}

void toggleLibrary(HWND palette, int id)
{
    showLibraryDialog(IsDlgButtonChecked(palette, id) == BST_CHECKED, session->hostDialog);
}

void undo(HWND, int)
{
    applyUndo(UNDO);
}

void redo(HWND, int)
{
    applyUndo(REDO);
}

void chooseShape(HWND palette, int id)
{
    if (session->currentTool == TOOL_OUTLINE_BRUSH && id == BUTTON_RECTANGLE) {
        CheckRadioButton(palette, BUTTON_CIRCLE, BUTTON_RECTANGLE, BUTTON_CIRCLE);
        return;
    }
    session->brushShape = id == BUTTON_CIRCLE ? SHAPE_CIRCLE : SHAPE_RECTANGLE;
    saveToolSettings(session->currentTool);
    if (session->maskCache) GlobalFree(session->maskCache);
    session->maskCache = nullptr;
    buildBrushMask((int)session->brushWidth, (int)session->brushHeight);
    rebuildOutline(session->canvasWindow, 0);
    invalidateBrushPreview();
}

void chooseEdge(HWND, int id)
{
    session->edgeMode = id == BUTTON_EDGE_FULL ? EDGE_FULL : EDGE_SMOOTH;
}

struct Command {
    int id;
    void (*run)(HWND palette, int id);
};

const Command commands[] = {
    {BUTTON_CLOSE, closeSession},
    {BUTTON_SAVE, saveSession},
    {BUTTON_CONTRAST, adjustContrast},
    {TOOL_OUTLINE_BRUSH, chooseOutlineBrush},
    {BUTTON_SELECTION, chooseSelection},
    {BUTTON_BRUSH, choosePaintingTool},
    {BUTTON_RUBBER, choosePaintingTool},
    {BUTTON_AEROGRAPHE, choosePaintingTool},
    {BUTTON_STAMP, choosePaintingTool},
    {BUTTON_SMOOTH, choosePaintingTool},
    {BUTTON_SPOONBILL, choosePaintingTool},
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

}  // namespace

void runPaletteCommand(HWND palette, int id)
{
    if (sessionExtras.leaving != LEAVING_UNDECIDED) return;  // Close and Save are the last word
    endCanvasPress();
    switchSettings(palette, (uint32_t)id);
    endText(session->canvasWindow);
    for (const Command& command : commands) {
        if (command.id == id) return command.run(palette, id);
    }
}
