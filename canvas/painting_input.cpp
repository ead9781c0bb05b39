#include "canvas/painting_input.h"

#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/cursor_outline.h"
#include "session/ground/session_record.h"
#include "tools/brush/picked_patch.h"
#include "tools/painting/dab_engine.h"
#include "tools/painting/stroke_start.h"
#include "tools/painting/undo_history.h"

// The dab centres grown by half a brush and a fixed margin. The bottom gets one pixel more: undo steps have always
// had that rectangle.
static RECT grownDirtyBox(int halfWidth, int halfHeight, int margin)
{
    const DirtyBox& box = session->dirtyBox;
    return {box.minX - halfWidth - margin, box.minY - halfHeight - margin, box.maxX + halfWidth + margin,
            box.maxY + halfHeight + margin + 1};
}

void pressPaintingTool(HWND canvas, POINT at)
{
    strokeTo(canvas, at, at);
}

void pressBrush(HWND canvas, POINT at)
{
    beginStroke();
    strokeTo(canvas, at, at);
}

void pressAerographe(HWND canvas, POINT at)
{
    SetTimer(canvas, SPRAY_TIMER, (session->brushWidth + session->brushHeight) * 2 + 55, nullptr);
    strokeTo(canvas, at, at);
}

void pressStamp(HWND canvas, POINT at)
{
    if (session->maskCache) {  // without a patch this press only picks one up
        const RECT stamped = grownDirtyBox((int)session->brushWidth / 2, (int)session->brushHeight / 2, 0);
        pushUndoStepAtPress(&stamped);
    } else {
        setPickedPatchAside();
    }
    strokeTo(canvas, at, at);
}

void pressSpoonbill(HWND canvas, POINT at)
{
    setPickedPatchAside();
    strokeTo(canvas, at, at);
}

// A segment is walked from the pointer's new place back to the one before. Tools that lay a single dab lay it at the
// segment's end: they lag one event behind the pointer, and a release paints no last dab.
void continueStroke(HWND canvas, POINT from, POINT to)
{
    // Without a press of its own, or after the capture was lost, nothing would register what it paints.
    if (session->pressActive) strokeTo(canvas, to, from);
}

// Between two events: where the pointer went is in the record.
void spray(HWND canvas)
{
    if (session->pressActive) strokeTo(canvas, session->strokePoint, session->strokePrevPoint);
}

void registerStroke()
{
    const int scale = (int)session->maskScale;
    const RECT stroke = grownDirtyBox((int)session->brushWidth / 2 * scale, (int)session->brushHeight / 2 * scale, 1);
    pushUndoStep(&stroke);
}

void releaseAerographe(HWND canvas, POINT)
{
    KillTimer(canvas, SPRAY_TIMER);
}

void releaseStamp(HWND, POINT)
{
    settleUndoStep();
    forgetPatchAside();
}

void releaseSpoonbill(HWND, POINT)
{
    forgetPatchAside();
}

bool cancelStroke(HWND canvas)
{
    const RECT changed = putBackStroke();
    invalidateImageRect(canvas, changed);
    return true;
}

bool cancelAerographe(HWND canvas)
{
    KillTimer(canvas, SPRAY_TIMER);
    return cancelStroke(canvas);
}

bool cancelPatchStroke(HWND canvas)
{
    takeBackUndoStep();
    takePatchBack();
    rebuildOutline(canvas, 0);
    return cancelStroke(canvas);
}
