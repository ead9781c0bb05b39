#include "canvas/tool_input.h"

#include "canvas/colour_pick.h"
#include "canvas/painting_input.h"
#include "canvas/view/cursor_outline.h"
#include "selection/selection.h"
#include "session/ground/tool_table.h"
#include "text/text_tool.h"

namespace {

void moveSelection(HWND canvas, POINT, POINT to)
{
    moveSelectionPointer(canvas, to);
}

void releaseReshaping(HWND, POINT)
{
    releaseOutlineBrush();
}

void clickText(HWND canvas, POINT at)
{
    textClick(canvas, at.x, at.y);
}

void pressColours(HWND, POINT at)
{
    pickColourAtPress(at);
}

void moveColours(HWND, POINT, POINT to)
{
    pickColourAtMove(to);
}

// The outline's colour follows the one that was picked.
void releaseColours(HWND canvas, POINT)
{
    rebuildOutline(canvas, 0);
}

const ToolInput inputs[] = {
    {TOOL_BRUSH, pressBrush, continueStroke, nullptr},
    {TOOL_RUBBER, pressPaintingTool, continueStroke, nullptr},
    {TOOL_SMOOTH, pressPaintingTool, continueStroke, nullptr},
    {TOOL_AEROGRAPHE, pressAerographe, continueStroke, releaseAerographe},
    {TOOL_SPOONBILL, pressSpoonbill, continueStroke, nullptr},
    {TOOL_STAMP, pressStamp, nullptr, nullptr},
    {TOOL_SELECTION, pressSelection, moveSelection, releaseSelection},
    {TOOL_OUTLINE_BRUSH, pressOutlineBrush, nullptr, releaseReshaping},
    {TOOL_TEXT, clickText, nullptr, nullptr},
    {TOOL_COLORS, pressColours, moveColours, releaseColours},
};

const ToolInput noInput = {};

}  // namespace

const ToolInput& inputOf(uint32_t tool)
{
    for (const ToolInput& row : inputs) {
        if (row.tool == tool) return row;
    }
    return noInput;
}
