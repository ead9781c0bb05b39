#include "canvas/pointer_input.h"

#include "canvas/colour_pick.h"
#include "canvas/view/cursor_outline.h"
#include "image/packed_bitmap.h"
#include "selection/selection.h"
#include "selection/selection_view.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "text/text_tool.h"
#include "tools/painting/dab_engine.h"
#include "tools/painting/stroke_start.h"
#include "tools/painting/undo_history.h"

namespace {

void resetDirtyBox(POINT at)
{
    session->dirtyBox = {at.x, at.x, at.y, at.y};
}

// Tools whose press or release becomes an undo step: only they need the image as it was.
bool pushesUndo(uint32_t tool)
{
    return tool >= TOOL_BRUSH && tool <= TOOL_SPOONBILL;
}

// Tools whose whole stroke is registered at the release. (Stamp registers each press.)
bool pushesUndoAtRelease(uint32_t tool)
{
    return pushesUndo(tool) && tool != TOOL_STAMP;
}

// The dab centres grown by half a brush and a fixed margin: the bottom gets one pixel more, on purpose.
RECT grownDirtyBox(int halfWidth, int halfHeight, int margin)
{
    const DirtyBox& box = session->dirtyBox;
    return {box.minX - halfWidth - margin, box.minY - halfHeight - margin, box.maxX + halfWidth + margin,
            box.maxY + halfHeight + margin + 1};
}

void pressAerographe(HWND canvas)
{
    SetTimer(canvas, SPRAY_TIMER, (session->brushWidth + session->brushHeight) * 2 + 55, nullptr);
}

void dropPickedPatch()
{
    if (session->maskCache) GlobalFree(session->maskCache);
    session->maskCache = nullptr;
}

void pressStamp()
{
    if (!session->maskCache) return;  // this press only picks the patch up
    const RECT stamped = grownDirtyBox((int)session->brushWidth / 2, (int)session->brushHeight / 2, 0);
    pushUndoStep(&stamped);
}

void beginPress(HWND canvas, POINT at)
{
    SetCapture(canvas);
    session->pressActive = 1;
    session->strokePoint = session->strokePrevPoint = at;
    resetDirtyBox(at);
    if (pushesUndo(session->currentTool)) takeUndoSnapshot();
    if (session->currentTool != TOOL_OUTLINE_BRUSH) hideOutline(canvas);
}

void pressPaintingTool(HWND canvas, POINT at)
{
    session->clickPoints[0] = session->clickPoints[1] = at;
    switch (session->currentTool) {
    case TOOL_AEROGRAPHE: pressAerographe(canvas); break;
    case TOOL_SPOONBILL: dropPickedPatch(); break;
    case TOOL_STAMP: pressStamp(); break;
    case TOOL_BRUSH: beginStroke(); break;
    }
    paintSegmentOfStroke(canvas);
}

void registerStroke()
{
    const int scale = (int)session->maskScale;
    const RECT stroke = grownDirtyBox((int)session->brushWidth / 2 * scale, (int)session->brushHeight / 2 * scale, 1);
    pushUndoStep(&stroke);
}

}  // namespace

void paintSegmentOfStroke(HWND canvas)
{
    const POINT from = session->strokePoint, to = session->strokePrevPoint;
    strokeTo(canvas, from.x, from.y, to.x, to.y);
}

void pressButton(HWND canvas, POINT at)
{
    if (!session->mouseInside) return;
    beginPress(canvas, at);
    switch (session->currentTool) {
    case TOOL_SELECTION: pressSelection(canvas, at); return;
    case TOOL_OUTLINE_BRUSH:
        session->clickPoints[0] = session->clickPoints[1] = at;
        pressOutlineBrush(canvas, at);
        return;
    case TOOL_COLORS:
        session->clickPoints[0] = session->clickPoints[1] = at;
        pickColourAtPress(at);
        return;
    case TOOL_TEXT:
        session->clickPoints[0] = session->clickPoints[1] = at;
        textClick(canvas, at.x, at.y);
        return;
    default: pressPaintingTool(canvas, at); return;
    }
}

void movePointer(HWND canvas, POINT at, bool buttonDown)
{
    if (!session->mouseInside) return;
    if (session->overlayHideCount > 0) trackOutline(canvas);
    if (!buttonDown) return;
    session->strokePrevPoint = session->strokePoint;
    session->strokePoint = at;
    switch (session->currentTool) {
    case TOOL_SELECTION: moveSelectionPointer(canvas, at); return;
    case TOOL_COLORS: pickColourAtMove(at); return;
    case TOOL_OUTLINE_BRUSH:
    case TOOL_STAMP: return;  // these act at the press only
    default:
        // Without a press of its own, or after the capture was lost, nothing would register what it paints.
        if (session->pressActive) paintSegmentOfStroke(canvas);
        return;
    }
}

void releaseButton(HWND canvas, POINT at)
{
    const uint32_t tool = session->currentTool;
    const bool pressed = session->pressActive != 0;
    session->pressActive = 0;
    session->strokePoint = session->strokePrevPoint = at;
    session->clickPoints[1] = at;
    // A release whose press went elsewhere ends no stroke: there is nothing to register.
    if (pressed && pushesUndoAtRelease(tool)) registerStroke();
    if (tool == TOOL_AEROGRAPHE) KillTimer(canvas, SPRAY_TIMER);
    if (tool == TOOL_COLORS) rebuildOutline(canvas, 0);
    if (tool == TOOL_SELECTION) releaseSelection(canvas, at);
    if (tool == TOOL_OUTLINE_BRUSH) {
        releaseOutlineBrush();
    } else {
        showOutline(canvas);
    }
    if (GetCapture() == canvas) ReleaseCapture();  // not when another window has taken it away
}

bool cancelPress(HWND canvas)
{
    if (!cancelSelectionDrag(canvas)) return session->pressActive != 0;
    session->pressActive = 0;
    showOutline(canvas);
    if (GetCapture() == canvas) ReleaseCapture();
    return true;
}

void losePress(HWND canvas, HWND newOwner)
{
    if (newOwner != canvas && session->pressActive) releaseButton(canvas, session->strokePoint);
}
