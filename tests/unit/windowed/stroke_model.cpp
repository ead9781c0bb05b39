#include "tests/unit/windowed/stroke_model.h"

#include <algorithm>

#include "canvas/view/cursor_outline.h"
#include "canvas/painting_input.h"
#include "canvas/pointer_input.h"

using reference::Picture;

StrokeModel strokeModel(const Picture& picture)
{
    StrokeModel model = {};
    model.scene.image = model.scene.strokeStart = model.scene.original = picture;
    model.scene.coverage = plainGrid(picture.width, picture.height, 0);
    return model;
}

static bool sameFootprint(const ModelBrush& a, const ModelBrush& b)
{
    return a.tool == b.tool && a.shape == b.shape && a.width == b.width && a.height == b.height;
}

void modelBrush(StrokeModel& model, const ModelBrush& brush)
{
    if (!sameFootprint(model.brush, brush)) model.hasPatch = false;
    model.brush = brush;
}

static int scaleOf(const ModelBrush& brush)
{
    return brush.tool == TOOL_AEROGRAPHE && brush.soft ? 2 : 1;
}

static reference::Tool kernelOf(uint32_t tool)
{
    switch (tool) {
    case TOOL_BRUSH: return reference::BRUSH;
    case TOOL_SMOOTH: return reference::SMOOTH;
    case TOOL_RUBBER: return reference::RUBBER;
    case TOOL_AEROGRAPHE: return reference::SPRAY;
    default: return reference::PATCH;
    }
}

static void modelDab(StrokeModel& model, int x, int y)
{
    const ModelBrush& brush = model.brush;
    const int scale = scaleOf(brush);
    model.minX = std::min(model.minX, x);
    model.maxX = std::max(model.maxX, x);
    model.minY = std::min(model.minY, y);
    model.maxY = std::max(model.maxY, y);
    const reference::Dab dab = {kernelOf(brush.tool),         brush.soft,   x - brush.width / 2 * scale,
                                y - brush.height / 2 * scale, brush.colour, brush.opacity};
    reference::layDab(model.scene, dab, reference::brushGrid(brush.width * scale, brush.height * scale, brush.shape));
}

// A patch is never larger than the image; what lies outside the image is black.
static void pickUp(StrokeModel& model, int x, int y)
{
    const Picture& image = model.scene.image;
    const int left = x - model.brush.width / 2, top = y - model.brush.height / 2;
    Picture patch =
        plainPicture(std::min(model.brush.width, image.width), std::min(model.brush.height, image.height), {0, 0, 0});
    for (int j = 0; j < patch.height; ++j)
        for (int i = 0; i < patch.width; ++i) {
            const int sx = left + i, sy = top + j;
            if (sx >= 0 && sy >= 0 && sx < image.width && sy < image.height) patch.at(i, j) = image.at(sx, sy);
        }
    model.scene.patch = patch;
    model.hasPatch = true;
}

static void segment(StrokeModel& model)
{
    const uint32_t tool = model.brush.tool;
    if ((tool == TOOL_STAMP || tool == TOOL_SPOONBILL) && !model.hasPatch) {
        pickUp(model, model.newX, model.newY);
        if (tool == TOOL_STAMP) return;
    }
    const bool moved = model.newX != model.oldX || model.newY != model.oldY;
    if (!moved || (tool != TOOL_BRUSH && tool != TOOL_SPOONBILL)) {
        modelDab(model, model.oldX, model.oldY);
        return;
    }
    for (auto [x, y] : reference::linePoints(model.newX, model.newY, model.oldX, model.oldY))
        modelDab(model, x, y);
}

// A rectangle that leaves nothing on the image makes no step.
static void pushStep(StrokeModel& model, int left, int top, int right, int bottom)
{
    const Picture& image = model.scene.image;
    left = std::max(left, 0);
    top = std::max(top, 0);
    right = std::min(right, image.width);
    bottom = std::min(bottom, image.height);
    if (left >= right || top >= bottom) return;
    model.position = std::max(model.position, 0);
    model.steps.resize(model.position);
    model.steps.push_back({left, top, right, bottom, model.atPress});
    ++model.position;
}

static void exchange(StrokeModel& model, ModelStep& step)
{
    const Picture before = model.scene.image;
    for (int y = step.top; y < step.bottom; ++y)
        for (int x = step.left; x < step.right; ++x)
            model.scene.image.at(x, y) = step.other.at(x, y);
    step.other = before;
}

void modelPress(StrokeModel& model, int x, int y)
{
    const ModelBrush& brush = model.brush;
    model.newX = model.oldX = model.minX = model.maxX = x;
    model.newY = model.oldY = model.minY = model.maxY = y;
    model.atPress = model.scene.image;
    if (brush.tool == TOOL_SPOONBILL) model.hasPatch = false;
    if (brush.tool == TOOL_STAMP && model.hasPatch)
        pushStep(model, x - brush.width / 2, y - brush.height / 2, x + brush.width / 2, y + brush.height / 2 + 1);
    if (brush.tool == TOOL_BRUSH) {
        model.scene.coverage = plainGrid(model.scene.image.width, model.scene.image.height, 0);
        model.scene.strokeStart = model.scene.image;
    }
    segment(model);
}

void modelMove(StrokeModel& model, int x, int y)
{
    model.oldX = model.newX;
    model.oldY = model.newY;
    model.newX = x;
    model.newY = y;
    if (model.brush.tool != TOOL_STAMP) segment(model);
}

void modelTick(StrokeModel& model)
{
    segment(model);
}

void modelRelease(StrokeModel& model)
{
    const ModelBrush& brush = model.brush;
    if (brush.tool == TOOL_STAMP) return;
    const int halfWidth = brush.width / 2 * scaleOf(brush), halfHeight = brush.height / 2 * scaleOf(brush);
    pushStep(model, model.minX - halfWidth - 1, model.minY - halfHeight - 1, model.maxX + halfWidth + 1,
             model.maxY + halfHeight + 2);
}

int modelUndo(StrokeModel& model)
{
    if (model.steps.empty()) return 0;
    if (--model.position < 0) return 1;
    model.position = std::min(model.position, (int)model.steps.size() - 1);
    exchange(model, model.steps[model.position]);
    return 1;
}

int modelRedo(StrokeModel& model)
{
    if (model.steps.empty()) return 0;
    if (model.position >= (int)model.steps.size()) return 1;
    model.position = std::max(model.position, 0);
    exchange(model, model.steps[model.position++]);
    return 1;
}

void sessionBrush(const ModelBrush& brush)
{
    const bool changed = session->currentTool != brush.tool || (int)session->brushShape != brush.shape ||
                         (int)session->brushWidth != brush.width || (int)session->brushHeight != brush.height;
    session->currentTool = brush.tool;
    session->brushShape = (uint32_t)brush.shape;
    session->brushWidth = (uint32_t)brush.width;
    session->brushHeight = (uint32_t)brush.height;
    session->edgeMode = brush.soft ? EDGE_SMOOTH : EDGE_FULL;
    session->opacity = (uint32_t)brush.opacity;
    session->paintColour = colorrefOf(brush.colour);
    if (changed) rebuildOutline(session->canvasWindow, 1);
}

void sessionPress(int x, int y)
{
    pressButton(session->canvasWindow, {x, y});
}

void sessionMove(int x, int y)
{
    movePointer(session->canvasWindow, {x, y}, true);
}

void sessionTick()
{
    SendMessageA(session->canvasWindow, WM_TIMER, SPRAY_TIMER, 0);
}

void sessionRelease(int x, int y)
{
    releaseButton(session->canvasWindow, {x, y});
}

void chooseBrush(StrokeModel& model, const ModelBrush& brush)
{
    modelBrush(model, brush);
    sessionBrush(brush);
}

void press(StrokeModel& model, int x, int y)
{
    modelPress(model, x, y);
    sessionPress(x, y);
}

void move(StrokeModel& model, int x, int y)
{
    modelMove(model, x, y);
    sessionMove(x, y);
}

void tick(StrokeModel& model)
{
    modelTick(model);
    sessionTick();
}

void release(StrokeModel& model, int x, int y)
{
    modelRelease(model);
    sessionRelease(x, y);
}

reference::Pixel randomPaint(Dice& dice)
{
    return {dice.upTo(255), dice.upTo(255), dice.upTo(255)};
}

ModelBrush randomBrush(Dice& dice)
{
    static const int opacities[] = {16, 49, 100};
    return {paintingTools[dice.upTo(5)], dice.upTo(1),     dice.upTo(1) != 0, dice.between(1, 20), dice.between(1, 20),
            opacities[dice.upTo(2)],     randomPaint(dice)};
}
