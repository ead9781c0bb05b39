// What a floating selection should look like and do: a second, plain telling on top of the references,
// fed with the pointer positions that the session's thread really retrieved.
#pragma once

#include "tests/reference/colour_reference.h"
#include "tests/reference/outline_reference.h"
#include "tests/session/host_image.h"
#include "tests/session/session_driver.h"

// Between the canvas's client area and image pixels, rounded as the system rounds.
struct CanvasScale {
    SIZE image, client;
};

CanvasScale scaleOf(const Host& host, const HostImage& photo);
POINT toImage(const CanvasScale& scale, POINT client);
RECT toImage(const CanvasScale& scale, const RECT& client);
RECT toClient(const CanvasScale& scale, const RECT& image);

struct FloatingShape {
    std::vector<ReferencePoint> points;
    ReferenceCrossings crossings = ReferenceCrossings(0, 0);
    RECT rect = {0, 0, 0, 0};         // image pixels
    reference::Picture pixels, mask;  // unadjusted
};

struct SelectionModel {
    CanvasScale scale;
    std::vector<uint8_t> before;  // the host's block at the start
    reference::Picture photo;     // as it should be by now
    FloatingShape shown;
    FloatingShape base;  // as it was drawn: resizes and turns start from it
    reference::Values values = {0, 0, 50, 0, 0};
};

SelectionModel beginModel(const Host& host, const HostImage& photo);

// Closes the outline whose press, moves and release were retrieved since message `first`.
void floatDrawnOutline(SelectionModel* model, const Host& host, size_t first);

// Only where that outline lies. No picture of the photo is needed, which takes several times its memory.
RECT rectOfDrawnOutline(const CanvasScale& scale, const Host& host, size_t first);

void moveModel(SelectionModel* model, int dx, int dy);
void resizeModel(SelectionModel* model, const RECT& to);
void flipModel(SelectionModel* model, bool vertically);  // pixels and mask; not to be resized afterwards

// The whole angle since it was drawn, counter-clockwise. Tells place and mask, not the pixels.
void turnModel(SelectionModel* model, int degrees);
POINT turnCentre(const SelectionModel& model);  // client coordinates

void applyModel(SelectionModel* model);
reference::Picture adjustedPixels(const SelectionModel& model);

// The host's block as it should be.
std::vector<uint8_t> expectedBlock(const SelectionModel& model);

// ---- the frame

struct FrameMeasures {
    RECT inner, outer;  // image pixels
    POINT band;         // a button's size, image pixels
};

FrameMeasures frameOf(const SelectionModel& model);

// The button with a hit code; empty for the edges and the inside.
RECT buttonRect(const FrameMeasures& frame, int hit);

// An image pixel that has the hit code: the middle of a button, a pixel of an edge or of the inside.
POINT pixelOfHit(const FrameMeasures& frame, int hit);
