#include "selection/selection_frame.h"

#include <algorithm>
#include <initializer_list>

#include "canvas/view/canvas_coordinates.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

FrameMetrics frameMetrics()
{
    return {GetSystemMetrics(SM_CXFRAME), GetSystemMetrics(SM_CYFRAME)};
}

BandUnit frameBand()
{
    POINT band = {2 * GetSystemMetrics(SM_CXFRAME), 2 * GetSystemMetrics(SM_CYFRAME)};
    if (!isZoomed(sessionExtras.canvas.view)) band = imagePointOf(session->canvasWindow, band);
    return {(int)band.x, (int)band.y};
}

// The record keeps each button under its own name; the layout numbers them.
static RECT SessionRecord::*const buttonFields[FRAME_BUTTON_COUNT] = {
    &SessionRecord::applyButton,        &SessionRecord::flipVerticalButton,   &SessionRecord::flipHorizontalButton,
    &SessionRecord::brighterButton,     &SessionRecord::darkerButton,         &SessionRecord::topLeftHandle,
    &SessionRecord::topRightHandle,     &SessionRecord::bottomRightHandle,    &SessionRecord::bottomLeftHandle,
    &SessionRecord::closeButton,        &SessionRecord::rotateButton,         &SessionRecord::hueDownButton,
    &SessionRecord::hueUpButton,        &SessionRecord::saturationMoreButton, &SessionRecord::saturationLessButton,
    &SessionRecord::contrastMoreButton, &SessionRecord::contrastLessButton,   &SessionRecord::liftUpButton,
    &SessionRecord::liftDownButton,
};

FrameButtons frameButtons()
{
    FrameButtons buttons;
    for (int i = 0; i < FRAME_BUTTON_COUNT; ++i)
        buttons.rects[i] = pixelRectOf(session->*buttonFields[i]);
    return buttons;
}

void layOutFrame()
{
    const FrameButtons buttons = layOutFrameButtons(pixelRectOf(session->frameOuterRect), frameBand());
    for (int i = 0; i < FRAME_BUTTON_COUNT; ++i)
        session->*buttonFields[i] = rectOf(buttons.rects[i]);
}

// What the frame encloses: the selection, or zoomed its place on the canvas, at least a pixel.
static PixelRect framedRect(const PixelRect& rect)
{
    if (!isZoomed(sessionExtras.canvas.view)) return rect;
    const PixelRect shown = deviceRectAt(sessionExtras.canvas.view, rect);
    return {shown.left, shown.top, std::max(shown.right, shown.left + 1), std::max(shown.bottom, shown.top + 1)};
}

void setSelectionRect(const PixelRect& rect)
{
    const PixelRect inner = framedRect(rect), outer = frameOuterRectOf(inner, frameMetrics());
    session->selectionRect = rectOf(rect);
    session->selectionOuterRect =
        rectOf(isZoomed(sessionExtras.canvas.view) ? imageCover(sessionExtras.canvas.view, outer) : outer);
    session->frameInnerRect = rectOf(inner);
    session->frameOuterRect = rectOf(outer);
    layOutFrame();
}

void emptySelectionRects()
{
    for (RECT* rect :
         {&session->selectionRect, &session->frameInnerRect, &session->selectionOuterRect, &session->frameOuterRect}) {
        SetRectEmpty(rect);
    }
}
