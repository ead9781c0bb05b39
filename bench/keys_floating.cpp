// What is done with a floating selection in a session, for outlines of 1,000, 10,000, 20,000 and 100,000 points;
// and a move of the pointer while an outline of so many points is being drawn. The
// area that they lie in grows with them, so a steady value means time in proportion to outline plus area.
#include "bench/bench_session.h"
#include "bench/keys.h"
#include "bench/synthetic.h"
#include "image/bitmap_block.h"
#include "selection/clear_selection.h"
#include "selection/selection.h"
#include "selection/selection_operations.h"
#include "selection/selection_drawing.h"
#include "selection/outline_drawing.h"
#include "selection/working_outline.h"
#include "session/ground/session_record.h"

static const int SIDES[] = {250, 790, 2500, 1114};  // of the area, pixels
static int runs;

// Straight lines to and fro, until there are as many points as wanted.
static Outline drawnOutline(int variant)
{
    const uint32_t side = (uint32_t)SIDES[variant];
    const int wanted = (int)(side * side / 62);
    Outline outline = {};
    if (!startOutline(outline, 4000, {1500, 700})) return outline;
    PixelPoint corner = outline.start;
    for (uint32_t n = 0; outline.pointCount < wanted; ++n) {
        corner = {1500 + (int)(hashPoint(n, 1, 5) % side), 700 + (int)(hashPoint(n, 2, 5) % side)};
        extendOutline(outline, corner);
    }
    closeOutline(outline, corner);
    return outline;
}

static void drawAgain(int variant)
{
    clearSelection();
    session->rowCount = 4000;
    putOutline(drawnOutline(variant));
    runs = 0;
}

static bool closeOnce(int)
{
    if (!floatOutline()) return false;
    redrawSelection();
    return true;
}

static void floatAgain(int variant)
{
    drawAgain(variant);
    closeOnce(variant);
}

static bool prepareDrawing(int)
{
    return openBenchSession();
}

static bool prepareFloating(int variant)
{
    if (!openBenchSession()) return false;
    floatAgain(variant);
    return session->selectionActive;
}

static bool moveOnce(int)
{
    const int way = ++runs % 2 ? 7 : -7;
    moveSelectionBy(way, way);
    return true;
}

static bool resizeOnce(int variant)
{
    const int side = SIDES[variant] + (++runs % 2 ? 40 : 20);
    resizeSelectionTo({1490, 690, 1490 + side, 690 + side});
    return true;
}

static bool turnOnce(int)
{
    rotateSelectionBy(31);
    return true;
}

static bool clearOnce(int)
{
    clearSelection();
    return !session->outlinePoints;
}

static bool prepareMoves(int variant)
{
    if (!openBenchSession()) return false;
    drawAgain(variant);
    return drawingRuns();
}

// To and fro: five new points a move.
static bool drawOn(int)
{
    const PixelPoint last = workingOutline().last;
    continueDrawing(session->canvasWindow, {last.x, last.y + (++runs % 2 ? 5 : -5)});
    return true;
}

static void release(int)
{
    closeBenchSession();
}

#define FOUR_SIZES(name, prepare, reset, run)                                                                          \
    {name "_1k", "Kpoints/s", 1.008, 0, prepare, reset, run, nullptr, release},                                        \
        {name "_10k", "Kpoints/s", 10.07, 1, prepare, reset, run, nullptr, release},                                   \
        {name "_20k", "Kpoints/s", 20.02, 3, prepare, reset, run, nullptr, release},                                   \
    {                                                                                                                  \
        name "_100k", "Kpoints/s", 100.8, 2, prepare, reset, run, nullptr, release                                     \
    }

static const BenchKey keys[] = {
    FOUR_SIZES("select_close", prepareDrawing, drawAgain, closeOnce),
    FOUR_SIZES("select_move", prepareFloating, nullptr, moveOnce),
    FOUR_SIZES("select_resize", prepareFloating, nullptr, resizeOnce),
    FOUR_SIZES("select_turn", prepareFloating, nullptr, turnOnce),
    FOUR_SIZES("select_clear", prepareFloating, floatAgain, clearOnce),
    {"outline_move_1k", "moves/s", 1, 0, prepareMoves, nullptr, drawOn, nullptr, release},
    {"outline_move_20k", "moves/s", 1, 3, prepareMoves, nullptr, drawOn, nullptr, release},
    {"outline_move_100k", "moves/s", 1, 2, prepareMoves, nullptr, drawOn, nullptr, release},
};

const BenchGroup floatingKeys = {keys, sizeof keys / sizeof keys[0]};
