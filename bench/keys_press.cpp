// From the press of the button to the first pixel on the canvas, on a large photo, and beside it what one
// plain copy of that photo costs.
#include "bench/keys.h"

#include <cstdlib>
#include <initializer_list>

#include "bench/synthetic.h"
#include "canvas/canvas.h"
#include "canvas/cursor_outline.h"
#include "canvas/pointer_input.h"
#include "image/packed_bitmap.h"
#include "session/module_state.h"
#include "session/session_record.h"
#include "session/window_props.h"
#include "tools/undo_history.h"

static const char HOST_CLASS[] = "PressBenchHost";
static HGLOBAL photo, copy;
static HWND host;

static bool preparePhoto()
{
    photo = createBitmap(6000, 4000, 24);
    BYTE* bits = lockBitmapBits(photo);
    if (!bits) return false;
    const BitsView view = viewOfBits(bits, 6000, 4000);
    fillPhoto(view, 1);
    const bool right = inputIsRight(view, PHOTO1_6000X4000);
    unlockBitmap(photo);
    return right;
}

static bool prepareWindows()
{
    moduleInstance = GetModuleHandleA(nullptr);
    WNDCLASSA hostClass = {};
    hostClass.lpfnWndProc = DefWindowProcA;
    hostClass.hInstance = moduleInstance;
    hostClass.lpszClassName = HOST_CLASS;
    if (!RegisterClassA(&hostClass) || !registerCanvasClass(moduleInstance)) return false;
    host = CreateWindowExA(0, HOST_CLASS, "", WS_POPUP | WS_VISIBLE, 20, 20, 900, 600, nullptr, nullptr, moduleInstance,
                           nullptr);
    setWindowProp(host, PROP_IMAGE, photo);
    session->hostDialog = host;
    const HWND canvas = CreateWindowExA(0, CANVAS_CLASS, "", WS_CHILD | WS_VISIBLE, 0, 0, 900, 600, host, nullptr,
                                        moduleInstance, nullptr);
    if (!canvas) return false;
    UpdateWindow(canvas);
    return true;
}

// Variant: 0 Full edge, 1 Smooth edge.
static bool preparePress(int edge)
{
    session = (SessionRecord*)calloc(1, sizeof(SessionRecord));
    if (!session || !preparePhoto() || !prepareWindows()) return false;
    session->mouseInside = 1;
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
    if (host) DestroyWindow(host);
    host = nullptr;
    if (session) {
        freeUndoHistory();
        for (HGLOBAL block : {session->brushMask, session->strokeCoverage, session->strokeStartImage,
                              session->undoSnapshot, photo}) {
            if (block) GlobalFree(block);
        }
        free(session);
    }
    session = nullptr;
    photo = nullptr;
    unregisterCanvasClass(moduleInstance);
    UnregisterClassA(HOST_CLASS, moduleInstance);
}

static bool prepareCopy(int)
{
    if (!preparePhoto()) return false;
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
