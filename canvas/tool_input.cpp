#include "canvas/tool_input.h"

#include "canvas/colour_pick.h"
#include "canvas/painting_input.h"
#include "canvas/view/cursor_outline.h"
#include "selection/outline_brush_tool.h"
#include "selection/selection.h"
#include "selection/selection_view.h"
#include "session/ground/tool_table.h"
#include "text/text_tool.h"
#include "tools/brush/brush_preview.h"

static void moveSelection(HWND canvas, POINT, POINT to)
{
    moveSelectionPointer(canvas, to);
}

static void releaseReshaping(HWND, POINT)
{
    releaseOutlineBrush();
}

static void clickText(HWND canvas, POINT at)
{
    textClick(canvas, at.x, at.y);
}

static void pressColours(HWND, POINT at)
{
    pickColourAtPress(at);
}

static void moveColours(HWND, POINT, POINT to)
{
    pickColourAtMove(to);
}

// The outline's colour follows the one that was picked.
static void releaseColours(HWND canvas, POINT)
{
    rebuildOutline(canvas, 0);
}

static bool cancelReshaping(HWND)
{
    cancelOutlineBrush();
    return true;
}

static bool cancelColours(HWND)
{
    invalidateBrushPreview();  // the former colour comes back with the record
    return true;
}

static const ToolInput inputs[] = {
    {TOOL_BRUSH, pressBrush, continueStroke, nullptr, cancelStroke},
    {TOOL_RUBBER, pressPaintingTool, continueStroke, nullptr, cancelStroke},
    {TOOL_SMOOTH, pressPaintingTool, continueStroke, nullptr, cancelStroke},
    {TOOL_AEROGRAPHE, pressAerographe, continueStroke, releaseAerographe, cancelAerographe},
    {TOOL_SPOONBILL, pressSpoonbill, continueStroke, releaseSpoonbill, cancelPatchStroke},
    {TOOL_STAMP, pressStamp, nullptr, releaseStamp, cancelPatchStroke},
    {TOOL_SELECTION, pressSelection, moveSelection, releaseSelection, cancelSelectionDrag},
    {TOOL_OUTLINE_BRUSH, pressOutlineBrush, nullptr, releaseReshaping, cancelReshaping},
    {TOOL_TEXT, clickText, nullptr, nullptr, nullptr},
    {TOOL_COLORS, pressColours, moveColours, releaseColours, cancelColours},
};

static const ToolInput noInput = {};

const ToolInput& inputOf(uint32_t tool)
{
    for (const ToolInput& row : inputs) {
        if (row.tool == tool) return row;
    }
    return noInput;
}
