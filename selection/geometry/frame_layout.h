// The frame around a floating selection: where its nineteen buttons lie, what a point on it hits, and
// what a hit does. All in image pixels (the canvas's logical units); y downward.
#pragma once

#include "color/values/colour_values.h"
#include "image/pixels/bits_view.h"

// What a point of the canvas hits. The numbers are fixed.
enum FrameHit {
    HIT_NONE = 0,
    HIT_INSIDE = 1,
    HIT_APPLY = 3,
    HIT_FLIP_HORIZONTAL = 6,  // left to right
    HIT_FLIP_VERTICAL = 7,    // top to bottom
    HIT_DARKER = 8,
    HIT_BRIGHTER = 9,
    HIT_LEFT_EDGE = 10,
    HIT_RIGHT_EDGE = 11,
    HIT_TOP_EDGE = 12,
    HIT_TOP_LEFT = 13,
    HIT_TOP_RIGHT = 14,
    HIT_BOTTOM_EDGE = 15,
    HIT_BOTTOM_LEFT = 16,
    HIT_BOTTOM_RIGHT = 17,
    HIT_ROTATE = 101,
    HIT_HUE_DOWN = 102,
    HIT_HUE_UP = 103,
    HIT_SATURATION_MORE = 104,
    HIT_SATURATION_LESS = 105,
    HIT_CONTRAST_MORE = 106,
    HIT_CONTRAST_LESS = 107,
    HIT_LIFT_UP = 108,
    HIT_CLOSE = 109,
    HIT_LIFT_DOWN = 110,
};

// The buttons, in the order in which a point is tested against them.
enum FrameButton {
    FRAME_BUTTON_APPLY,
    FRAME_BUTTON_FLIP_VERTICAL,
    FRAME_BUTTON_FLIP_HORIZONTAL,
    FRAME_BUTTON_BRIGHTER,
    FRAME_BUTTON_DARKER,
    FRAME_HANDLE_TOP_LEFT,
    FRAME_HANDLE_TOP_RIGHT,
    FRAME_HANDLE_BOTTOM_RIGHT,
    FRAME_HANDLE_BOTTOM_LEFT,
    FRAME_BUTTON_CLOSE,
    FRAME_BUTTON_ROTATE,
    FRAME_BUTTON_HUE_DOWN,
    FRAME_BUTTON_HUE_UP,
    FRAME_BUTTON_SATURATION_MORE,
    FRAME_BUTTON_SATURATION_LESS,
    FRAME_BUTTON_CONTRAST_MORE,
    FRAME_BUTTON_CONTRAST_LESS,
    FRAME_BUTTON_LIFT_UP,
    FRAME_BUTTON_LIFT_DOWN,
    FRAME_BUTTON_COUNT
};

struct FrameButtons {
    PixelRect rects[FRAME_BUTTON_COUNT];
};

// What a hit starts or does.
enum FrameOperation {
    OPERATION_NONE,
    OPERATION_MOVE,
    OPERATION_RESIZE,
    OPERATION_ROTATE,
    OPERATION_CLOSE,
    OPERATION_APPLY,
    OPERATION_FLIP_VERTICAL,
    OPERATION_FLIP_HORIZONTAL,
    OPERATION_COLOUR,  // stepColourOfHit
};

// The frame's band: twice the system's frame sizes, converted to image pixels by the caller.
struct BandUnit {
    int dx, dy;
};

// The system's sizing frame, device pixels.
struct FrameMetrics {
    int cxFrame, cyFrame;
};

bool isEmptyRect(PixelRect rect);
bool rectContains(PixelRect rect, PixelPoint point);  // left and top inclusive, right and bottom not

// The selection's rectangle with its frame. The sizes are device pixels and go into image pixels
// unconverted: where a button is drawn and hit depends on it.
PixelRect frameOuterRectOf(PixelRect rect, FrameMetrics metrics);

// The gaps between the buttons are uneven, one to four pixels: a press hits where the button is seen.
FrameButtons layOutFrameButtons(PixelRect outer, BandUnit band);

int hitOfButton(int button);  // a FrameHit; HIT_NONE for no button
int hitTestFrame(PixelRect inner, PixelRect outer, const FrameButtons& buttons, BandUnit band, PixelPoint point);
FrameOperation operationOfHit(int hit);

// Steps the colour value of a button within its limits. False, and nothing changed, when the hit is no
// colour button. A value that stays at its limit counts as stepped.
bool stepColourOfHit(ColourValues& values, int hit);
