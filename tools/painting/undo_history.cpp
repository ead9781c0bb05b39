#include "tools/painting/undo_history.h"

#include <algorithm>

#include "canvas/view/canvas_coordinates.h"
#include "image/bitmap_locks.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"
#include "image/pixels/pixel_ops.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "tools/painting/stroke_start.h"

static HGLOBAL stepsBlock()
{
    return GlobalHandle(session->undoSteps);
}

static int stepCapacity()
{
    return session->undoSteps ? (int)(GlobalSize(stepsBlock()) / sizeof(UndoStep)) : 0;
}

static void freeSteps()
{
    if (!session->undoSteps) return;
    const HGLOBAL block = stepsBlock();
    GlobalUnlock(block);
    GlobalFree(block);
    session->undoSteps = nullptr;
}

constexpr int STEPS_AT_A_TIME = 256;

// The old list stays until the new one is locked: neither can get lost.
static bool growSteps(int count)
{
    if (count <= stepCapacity()) return true;
    const int capacity = (count / STEPS_AT_A_TIME + 1) * STEPS_AT_A_TIME;
    const HGLOBAL block = takeUnkeptBlock(GMEM_MOVEABLE, (SIZE_T)capacity * sizeof(UndoStep));
    UndoStep* const steps = block ? (UndoStep*)GlobalLock(block) : nullptr;
    if (!steps) {
        if (block) GlobalFree(block);
        return false;
    }
    std::copy_n(session->undoSteps, session->undoCount, steps);
    freeSteps();
    session->undoSteps = steps;
    return true;
}

static void freePatches(int from)
{
    for (int i = from; i < session->undoCount; ++i) {
        if (session->undoSteps[i].patch) GlobalFree(session->undoSteps[i].patch);
        session->undoSteps[i].patch = nullptr;
    }
}

static RECT clampedToImage(const RECT& rect, int width, int height)
{
    return {rect.left > 0 ? rect.left : 0, rect.top > 0 ? rect.top : 0, rect.right < width ? rect.right : width,
            rect.bottom < height ? rect.bottom : height};
}

static bool makeRoomForStep()
{
    if (session->undoSteps) {
        if (session->undoPosition < 0) session->undoPosition = 0;
        freePatches(session->undoPosition);
        // The freed steps are gone even when the array cannot grow.
        if (session->undoCount > session->undoPosition) session->undoCount = session->undoPosition;
    } else {
        session->undoPosition = session->undoCount = 0;
    }
    if (!growSteps(session->undoPosition + 1)) return false;
    session->undoCount = session->undoPosition + 1;
    return true;
}

static bool exchangeWithImage(const UndoStep& step)
{
    const LockedPixels image(editedImage()), patch(step.patch);
    return image && patch && exchangePixels(image.view, patch.view, (int)step.rect.left, (int)step.rect.top);
}

// The step's patch and the image's rectangle change places, which takes no memory. Where they cannot, the step is
// neither undone nor redone.
static bool swapWithImage(const UndoStep& step)
{
    if (!exchangeWithImage(step)) return false;
    if (session->canvasWindow) invalidateImageRect(session->canvasWindow, step.rect);
    return true;
}

static void undoStep()
{
    // Stays negative after too many undos; the next redo starts at the first step.
    const int position = std::min(session->undoPosition - 1, session->undoCount - 1);
    if (position < 0 || swapWithImage(session->undoSteps[position])) session->undoPosition = position;
}

static void redoStep()
{
    const int position = std::max(session->undoPosition, 0);
    if (position < session->undoCount && swapWithImage(session->undoSteps[position])) {
        session->undoPosition = position + 1;
    }
}

static WaitingStep& waiting = sessionExtras.press.step;

static int placeOf(const WaitingStep& step)
{
    return std::max(step.position, 0);
}

static void hideRedo()
{
    const int place = placeOf(waiting);
    if (place >= session->undoCount) return;
    waiting.replaced = session->undoSteps[place];
    session->undoCount = place;
}

static int pushStep(const RECT* rect)
{
    int width, height;
    if (!lockBitmapInfo(editedImage(), &width, &height, nullptr)) return 0;
    const RECT clamped = clampedToImage(*rect, width, height);
    const HGLOBAL patch = cutFromSnapshot(clamped);
    if (!patch) return 0;
    if (!makeRoomForStep()) {
        GlobalFree(patch);
        return 0;
    }
    session->undoSteps[session->undoPosition++] = {session->currentTool, clamped, patch};
    return 1;
}

int pushUndoStep(const RECT* rect)
{
    settleUndoStep();
    return pushStep(rect);
}

int pushUndoStepAtPress(const RECT* rect)
{
    settleUndoStep();
    waiting = {true, session->undoPosition, session->undoCount, {}};
    hideRedo();
    const int pushed = pushStep(rect);
    if (!pushed) {
        session->undoPosition = waiting.position;
        session->undoCount = waiting.count;
        waiting = {};
    }
    return pushed;
}

void settleUndoStep()
{
    if (!waiting.waits) return;
    if (waiting.replaced.patch) GlobalFree(waiting.replaced.patch);
    for (int i = placeOf(waiting) + 1; i < waiting.count; ++i)
        GlobalFree(session->undoSteps[i].patch);
    waiting = {};
}

void takeBackUndoStep()
{
    if (!waiting.waits) return;
    const int place = placeOf(waiting);
    GlobalFree(session->undoSteps[place].patch);
    session->undoSteps[place] = waiting.replaced;
    session->undoPosition = waiting.position;
    session->undoCount = waiting.count;
    waiting = {};
}

int applyUndo(int direction)
{
    settleUndoStep();
    if (session->undoCount <= 0 || !session->undoSteps) return 0;
    if (direction == UNDO) {
        undoStep();
    } else {
        redoStep();
    }
    return 1;
}

void freeUndoHistory()
{
    settleUndoStep();
    if (session->undoSteps) freePatches(0);
    freeSteps();
    session->undoPosition = session->undoCount = 0;
}
