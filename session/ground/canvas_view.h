// The value that says what the canvas shows of the image: canvas/view/view.h reads and changes it. Pure numbers.
#pragma once

#include <cstdint>

struct ViewSize {
    int width, height;
};

// In halves of an image pixel's `screen`th part, so that canvases of odd sizes have an exact centre, too.
struct ViewCentre {
    int64_t x, y;
};

// All zero: fitted, nothing to show yet; points pass unchanged.
struct CanvasView {
    ViewSize client, image;
    int zoomStep;       // 0: fitted; else the step of viewScale
    ViewCentre centre;  // zoomed: the image point at the canvas's centre
};
