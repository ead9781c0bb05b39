#include "tests/session/selection_model.h"

#include <gtest/gtest.h>
#include <windowsx.h>

#include <algorithm>
#include <cmath>
#include <cstring>

// ---- client area and image

CanvasScale scaleOf(const Host& host, const HostImage& photo)
{
    RECT client;
    GetClientRect(host.canvas, &client);
    return {{photo.width, photo.height}, {client.right, client.bottom}};
}

static HDC mappedContext(const CanvasScale& scale)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    SetMapMode(dc, MM_ANISOTROPIC);
    SetWindowExtEx(dc, scale.image.cx, scale.image.cy, nullptr);
    SetViewportExtEx(dc, scale.client.cx, scale.client.cy, nullptr);
    return dc;
}

POINT toImage(const CanvasScale& scale, POINT client)
{
    const HDC dc = mappedContext(scale);
    DPtoLP(dc, &client, 1);
    DeleteDC(dc);
    return client;
}

RECT toImage(const CanvasScale& scale, const RECT& client)
{
    const POINT corner = toImage(scale, POINT{client.left, client.top});
    const POINT opposite = toImage(scale, POINT{client.right, client.bottom});
    return {corner.x, corner.y, opposite.x, opposite.y};
}

RECT toClient(const CanvasScale& scale, const RECT& image)
{
    RECT rect = image;
    const HDC dc = mappedContext(scale);
    LPtoDP(dc, (POINT*)&rect, 2);
    DeleteDC(dc);
    return rect;
}

SelectionModel beginModel(const Host& host, const HostImage& photo)
{
    SelectionModel model;
    model.scale = scaleOf(host, photo);
    model.before = snapshot(photo);
    model.photo = reference::fromStoredRows(&model.before[sizeof(BITMAPINFOHEADER)], photo.width, photo.height);
    return model;
}

std::vector<uint8_t> expectedBlock(const SelectionModel& model)
{
    std::vector<uint8_t> block = model.before;
    const size_t stride = ((size_t)model.photo.width * 3 + 3) & ~(size_t)3;
    const std::vector<uint8_t> rows = storedRows(model.photo, 0);
    for (int y = 0; y < model.photo.height; ++y) {  // the padding stays as it was
        memcpy(&block[sizeof(BITMAPINFOHEADER) + stride * (size_t)y], &rows[stride * (size_t)y],
               (size_t)model.photo.width * 3);
    }
    return block;
}

// ---- the outline

static int pulledInside(int value, int size)
{
    if (value <= 0) return 1;
    return value >= size - 1 ? size - 2 : value;
}

// Points are pulled inside the canvas.
static ReferencePoint pulledInside(const CanvasScale& scale, ReferencePoint point)
{
    const POINT corner = toImage(scale, POINT{scale.client.cx, scale.client.cy});
    return {pulledInside(point.x, (int)corner.x), pulledInside(point.y, (int)corner.y)};
}

// All but the first are at least 1 besides.
static ReferencePoint outlinePoint(const CanvasScale& scale, LPARAM lp, bool first)
{
    const POINT at = toImage(scale, POINT{GET_X_LPARAM(lp), GET_Y_LPARAM(lp)});
    const ReferencePoint point = pulledInside(scale, {(int)at.x, (int)at.y});
    return first ? point : ReferencePoint{std::max(point.x, 1), std::max(point.y, 1)};
}

static void cutShape(SelectionModel* model)
{
    FloatingShape& shape = model->shown;
    const ReferenceBounds bounds = shape.crossings.bounds();
    if (bounds.empty) {
        shape = FloatingShape();
        return;
    }
    shape.rect = {bounds.left, bounds.top, bounds.right, bounds.bottom};
    shape.pixels = referenceSelectionImage(model->photo, shape.crossings, bounds);
    shape.mask = referenceSelectionMask(shape.crossings, bounds);
}

static ReferenceOutline drawnOutline(const CanvasScale& scale, const Host& host, size_t first)
{
    std::vector<ReferencePoint> given;
    ReferencePoint release = {0, 0};
    for (const SeenMessage& seen : seenSince(first)) {
        if (seen.sent || seen.window != host.canvas) continue;
        if (seen.message == WM_LBUTTONDOWN) given = {outlinePoint(scale, seen.lParam, true)};
        if (seen.message == WM_MOUSEMOVE && !given.empty() && (seen.wParam & MK_LBUTTON)) {
            given.push_back(outlinePoint(scale, seen.lParam, false));
        }
        if (seen.message == WM_LBUTTONUP) release = outlinePoint(scale, seen.lParam, false);
    }
    if (given.empty()) return {{}, ReferenceCrossings(0, 0)};
    return referenceOutline(scale.image.cy, scale.image.cx, given, release);
}

void floatDrawnOutline(SelectionModel* model, const Host& host, size_t first)
{
    const ReferenceOutline outline = drawnOutline(model->scale, host, first);
    ASSERT_FALSE(outline.points.empty());
    model->shown = FloatingShape();
    model->shown.points = outline.points;
    model->shown.crossings = outline.crossings;
    cutShape(model);
    model->base = model->shown;
    model->values = {0, 0, 50, 0, 0};
}

RECT rectOfDrawnOutline(const CanvasScale& scale, const Host& host, size_t first)
{
    const ReferenceBounds bounds = drawnOutline(scale, host, first).crossings.bounds();
    return {bounds.left, bounds.top, bounds.right, bounds.bottom};
}

// ---- operations

void moveModel(SelectionModel* model, int dx, int dy)
{
    FloatingShape& shape = model->shown;
    for (ReferencePoint& p : shape.points)
        p = {std::max(p.x + dx, 1), std::max(p.y + dy, 1)};
    OffsetRect(&shape.rect, dx, dy);
}

struct Box {
    int minX, minY, maxX, maxY;
};

static Box boxOf(const std::vector<ReferencePoint>& points)
{
    Box box = {points[0].x, points[0].y, points[0].x, points[0].y};
    for (const ReferencePoint& p : points) {
        box = {std::min(box.minX, p.x), std::min(box.minY, p.y), std::max(box.maxX, p.x), std::max(box.maxY, p.y)};
    }
    return box;
}

// Where a coordinate of the base goes: its box of points is mapped by the distances to the two rectangles.
static int mapped(int value, int low, int high, int newLow, int newHigh)
{
    return high == low ? newLow : newLow + (value - low) * (newHigh - newLow) / (high - low);
}

static std::vector<ReferencePoint> mappedPoints(const FloatingShape& from, const RECT& to)
{
    const Box box = boxOf(from.points);
    const int minX = box.minX, maxX = box.maxX, minY = box.minY, maxY = box.maxY;
    std::vector<ReferencePoint> points;
    for (const ReferencePoint& p : from.points) {
        points.push_back({mapped(p.x, minX, maxX, to.left + minX - from.rect.left, to.right - from.rect.right + maxX),
                          mapped(p.y, minY, maxY, to.top + minY - from.rect.top, to.bottom - from.rect.bottom + maxY)});
    }
    return points;
}

static reference::Crossings listed(const ReferenceCrossings& crossings)
{
    reference::Crossings rows;
    for (int y = 0; y < crossings.rowCount; ++y)
        rows.push_back(crossings.row(y));
    return rows;
}

static reference::Rect rectOf(const RECT& rect)
{
    return {(int)rect.left, (int)rect.top, (int)rect.right, (int)rect.bottom};
}

void resizeModel(SelectionModel* model, const RECT& to)
{
    if (EqualRect(&to, &model->shown.rect)) return;
    const FloatingShape& base = model->base;
    FloatingShape shape;
    shape.rect = to;
    shape.points = mappedPoints(base, to);
    // Only the crossings of the lines between the points count; the points stay as many as they were.
    shape.crossings =
        referenceOutline(model->photo.height, model->photo.width, shape.points, shape.points.back()).crossings;
    reference::StoredPicture pixels = stored(reference::Picture(to.right - to.left, to.bottom - to.top)), mask = pixels;
    reference::reshapeSpans(stored(base.pixels), stored(base.mask), pixels, mask, listed(base.crossings),
                            rectOf(base.rect), listed(shape.crossings), rectOf(to));
    shape.pixels = shown(pixels);
    shape.mask = shown(mask);
    model->shown = shape;
}

// The points of the base turned about the middle of their box, rounded toward zero. What the turned
// pixels are is not told: they stay black.
void turnModel(SelectionModel* model, int degrees)
{
    if (degrees % 360 == 0) {
        model->shown = model->base;
        return;
    }
    const Box box = boxOf(model->base.points);
    const double cx = (box.minX + box.maxX) / 2.0, cy = (box.minY + box.maxY) / 2.0;
    const double angle = degrees * 3.1415926 / 180, sine = sin(angle), cosine = cos(angle);
    std::vector<ReferencePoint> turned;
    for (const ReferencePoint& p : model->base.points) {
        const ReferencePoint to = {(int)(cx + cosine * (p.x - cx) - sine * (cy - p.y)),
                                   (int)(cy - (cosine * (cy - p.y) + sine * (p.x - cx)))};
        turned.push_back(pulledInside(model->scale, to));
    }
    const ReferenceOutline outline = referenceOutline(model->photo.height, model->photo.width, turned, turned.back());
    model->shown.points = outline.points;
    model->shown.crossings = outline.crossings;
    const ReferenceBounds bounds = outline.crossings.bounds();
    model->shown.rect = {bounds.left, bounds.top, bounds.right, bounds.bottom};
    model->shown.mask = referenceSelectionMask(outline.crossings, bounds);
    model->shown.pixels = reference::Picture(model->shown.mask.width, model->shown.mask.height);
}

POINT turnCentre(const SelectionModel& model)
{
    const Box box = boxOf(model.base.points);
    const RECT at = {(box.minX + box.maxX) / 2, (box.minY + box.maxY) / 2, 0, 0};
    const RECT client = toClient(model.scale, at);
    return {client.left, client.top};
}

void flipModel(SelectionModel* model, bool vertically)
{
    FloatingShape& shape = model->shown;
    shape.pixels = vertically ? referenceFlipVertical(shape.pixels) : referenceFlipHorizontal(shape.pixels);
    shape.mask = vertically ? referenceFlipVertical(shape.mask) : referenceFlipHorizontal(shape.mask);
}

reference::Picture adjustedPixels(const SelectionModel& model)
{
    const reference::StoredPicture source = stored(model.shown.pixels), mask = stored(model.shown.mask);
    reference::StoredPicture target = source, targetMask = mask;
    reference::adjustSelection(source, mask, target, targetMask, model.values);
    return shown(target);
}

void applyModel(SelectionModel* model)
{
    const reference::Picture pixels = adjustedPixels(*model);
    const RECT& rect = model->shown.rect;
    for (int y = 0; y < pixels.height; ++y) {
        for (int x = 0; x < pixels.width; ++x) {
            const int px = x + rect.left, py = y + rect.top;
            if (px < 0 || py < 0 || px >= model->photo.width || py >= model->photo.height) continue;
            if (model->shown.mask.at(x, y).red == 0) model->photo.at(px, py) = pixels.at(x, y);
        }
    }
}

// ---- the frame

FrameMeasures frameOf(const SelectionModel& model)
{
    const int cx = GetSystemMetrics(SM_CXFRAME), cy = GetSystemMetrics(SM_CYFRAME);
    FrameMeasures frame = {model.shown.rect, model.shown.rect, toImage(model.scale, POINT{2 * cx, 2 * cy})};
    InflateRect(&frame.outer, 2 * cx + 1, 2 * cy + 1);
    return frame;
}

RECT buttonRect(const FrameMeasures& frame, int hit)
{
    const LONG L = frame.outer.left, T = frame.outer.top, R = frame.outer.right, B = frame.outer.bottom;
    const LONG dx = frame.band.x, dy = frame.band.y;
    switch (hit) {
    case 13: return {L, T, L + dx, T + dy};
    case 109: return {L + dx + 2, T, L + 3 * dx + 2, T + dy};
    case 3: return {L + 3 * dx + 4, T, L + 5 * dx + 4, T + dy};
    case 6: return {R - 5 * dx - 3, T, R - 3 * dx - 3, T + dy};
    case 7: return {R - 3 * dx - 2, T, R - dx - 2, T + dy};
    case 14: return {R - dx - 1, T, R - 1, T + dy};
    case 9: return {L, T + dy + 1, L + dx, T + 3 * dy + 1};
    case 8: return {L, T + 3 * dy + 2, L + dx, T + 5 * dy + 2};
    case 101: return {R - dx - 1, T + dy + 1, R - 1, T + 3 * dy + 1};
    case 103: return {L, B - 5 * dy - 2, L + dx, B - 3 * dy - 2};
    case 102: return {L, B - 3 * dy - 1, L + dx, B - dy - 1};
    case 106: return {R - dx - 1, B - 5 * dy - 3, R - 1, B - 3 * dy - 3};
    case 107: return {R - dx - 1, B - 3 * dy - 2, R - 1, B - dy - 2};
    case 16: return {L, B - dy, L + dx, B};
    case 104: return {L + dx + 1, B - dy - 1, L + 3 * dx + 1, B - 1};
    case 105: return {L + 3 * dx + 2, B - dy - 1, L + 5 * dx + 2, B - 1};
    case 110: return {R - 5 * dx - 2, B - dy - 1, R - 3 * dx - 2, B - 1};
    case 108: return {R - 3 * dx - 2, B - dy - 1, R - dx - 2, B - 1};
    case 17: return {R - dx - 1, B - dy, R - 1, B};
    default: return {0, 0, 0, 0};
    }
}

POINT pixelOfHit(const FrameMeasures& frame, int hit)
{
    const RECT& in = frame.inner;
    const POINT middle = {(in.left + in.right) / 2, (in.top + in.bottom) / 2};
    switch (hit) {
    case 1: return middle;
    case 10: return {in.left + frame.band.x / 2, middle.y};
    case 11: return {in.right - frame.band.x / 2, middle.y};
    case 12: return {middle.x, in.top + frame.band.y / 2};
    case 15: return {middle.x, in.bottom - frame.band.y / 2};
    }
    const RECT r = buttonRect(frame, hit);
    return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}
