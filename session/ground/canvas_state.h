// What the canvas keeps between two messages besides the record's fields.
#pragma once

#include <windows.h>

#include "image/pixels/bits_view.h"
#include "session/ground/canvas_view.h"

// A drag of the zoomed view: canvas/pan.h.
struct PanDrag {
    bool runs, byMiddle;
    bool pressSwallowed;  // the left button went down during a middle drag
    POINT grab;
    CanvasView start;
};

// What is left of fine turns of the wheel until a whole notch has come together. A turn back starts anew.
struct WheelRest {
    int turned, tilted;
};

// The small map of the whole image: canvas/overview_map.h.
struct OverviewMap {
    HGLOBAL thumbnail;  // owned: a packed bitmap as large as the map's inside; kept while the size is the same
    bool onLeft;
    RECT place;  // on the canvas, client pixels, all 0: nowhere. Between strokes it is invalidated along with the image
};

struct CanvasState {
    CanvasView view;
    POINT pointer;           // client point of the newest press, move or release on the canvas
    PixelRect changedImage;  // what was invalidated of the image and is not in the map yet
    OverviewMap map;
    PanDrag pan;
    bool borderTimerRuns;  // BORDER_TIMER is armed
    bool mapped;           // the canvas's device context has the view's mapping
    WheelRest wheel;
    wchar_t* nameOfWindow;  // owned: the title while fitted; null while that is what the window shows
};
