#include "canvas/pointer_input.h"

#include "canvas/overview_map.h"
#include "canvas/painting_input.h"
#include "canvas/tool_input.h"
#include "canvas/view/cursor_outline.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "tools/painting/stroke_start.h"

// What the canvas itself does for a tool; nothing for one that there is not.
static Tool currentTool()
{
    const Tool* const tool = findTool(session->currentTool);
    return tool ? *tool : Tool{};
}

static void notePressStart()
{
    sessionExtras.press.takenBack = false;
    sessionExtras.press.start = {
        session->strokePoint,        session->strokePrevPoint, {session->clickPoints[0], session->clickPoints[1]},
        session->dirtyBox,           session->paintColour,     session->previousColour,
        session->reshapeFromOutside, session->reshapeRect,     session->reshapeHomeRect};
}

static void restorePressStart()
{
    const PressStart& start = sessionExtras.press.start;
    session->strokePoint = start.strokePoint;
    session->strokePrevPoint = start.strokePrevPoint;
    session->clickPoints[0] = start.clickPoints[0];
    session->clickPoints[1] = start.clickPoints[1];
    session->dirtyBox = start.dirtyBox;
    session->paintColour = start.paintColour;
    session->previousColour = start.previousColour;
    session->reshapeFromOutside = start.reshapeFromOutside;
    session->reshapeRect = start.reshapeRect;
    session->reshapeHomeRect = start.reshapeHomeRect;
}

static void beginPress(HWND canvas, const Tool& tool, POINT at)
{
    SetCapture(canvas);
    notePressStart();
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
    if (!buttonDown || sessionExtras.press.takenBack) return;
    const POINT from = session->strokePoint;
    session->strokePrevPoint = from;
    session->strokePoint = at;
    const ToolInput& input = inputOf(session->currentTool);
    if (input.move) input.move(canvas, from, at);
}

void releaseButton(HWND canvas, POINT at)
{
    if (sessionExtras.press.takenBack) {  // this is its button: nothing is left to end
        sessionExtras.press.takenBack = false;
        return;
    }
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
    if (!session->pressActive) return false;
    const ToolInput& input = inputOf(session->currentTool);
    if (!input.cancel || !input.cancel(canvas)) return true;
    restorePressStart();
    session->pressActive = 0;
    sessionExtras.press.takenBack = true;
    repaintOverviewMap(canvas);
    if (!currentTool().outlineWhilePressed) showOutline(canvas);
    if (GetCapture() == canvas) ReleaseCapture();
    UpdateWindow(canvas);
    return true;
}

void losePress(HWND canvas, HWND newOwner)
{
    if (newOwner != canvas && session->pressActive) releaseButton(canvas, session->strokePoint);
}
