#include "tools/painting/undo_history.h"

#include "canvas/view/canvas_coordinates.h"
#include "image/packed_bitmap.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

namespace {

HGLOBAL stepsBlock()
{
    return GlobalHandle(session->undoSteps);
}

bool resizeSteps(int count)
{
    const SIZE_T size = (SIZE_T)count * sizeof(UndoStep);
    HGLOBAL block;
    if (session->undoSteps) {
        const HGLOBAL old = stepsBlock();
        GlobalUnlock(old);
        block = GlobalReAlloc(old, size, GMEM_MOVEABLE);
        if (!block) {
            session->undoSteps = (UndoStep*)GlobalLock(old);
            return false;
        }
    } else {
        block = GlobalAlloc(GMEM_MOVEABLE, size);
        if (!block) return false;
    }
    session->undoSteps = (UndoStep*)GlobalLock(block);
    return true;
}

void freePatches(int from)
{
    for (int i = from; i < session->undoCount; ++i) {
        if (session->undoSteps[i].patch) GlobalFree(session->undoSteps[i].patch);
        session->undoSteps[i].patch = nullptr;
    }
}

RECT clampedToImage(const RECT& rect, int width, int height)
{
    return {rect.left > 0 ? rect.left : 0, rect.top > 0 ? rect.top : 0, rect.right < width ? rect.right : width,
            rect.bottom < height ? rect.bottom : height};
}

bool makeRoomForStep()
{
    if (session->undoSteps) {
        if (session->undoPosition < 0) session->undoPosition = 0;
        freePatches(session->undoPosition);
        // The freed steps are gone even when the array cannot grow.
        if (session->undoCount > session->undoPosition) session->undoCount = session->undoPosition;
    } else {
        session->undoPosition = session->undoCount = 0;
    }
    if (!resizeSteps(session->undoPosition + 1)) return false;
    session->undoCount = session->undoPosition + 1;
    return true;
}

// The step's patch and the image's rectangle change places.
void swapWithImage(UndoStep& step)
{
    const HGLOBAL image = editedImage();
    const HGLOBAL current = extractRect(image, &step.rect);
    if (step.patch) {
        pasteRect(image, step.patch, &step.rect);
        GlobalFree(step.patch);
    }
    step.patch = current;
    if (session->canvasWindow) invalidateImageRect(session->canvasWindow, step.rect);
}

int undoStep()
{
    if (--session->undoPosition < 0) return 1;  // stays negative; the next redo starts at the first step
    if (session->undoPosition > session->undoCount - 1) session->undoPosition = session->undoCount - 1;
    swapWithImage(session->undoSteps[session->undoPosition]);
    return 1;
}

int redoStep()
{
    if (session->undoPosition >= session->undoCount) return 1;
    if (session->undoPosition < 0) session->undoPosition = 0;
    swapWithImage(session->undoSteps[session->undoPosition]);
    ++session->undoPosition;
    return 1;
}

}  // namespace

int pushUndoStep(const RECT* rect)
{
    int width, height;
    if (!lockBitmapInfo(editedImage(), &width, &height, nullptr)) return 0;
    const RECT clamped = clampedToImage(*rect, width, height);
    const HGLOBAL patch = extractRect(session->undoSnapshot, &clamped);
    if (!patch) return 0;
    if (!makeRoomForStep()) {
        GlobalFree(patch);
        return 0;
    }
    session->undoSteps[session->undoPosition++] = {session->currentTool, clamped, patch};
    return 1;
}

int applyUndo(int direction)
{
    if (session->undoCount <= 0 || !session->undoSteps) return 0;
    return direction == UNDO ? undoStep() : redoStep();
}

void freeUndoHistory()
{
    if (session->undoSteps) {
        freePatches(0);
        const HGLOBAL block = stepsBlock();
        GlobalUnlock(block);
        GlobalFree(block);
    }
    session->undoSteps = nullptr;
    session->undoPosition = session->undoCount = 0;
}
