// What a hand does on the canvas of a large photo: moving a brush, and bringing a part into view.
#include "bench/bench_session.h"
#include "bench/keys.h"
#include "bench/synthetic.h"
#include "canvas/pointer_input.h"
#include "canvas/view/cursor_outline.h"
#include "image/bitmap_locks.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "tools/painting/undo_history.h"

constexpr int MOVES = 400;

// Variant: an EdgeMode.
static bool prepareMoves(int edge)
{
    if (!openBenchSession()) return false;
    session->currentTool = TOOL_BRUSH;
    session->edgeMode = (uint32_t)edge;
    session->brushWidth = session->brushHeight = 48;
    session->opacity = 49;
    rebuildOutline(session->canvasWindow, 1);
    return true;
}

static void undoLastStroke(int)
{
    applyUndo(UNDO);
    UpdateWindow(session->canvasWindow);
}

// To the right and down in turns of its own, well inside the photo.
static bool moveOver(int)
{
    POINT at = {700, 600};
    pressButton(session->canvasWindow, at);
    for (uint32_t k = 0; k < MOVES; ++k) {
        at.x += 3 + (LONG)(hashPoint(k, 5, 9) % 10);
        at.y += (LONG)(hashPoint(k, 6, 9) % 11) - 3;
        movePointer(session->canvasWindow, at, true);
    }
    releaseButton(session->canvasWindow, at);
    return session->undoCount == 1;
}

static uint32_t crcOfEdited(int)
{
    const LockedPixels image(editedImage());
    return image ? crcOfImage(image.view) : 0;
}

static bool prepareRepaint(int)
{
    return openBenchSession();
}

static bool repaintQuarter(int)
{
    const RECT quarter = {225, 150, 675, 450};
    InvalidateRect(session->canvasWindow, &quarter, FALSE);
    return UpdateWindow(session->canvasWindow) != FALSE;
}

static bool prepareZoomed(int)
{
    return openBenchSession() && zoomBenchSession();
}

static bool pan(int)
{
    panThereAndBack();
    return true;
}

static void closeSession(int)
{
    closeBenchSession();
}

static const BenchKey keys[] = {
    {"moves_24mp_full", "moves/s", MOVES, EDGE_FULL, prepareMoves, undoLastStroke, moveOver, crcOfEdited, closeSession},
    {"moves_24mp_smooth", "moves/s", MOVES, EDGE_SMOOTH, prepareMoves, undoLastStroke, moveOver, crcOfEdited,
     closeSession},
    {"repaint_quarter_24mp", "repaints/s", 1, 0, prepareRepaint, nullptr, repaintQuarter, nullptr, closeSession},
    {"pan_step_24mp", "steps/s", 2, 0, prepareZoomed, nullptr, pan, nullptr, closeSession},
};

const BenchGroup canvasKeys = {keys, sizeof keys / sizeof keys[0]};
