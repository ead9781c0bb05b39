// What strokes, undo and redo must do to an image, told with whole pictures and the reference's dabs.
#pragma once

#include <vector>

#include "tests/reference/painting_reference.h"
#include "tests/unit/windowed/session_fixture.h"

struct ModelBrush {
    uint32_t tool;
    int shape;
    bool soft;
    int width, height;
    int opacity;
    reference::Pixel colour;
};

// The whole image on the step's other side. Undo and redo exchange no more of it than the rectangle.
struct ModelStep {
    int left, top, right, bottom;
    reference::Picture other;
};

struct StrokeModel {
    reference::Scene scene;
    ModelBrush brush;
    bool hasPatch;
    int newX, newY, oldX, oldY;  // the newest position and the one before
    int minX, maxX, minY, maxY;  // of the dab centres of this stroke
    reference::Picture atPress;
    std::vector<ModelStep> steps;
    int position;  // steps applied; negative after too many undos
};

StrokeModel strokeModel(const reference::Picture& picture);
void modelBrush(StrokeModel& model, const ModelBrush& brush);
void modelPress(StrokeModel& model, int x, int y);
void modelMove(StrokeModel& model, int x, int y);
void modelTick(StrokeModel& model);
void modelRelease(StrokeModel& model);
int modelUndo(StrokeModel& model);
int modelRedo(StrokeModel& model);

// The same done to the session.
void sessionBrush(const ModelBrush& brush);
void sessionPress(int x, int y);
void sessionMove(int x, int y);
void sessionTick();
void sessionRelease(int x, int y);

// Both, one after the other.
void chooseBrush(StrokeModel& model, const ModelBrush& brush);
void press(StrokeModel& model, int x, int y);
void move(StrokeModel& model, int x, int y);
void tick(StrokeModel& model);
void release(StrokeModel& model, int x, int y);

constexpr uint32_t paintingTools[] = {TOOL_BRUSH, TOOL_RUBBER, TOOL_AEROGRAPHE,
                                      TOOL_STAMP, TOOL_SMOOTH, TOOL_SPOONBILL};

reference::Pixel randomPaint(Dice& dice);

// Any painting tool, size, edge and opacity.
ModelBrush randomBrush(Dice& dice);
