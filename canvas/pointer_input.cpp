#include "canvas/pointer_input.h"

#include "canvas/painting_input.h"
#include "canvas/tool_input.h"
#include "canvas/view/cursor_outline.h"
#include "selection/selection_view.h"
#include "session/ground/session_record.h"
#include "tools/painting/stroke_start.h"

// What the canvas itself does for a tool; nothing for one that there is not.
static Tool currentTool()
{
    const Tool* const tool = findTool(session->currentTool);
    return tool ? *tool : Tool{};
}

static void beginPress(HWND canvas, const Tool& tool, POINT at)
{
    SetCapture(canvas);
    session->pressActive = 1;
    session->strokePoint = session->strokePrevPoint = at;
    session->dirtyBox = {at.x, at.x, at.y, at.y};
    if (tool.id != TOOL_SELECTION) session->clickPoints[0] = session->clickPoints[1] = at;
    if (tool.undo != UNDO_NEVER) takeUndoSnapshot();
    if (!tool.outlineWhilePressed) hideOutline(canvas);
}

void pressButton(HWND canvas, POINT at)
{
    if (!session->mouseInside) return;
    beginPress(canvas, currentTool(), at);
    const ToolInput& input = inputOf(session->currentTool);
    if (input.press) input.press(canvas, at);
}

void movePointer(HWND canvas, POINT at, bool buttonDown)
{
    if (!session->mouseInside) return;
    if (session->overlayHideCount > 0) trackOutline(canvas);
    if (!buttonDown) return;
    const POINT from = session->strokePoint;
    session->strokePrevPoint = from;
    session->strokePoint = at;
    const ToolInput& input = inputOf(session->currentTool);
    if (input.move) input.move(canvas, from, at);
}

void releaseButton(HWND canvas, POINT at)
{
    const Tool tool = currentTool();
    const ToolInput& input = inputOf(session->currentTool);
    const bool pressed = session->pressActive != 0;
    session->pressActive = 0;
    session->strokePoint = session->strokePrevPoint = at;
    session->clickPoints[1] = at;
    // A release whose press went elsewhere ends no stroke: there is nothing to register.
    if (pressed && tool.undo == UNDO_AT_RELEASE) registerStroke();
    if (input.release) input.release(canvas, at);
    if (!tool.outlineWhilePressed) showOutline(canvas);
    if (GetCapture() == canvas) ReleaseCapture();  // not when another window has taken it away
}

bool cancelPress(HWND canvas)
{
    if (!cancelSelectionDrag(canvas)) return session->pressActive != 0;
    session->pressActive = 0;  // the capture stays, so that the button's release is heard and ends the rest
    return true;
}

void losePress(HWND canvas, HWND newOwner)
{
    if (newOwner != canvas && session->pressActive) releaseButton(canvas, session->strokePoint);
}
