// What is done with a floating selection in a session, for outlines of 1,000 to 200,000 points and for long thin ones,
// and what they cost what is drawn beside them: a move of the pointer while an outline of so many points is being
// drawn, and a small part of the canvas painted anew.
#include "bench/bench_session.h"
#include "bench/keys.h"
#include "bench/outline_shapes.h"
#include "bench/synthetic.h"
#include "canvas/view/canvas_coordinates.h"
#include "image/bitmap_locks.h"
#include "selection/clear_selection.h"
#include "selection/geometry/frame_layout.h"
#include "selection/outline_drawing.h"
#include "selection/selection.h"
#include "selection/selection_drawing.h"
#include "selection/selection_operations.h"
#include "selection/working_outline.h"
#include "session/ground/session_record.h"

static int runs;

static void drawAgain(int size)
{
    clearSelection();
    session->rowCount = 4000;
    putOutline(makeOutline(outlineShape(size)));
    runs = 0;
}

static bool closeOnce(int)
{
    if (!floatOutline()) return false;
    redrawSelection();
    return true;
}

static void floatAgain(int size)
{
    drawAgain(size);
    closeOnce(size);
}

static bool prepareDrawing(int)
{
    return openBenchSession();
}

static bool prepareFloating(int size)
{
    if (!openBenchSession()) return false;
    floatAgain(size);
    return session->selectionActive;
}

static bool moveOnce(int)
{
    const int way = ++runs % 2 ? 7 : -7;
    moveSelectionBy(way, way);
    return true;
}

static bool resizeOnce(int size)
{
    const OutlineShape& shape = outlineShape(size);
    const int more = ++runs % 2 ? 40 : 20;
    const LONG left = shape.corner.x - 10, top = shape.corner.y - 10;
    resizeSelectionTo({left, top, left + shape.width + more, top + shape.height + more});
    return true;
}

static bool turnOnce(int)
{
    rotateSelectionBy(31);
    return true;
}

static bool flipOnce(int)
{
    runSelectionOperation(session->canvasWindow, ++runs % 2 ? HIT_FLIP_VERTICAL : HIT_FLIP_HORIZONTAL);
    return true;
}

// To and fro around 3: never neutral, and never at its limit.
static bool prepareSteps(int size)
{
    if (!prepareFloating(size)) return false;
    for (int n = 0; n < 3; ++n)
        runSelectionOperation(session->canvasWindow, HIT_HUE_UP);
    return true;
}

static bool stepOnce(int)
{
    runSelectionOperation(session->canvasWindow, ++runs % 2 ? HIT_HUE_UP : HIT_HUE_DOWN);
    return true;
}

static bool applyOnce(int)
{
    runSelectionOperation(session->canvasWindow, HIT_APPLY);
    return true;
}

static bool clearOnce(int)
{
    clearSelection();
    return !session->outlinePoints;
}

static uint32_t crcOfFloating(int)
{
    const LockedPixels pixels(session->selectionImage), mask(session->selectionMask);
    return pixels && mask ? crcOfImage(pixels.view) ^ crcOfImage(mask.view) : 0;
}

static bool prepareMoves(int size)
{
    if (!openBenchSession()) return false;
    drawAgain(size);
    return drawingRuns();
}

// To and fro: five new points a move.
static bool drawOn(int)
{
    const PixelPoint last = workingOutline().last;
    continueDrawing(session->canvasWindow, {last.x, last.y + (++runs % 2 ? 5 : -5)});
    return true;
}

// As much as a dab of 48 x 48 changes, in the middle of the selection.
static bool repaintDab(int size)
{
    const OutlineShape& shape = outlineShape(size);
    const LONG x = shape.corner.x + shape.width / 2, y = shape.corner.y + shape.height / 2;
    invalidateImageRect(session->canvasWindow, {x - 24, y - 24, x + 24, y + 24});
    return UpdateWindow(session->canvasWindow) != FALSE;
}

// Where the selection is.
static bool prepareZoomed(int size)
{
    return prepareFloating(size) && zoomBenchSession();
}

static bool pan(int)
{
    panThereAndBack();
    return true;
}

static void release(int)
{
    closeBenchSession();
}

#define KEY(name, suffix, points, size, prepare, reset, run, check)                                                    \
    {                                                                                                                  \
        name suffix, "Kpoints/s", points, size, prepare, reset, run, check, release                                    \
    }

#define ALL_SIZES(name, prepare, reset, run, check)                                                                    \
    KEY(name, "_1k", 1.008, OUTLINE_1K, prepare, reset, run, check),                                                   \
        KEY(name, "_10k", 10.07, OUTLINE_10K, prepare, reset, run, check),                                             \
        KEY(name, "_20k", 20.02, OUTLINE_20K, prepare, reset, run, check),                                             \
        KEY(name, "_100k", 100.8, OUTLINE_100K, prepare, reset, run, check),                                           \
        KEY(name, "_200k", 200.2, OUTLINE_200K, prepare, reset, run, check),                                           \
        KEY(name, "_thin_1k", 1.008, THIN_1K, prepare, reset, run, check),                                             \
        KEY(name, "_thin_10k", 8.608, THIN_10K, prepare, reset, run, check)

static const BenchKey keys[] = {
    ALL_SIZES("select_close", prepareDrawing, drawAgain, closeOnce, crcOfFloating),
    ALL_SIZES("select_move", prepareFloating, nullptr, moveOnce, nullptr),
    ALL_SIZES("select_resize", prepareFloating, nullptr, resizeOnce, crcOfFloating),
    ALL_SIZES("select_turn", prepareFloating, nullptr, turnOnce, crcOfFloating),
    ALL_SIZES("select_flip", prepareFloating, nullptr, flipOnce, crcOfFloating),
    ALL_SIZES("select_colour", prepareSteps, nullptr, stepOnce, crcOfFloating),
    ALL_SIZES("select_apply", prepareFloating, nullptr, applyOnce, nullptr),
    ALL_SIZES("select_clear", prepareFloating, floatAgain, clearOnce, nullptr),
    {"outline_move_1k", "moves/s", 1, OUTLINE_1K, prepareMoves, nullptr, drawOn, nullptr, release},
    {"outline_move_20k", "moves/s", 1, OUTLINE_20K, prepareMoves, nullptr, drawOn, nullptr, release},
    {"outline_move_100k", "moves/s", 1, OUTLINE_100K, prepareMoves, nullptr, drawOn, nullptr, release},
    {"outline_move_200k", "moves/s", 1, OUTLINE_200K, prepareMoves, nullptr, drawOn, nullptr, release},
    {"repaint_dab_floating_1k", "repaints/s", 1, OUTLINE_1K, prepareFloating, nullptr, repaintDab, nullptr, release},
    {"repaint_dab_floating_20k", "repaints/s", 1, OUTLINE_20K, prepareFloating, nullptr, repaintDab, nullptr, release},
    {"repaint_dab_floating_200k", "repaints/s", 1, OUTLINE_200K, prepareFloating, nullptr, repaintDab, nullptr,
     release},
    {"pan_step_floating_20k", "steps/s", 2, OUTLINE_20K, prepareZoomed, nullptr, pan, nullptr, release},
    {"pan_step_floating_200k", "steps/s", 2, OUTLINE_200K, prepareZoomed, nullptr, pan, nullptr, release},
    {"repaint_dab_plain", "repaints/s", 1, OUTLINE_20K, prepareDrawing, nullptr, repaintDab, nullptr, release},
};

const BenchGroup floatingKeys = {keys, sizeof keys / sizeof keys[0]};
