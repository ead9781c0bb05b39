#include "selection/geometry/frame_layout.h"

enum Side { NEAR_SIDE, FAR_SIDE };  // left or top; right or bottom

// One side of a button: so many band units and pixels from a side of the frame.
struct Place {
    Side side;
    int units, pixels;
};

struct ButtonRule {
    FrameHit hit;
    Place left, top, right, bottom;
};

// In the order of FrameButton.
static const ButtonRule buttonRules[] = {
    {HIT_APPLY, {NEAR_SIDE, 3, 4}, {NEAR_SIDE, 0, 0}, {NEAR_SIDE, 5, 4}, {NEAR_SIDE, 1, 0}},
    {HIT_FLIP_VERTICAL, {FAR_SIDE, -3, -2}, {NEAR_SIDE, 0, 0}, {FAR_SIDE, -1, -2}, {NEAR_SIDE, 1, 0}},
    {HIT_FLIP_HORIZONTAL, {FAR_SIDE, -5, -3}, {NEAR_SIDE, 0, 0}, {FAR_SIDE, -3, -3}, {NEAR_SIDE, 1, 0}},
    {HIT_BRIGHTER, {NEAR_SIDE, 0, 0}, {NEAR_SIDE, 1, 1}, {NEAR_SIDE, 1, 0}, {NEAR_SIDE, 3, 1}},
    {HIT_DARKER, {NEAR_SIDE, 0, 0}, {NEAR_SIDE, 3, 2}, {NEAR_SIDE, 1, 0}, {NEAR_SIDE, 5, 2}},
    {HIT_TOP_LEFT, {NEAR_SIDE, 0, 0}, {NEAR_SIDE, 0, 0}, {NEAR_SIDE, 1, 0}, {NEAR_SIDE, 1, 0}},
    {HIT_TOP_RIGHT, {FAR_SIDE, -1, -1}, {NEAR_SIDE, 0, 0}, {FAR_SIDE, 0, -1}, {NEAR_SIDE, 1, 0}},
    {HIT_BOTTOM_RIGHT, {FAR_SIDE, -1, -1}, {FAR_SIDE, -1, 0}, {FAR_SIDE, 0, -1}, {FAR_SIDE, 0, 0}},
    {HIT_BOTTOM_LEFT, {NEAR_SIDE, 0, 0}, {FAR_SIDE, -1, 0}, {NEAR_SIDE, 1, 0}, {FAR_SIDE, 0, 0}},
    {HIT_CLOSE, {NEAR_SIDE, 1, 2}, {NEAR_SIDE, 0, 0}, {NEAR_SIDE, 3, 2}, {NEAR_SIDE, 1, 0}},
    {HIT_ROTATE, {FAR_SIDE, -1, -1}, {NEAR_SIDE, 1, 1}, {FAR_SIDE, 0, -1}, {NEAR_SIDE, 3, 1}},
    {HIT_HUE_DOWN, {NEAR_SIDE, 0, 0}, {FAR_SIDE, -3, -1}, {NEAR_SIDE, 1, 0}, {FAR_SIDE, -1, -1}},
    {HIT_HUE_UP, {NEAR_SIDE, 0, 0}, {FAR_SIDE, -5, -2}, {NEAR_SIDE, 1, 0}, {FAR_SIDE, -3, -2}},
    {HIT_SATURATION_MORE, {NEAR_SIDE, 1, 1}, {FAR_SIDE, -1, -1}, {NEAR_SIDE, 3, 1}, {FAR_SIDE, 0, -1}},
    {HIT_SATURATION_LESS, {NEAR_SIDE, 3, 2}, {FAR_SIDE, -1, -1}, {NEAR_SIDE, 5, 2}, {FAR_SIDE, 0, -1}},
    {HIT_CONTRAST_MORE, {FAR_SIDE, -1, -1}, {FAR_SIDE, -5, -3}, {FAR_SIDE, 0, -1}, {FAR_SIDE, -3, -3}},
    {HIT_CONTRAST_LESS, {FAR_SIDE, -1, -1}, {FAR_SIDE, -3, -2}, {FAR_SIDE, 0, -1}, {FAR_SIDE, -1, -2}},
    {HIT_LIFT_UP, {FAR_SIDE, -3, -2}, {FAR_SIDE, -1, -1}, {FAR_SIDE, -1, -2}, {FAR_SIDE, 0, -1}},
    {HIT_LIFT_DOWN, {FAR_SIDE, -5, -2}, {FAR_SIDE, -1, -1}, {FAR_SIDE, -3, -2}, {FAR_SIDE, 0, -1}},
};
static_assert(sizeof(buttonRules) / sizeof(buttonRules[0]) == FRAME_BUTTON_COUNT, "one rule a button");

struct HitOperation {
    int firstHit, lastHit;
    FrameOperation operation;
};

static const HitOperation hitOperations[] = {
    {HIT_INSIDE, HIT_INSIDE, OPERATION_MOVE},
    {HIT_APPLY, HIT_APPLY, OPERATION_APPLY},
    {HIT_FLIP_HORIZONTAL, HIT_FLIP_HORIZONTAL, OPERATION_FLIP_HORIZONTAL},
    {HIT_FLIP_VERTICAL, HIT_FLIP_VERTICAL, OPERATION_FLIP_VERTICAL},
    {HIT_DARKER, HIT_BRIGHTER, OPERATION_COLOUR},
    {HIT_LEFT_EDGE, HIT_BOTTOM_RIGHT, OPERATION_RESIZE},
    {HIT_ROTATE, HIT_ROTATE, OPERATION_ROTATE},
    {HIT_HUE_DOWN, HIT_LIFT_UP, OPERATION_COLOUR},
    {HIT_CLOSE, HIT_CLOSE, OPERATION_CLOSE},
    {HIT_LIFT_DOWN, HIT_LIFT_DOWN, OPERATION_COLOUR},
};

struct ColourStep {
    FrameHit hit;
    int ColourValues::*value;
    int direction;
};

static const ColourStep colourSteps[] = {
    {HIT_BRIGHTER, &ColourValues::brightness, -1},
    {HIT_DARKER, &ColourValues::brightness, 1},
    {HIT_HUE_DOWN, &ColourValues::hue, -1},
    {HIT_HUE_UP, &ColourValues::hue, 1},
    {HIT_SATURATION_MORE, &ColourValues::saturation, -1},
    {HIT_SATURATION_LESS, &ColourValues::saturation, 1},
    {HIT_CONTRAST_MORE, &ColourValues::contrast, -1},
    {HIT_CONTRAST_LESS, &ColourValues::contrast, 1},
    {HIT_LIFT_UP, &ColourValues::lift, 1},
    {HIT_LIFT_DOWN, &ColourValues::lift, -1},
};

bool isEmptyRect(PixelRect rect)
{
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

bool rectContains(PixelRect rect, PixelPoint point)
{
    return point.x >= rect.left && point.x < rect.right && point.y >= rect.top && point.y < rect.bottom;
}

PixelRect frameOuterRectOf(PixelRect rect, FrameMetrics metrics)
{
    const int dx = 2 * metrics.cxFrame + 1, dy = 2 * metrics.cyFrame + 1;
    return PixelRect{rect.left - dx, rect.top - dy, rect.right + dx, rect.bottom + dy};
}

static int placed(const Place& place, int nearEdge, int farEdge, int unit)
{
    return (place.side == NEAR_SIDE ? nearEdge : farEdge) + place.units * unit + place.pixels;
}

FrameButtons layOutFrameButtons(PixelRect outer, BandUnit band)
{
    FrameButtons buttons;
    for (int n = 0; n < FRAME_BUTTON_COUNT; ++n) {
        const ButtonRule& rule = buttonRules[n];
        buttons.rects[n].left = placed(rule.left, outer.left, outer.right, band.dx);
        buttons.rects[n].top = placed(rule.top, outer.top, outer.bottom, band.dy);
        buttons.rects[n].right = placed(rule.right, outer.left, outer.right, band.dx);
        buttons.rects[n].bottom = placed(rule.bottom, outer.top, outer.bottom, band.dy);
    }
    return buttons;
}

int hitOfButton(int button)
{
    return button < 0 || button >= FRAME_BUTTON_COUNT ? HIT_NONE : buttonRules[button].hit;
}

// Left and right win over top and bottom in the corners that the handles leave free.
static int hitTestInner(PixelRect inner, BandUnit band, PixelPoint point)
{
    if (point.x <= inner.left + band.dx) return HIT_LEFT_EDGE;
    if (point.x >= inner.right - band.dx) return HIT_RIGHT_EDGE;
    if (point.y <= inner.top + band.dy) return HIT_TOP_EDGE;
    return point.y < inner.bottom - band.dy ? HIT_INSIDE : HIT_BOTTOM_EDGE;
}

int hitTestFrame(PixelRect inner, PixelRect outer, const FrameButtons& buttons, BandUnit band, PixelPoint point)
{
    if (isEmptyRect(outer) || isEmptyRect(inner) || !rectContains(outer, point)) return HIT_NONE;
    for (int n = 0; n < FRAME_BUTTON_COUNT; ++n)
        if (rectContains(buttons.rects[n], point)) return buttonRules[n].hit;
    return hitTestInner(inner, band, point);
}

FrameOperation operationOfHit(int hit)
{
    for (const HitOperation& entry : hitOperations)
        if (hit >= entry.firstHit && hit <= entry.lastHit) return entry.operation;
    return OPERATION_NONE;
}

bool stepColourOfHit(ColourValues& values, int hit)
{
    for (const ColourStep& step : colourSteps) {
        if (step.hit != hit) continue;
        stepColourValue(values, step.value, step.direction);
        return true;
    }
    return false;
}
