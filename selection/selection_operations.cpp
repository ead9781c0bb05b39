#include "selection/selection_operations.h"

#include "image/bitmap_locks.h"
#include "selection/geometry/selection_images.h"
#include "selection/geometry/turn_angle.h"
#include "selection/clear_selection.h"
#include "selection/outline_drawing.h"
#include "selection/selection_drawing.h"
#include "selection/selection_frame.h"
#include "selection/selection_state.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

// ---- apply, flip, colours

static void apply(int)
{
    {
        const LockedPixels image(editedImage()), pixels(session->selectionImage), mask(session->selectionMask);
        const RECT& rect = session->selectionRect;
        if (image && pixels && mask) applySelection(image.view, pixels.view, mask.view, rect.left, rect.top);
    }
    redrawSelection();
}

static void flip(int hit)
{
    FloatingSelection flipped;
    if (!flipFloating(selectionState(STATE_NOW), hit == HIT_FLIP_VERTICAL, flipped)) return;
    if (changeSelection(flipped, RENEW_A | RENEW_B, 0)) redrawSelection();
}

static void close(int)
{
    clearSelection();
}

static void stepColour(int hit)
{
    ColourValues values = selectionColours();
    stepColourOfHit(values, hit);
    if (!adjustShownImage(values)) return;
    setSelectionColours(values);
    redrawSelection();
}

struct Operation {
    FrameOperation operation;
    void (*run)(int hit);
};

static const Operation operations[] = {
    {OPERATION_CLOSE, close},          {OPERATION_APPLY, apply},       {OPERATION_FLIP_VERTICAL, flip},
    {OPERATION_FLIP_HORIZONTAL, flip}, {OPERATION_COLOUR, stepColour},
};

void runSelectionOperation(HWND, int hit)
{
    if (!selectionFloats()) return;
    const FrameOperation wanted = operationOfHit(hit);
    for (const Operation& row : operations) {
        if (row.operation == wanted) return row.run(hit);
    }
}

// ---- move, resize, turn, reshape

// Only what is shown is cut: raised from the whole points, which come back unharmed.
static void showMovedPoints()
{
    for (int i = 0; i < session->outlinePointCount; ++i)
        session->outlinePoints[i] = session->outlineSnapshot[i];
    movePoints(session->outlinePoints, session->outlinePointCount, 0, 0);
}

// State A goes along, so that a later turn happens at the new place. State B stays where it was: a
// resize maps from its own rectangle to the new one, wherever that is.
void moveSelectionBy(int dx, int dy)
{
    if (!selectionFloats()) return;
    FloatingSelection now = selectionState(STATE_NOW), a = selectionState(STATE_A);
    moveFloating(now, dx, dy);
    moveFloating(a, dx, dy);
    session->selectionHomeRect = rectOf(now.rect);
    session->referenceRectA = rectOf(a.rect);
    showMovedPoints();
    setSelectionRect(now.rect);
    redrawSelection();
}

void resizeSelectionTo(const RECT& rect)
{
    if (!selectionFloats() || EqualRect(&rect, &session->selectionRect) || IsRectEmpty(&rect)) return;
    FloatingSelection resized;
    if (!resizeFloating(selectionState(STATE_B), pixelRectOf(rect), resized)) return;
    if (changeSelection(resized, RENEW_A, 0)) redrawSelection();
}

static bool turnFromA(int degrees, FloatingSelection& turned)
{
    const FloatingSelection a = selectionState(STATE_A);
    if (degrees == 0) return copyFloating(a, turned);
    const TurnLimits limits = {pixelRectOf(canvasArea(session->canvasWindow)), session->rowCount};
    return turnFloating(a, degrees, limits, turned);
}

// An outline that encloses nothing when it is turned keeps selection and angle.
void rotateSelectionBy(int degrees)
{
    if (!selectionFloats() || degrees == 0) return;
    const int rotation = addRotation(session->selectionRotation, degrees);
    FloatingSelection turned;
    if (!turnFromA(rotation % 360, turned)) return;
    if (changeSelection(turned, RENEW_B, rotation)) redrawSelection();
}

bool takeReshapedOutline(Outline& outline, PixelPoint origin)
{
    const RECT home = session->selectionHomeRect;
    FloatingSelection reshaped;
    if (!reshapeFloating(selectionState(STATE_NOW), outline, origin, editedImage(), reshaped)) return false;
    if (!changeSelection(reshaped, RENEW_A | RENEW_B, 0)) return false;
    session->selectionReshaped = !EqualRect(&home, &session->selectionRect);
    redrawSelection();
    return true;
}
