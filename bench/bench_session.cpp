#include "bench/bench_session.h"

#include <cstdlib>
#include <initializer_list>

#include "bench/synthetic.h"
#include "canvas/canvas.h"
#include "canvas/view_change.h"
#include "image/packed_bitmap.h"
#include "session/ground/module_state.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "tools/painting/undo_history.h"

constexpr char HOST_CLASS[] = "BenchHost";
static HGLOBAL photo;
static HWND host;

HGLOBAL makeLargePhoto()
{
    const HGLOBAL image = createBitmap(6000, 4000, 24);
    BYTE* bits = lockBitmapBits(image);
    if (!bits) return nullptr;
    const BitsView view = viewOfBits(bits, 6000, 4000);
    fillPhoto(view, 1);
    const bool right = inputIsRight(view, PHOTO1_6000X4000);
    unlockBitmap(image);
    if (right) return image;
    GlobalFree(image);
    return nullptr;
}

static bool openWindows()
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
    session->mouseInside = 1;
    return true;
}

bool openBenchSession()
{
    session = (SessionRecord*)calloc(1, sizeof(SessionRecord));
    if (!session) return false;
    photo = makeLargePhoto();
    return photo && openWindows();
}

void closeBenchSession()
{
    if (host) DestroyWindow(host);
    host = nullptr;
    if (session) {
        freeUndoHistory();
        for (HGLOBAL block :
             {session->brushMask, session->strokeCoverage, session->strokeStartImage, session->undoSnapshot, photo}) {
            if (block) GlobalFree(block);
        }
        free(session);
    }
    session = nullptr;
    photo = nullptr;
    unregisterCanvasClass(moduleInstance);
    UnregisterClassA(HOST_CLASS, moduleInstance);
}

bool zoomBenchSession()
{
    CanvasView view = fullSizeView(sessionExtras.canvas.view);
    view = steppedAboutCentre(steppedAboutCentre(view, 1), 1);
    showView(session->canvasWindow, view);
    return viewPercent(view) == 200;
}

void panThereAndBack()
{
    for (int step : {37, -37})
        showView(session->canvasWindow, pannedView(sessionExtras.canvas.view, step, step));
}
