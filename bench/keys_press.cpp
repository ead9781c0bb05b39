// From the press of the button to the first pixel on the canvas, on a large photo, and beside it what one
// plain copy of that photo costs.
#include "bench/bench_session.h"
#include "bench/keys.h"
#include "canvas/view/cursor_outline.h"
#include "canvas/pointer_input.h"
#include "image/packed_bitmap.h"
#include "session/ground/session_record.h"

static HGLOBAL photo, copy;

// Variant: 0 Full edge, 1 Smooth edge.
static bool preparePress(int edge)
{
    if (!openBenchSession()) return false;
    session->currentTool = TOOL_BRUSH;
    session->edgeMode = (uint32_t)edge;
    session->opacity = 49;
    rebuildOutline(session->canvasWindow, 1);
    return true;
}

static void endLastPress(int)
{
    if (session->pressActive) releaseButton(session->canvasWindow, {3000, 2000});
}

static bool pressOnce(int)
{
    pressButton(session->canvasWindow, {3000, 2000});
    return session->undoSnapshot && session->strokeCoverage;
}

static void releasePress(int)
{
    closeBenchSession();
}

static bool prepareCopy(int)
{
    photo = makeLargePhoto();
    copy = duplicateBitmap(photo, 1);
    return copy != nullptr;
}

static bool copyOnce(int)
{
    return copyBitmapInto(copy, photo) != 0;
}

static void releaseCopy(int)
{
    if (copy) GlobalFree(copy);
    if (photo) GlobalFree(photo);
    copy = photo = nullptr;
}

static const BenchKey keys[] = {
    {"press_24mp_full", "MP/s", 24, 0, preparePress, endLastPress, pressOnce, nullptr, releasePress},
    {"press_24mp_smooth", "MP/s", 24, 1, preparePress, endLastPress, pressOnce, nullptr, releasePress},
    {"press_24mp_plain_copy", "MP/s", 24, 0, prepareCopy, nullptr, copyOnce, nullptr, releaseCopy},
};

const BenchGroup pressKeys = {keys, sizeof keys / sizeof keys[0]};
