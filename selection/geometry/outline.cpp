#include "selection/geometry/outline.h"

#include <climits>
#include <cstdlib>
#include <cstring>

#include "image/pixels/scarce_memory.h"
#include "selection/geometry/closed_outline.h"
#include "tools/kernels/digital_line.h"

constexpr int SMALLEST_ROOM = 64;

// Room for `count` points: the next power of two.
static int64_t roomFor(int count)
{
    int64_t room = SMALLEST_ROOM;
    while (room < count)
        room *= 2;
    return room;
}

static bool samePoint(PixelPoint a, PixelPoint b)
{
    return a.x == b.x && a.y == b.y;
}

static PixelPoint* resizePoints(PixelPoint* points, int64_t room)
{
    if ((uint64_t)room > PTRDIFF_MAX / sizeof(PixelPoint)) return nullptr;
    return (PixelPoint*)resizeMemory(points, (size_t)room * sizeof(PixelPoint));
}

static bool isFull(int count)
{
    return count == 0 || (count >= SMALLEST_ROOM && (count & (count - 1)) == 0);
}

bool appendOutlinePoint(PixelPoint*& points, int& count, PixelPoint point)
{
    if (count == INT_MAX) return false;
    if (isFull(count)) {
        PixelPoint* larger = resizePoints(points, roomFor(count + 1));
        if (!larger) return false;
        points = larger;
    }
    points[count++] = point;
    return true;
}

PixelPoint* copyOutlinePoints(const PixelPoint* points, int count)
{
    if (count <= 0) return nullptr;
    PixelPoint* copy = resizePoints(nullptr, roomFor(count));
    if (copy) memcpy(copy, points, (size_t)count * sizeof(PixelPoint));
    return copy;
}

void freeOutlinePoints(PixelPoint* points)
{
    free(points);
}

static void append(Outline& outline, PixelPoint point)
{
    if (!appendOutlinePoint(outline.points, outline.pointCount, point)) outline.incomplete = true;
}

bool startOutline(Outline& outline, int rowCount, PixelPoint point)
{
    freeOutline(outline);
    outline.crossings = createCrossings(rowCount);
    if (!outline.crossings) return false;
    append(outline, point);
    if (outline.incomplete) {
        freeOutline(outline);
        return false;
    }
    outline.last = outline.start = point;
    return true;
}

// The segment's first point is there already (or is not wanted).
static void drawSegment(Outline& outline, PixelPoint from, PixelPoint to)
{
    PixelPoint previous = from;
    for (DigitalLine line = beginLine(from, to); nextPoint(line);) {
        const PixelPoint point = {line.x, line.y};
        append(outline, point);
        if (point.y != previous.y && !addCrossing(outline.crossings, previous, point)) outline.incomplete = true;
        previous = point;
    }
}

void extendOutline(Outline& outline, PixelPoint point)
{
    if (!outline.crossings || samePoint(point, outline.last)) return;
    drawSegment(outline, outline.last, point);
    outline.last = point;
}

void closeOutline(Outline& outline, PixelPoint release)
{
    if (outline.crossings) drawSegment(outline, release, outline.start);
}

void freeOutline(Outline& outline)
{
    freeCrossings(outline.crossings);
    freeOutlinePoints(outline.points);
    outline = Outline{};
}

// The points themselves are left to be written.
static bool startWithRoom(Outline& outline, const PixelPoint* points, int count)
{
    const int steps = stepsOfOutline(points, count);
    if (steps < 0 || steps == INT_MAX) return false;
    outline.points = resizePoints(nullptr, roomFor(steps + 1));
    outline.pointCount = steps + 1;
    return outline.points != nullptr;
}

bool replayOutline(Outline& outline, int rowCount, const PixelPoint* points, int count)
{
    freeOutline(outline);
    if (count <= 0 || !startWithRoom(outline, points, count)) return false;
    outline.points[0] = outline.start = points[0];
    outline.last = points[count - 1];
    outline.crossings = crossingsOfOutline(rowCount, points, count, PixelPoint{0, 0}, outline.points + 1);
    if (outline.crossings) return true;
    freeOutline(outline);
    return false;
}

static void shiftPoints(PixelPoint* points, int count, int dx, int dy)
{
    for (int n = 0; n < count; ++n)
        points[n] = PixelPoint{points[n].x + dx, points[n].y + dy};
}

bool replayOutlineAnywhere(Outline& outline, PixelPoint& origin, const PixelPoint* points, int count)
{
    const PointBox box = boxOfPoints(points, count);
    origin = PixelPoint{box.minX - 1, box.minY - 1};
    PixelPoint* shifted = copyOutlinePoints(points, count);
    if (!shifted) return false;
    shiftPoints(shifted, count, -origin.x, -origin.y);
    const bool replayed = replayOutline(outline, box.maxY - origin.y + 1, shifted, count);
    freeOutlinePoints(shifted);
    if (replayed) shiftPoints(outline.points, outline.pointCount, origin.x, origin.y);
    return replayed;
}

RowHead* crossingsOfPoints(int rowCount, const PixelPoint* points, int count, PixelPoint origin)
{
    return crossingsOfOutline(rowCount, points, count, origin, nullptr);
}

// Crossings of one segment with the pixel's row, at or left of the pixel.
static int crossingsLeftOf(PixelPoint pixel, PixelPoint from, PixelPoint to)
{
    const int upper = from.y < to.y ? from.y : to.y, lower = from.y < to.y ? to.y : from.y;
    if (upper >= pixel.y || lower < pixel.y) return 0;
    int count = 0;
    PixelPoint previous = from;
    for (DigitalLine line = beginLine(from, to); nextPoint(line);) {
        const int row = line.y > previous.y ? line.y : previous.y, column = line.x > previous.x ? line.x : previous.x;
        if (line.y != previous.y && row == pixel.y && column <= pixel.x) count++;
        previous = PixelPoint{line.x, line.y};
    }
    return count;
}

bool outlineContains(const PixelPoint* points, int count, PixelPoint pixel)
{
    int crossings = 0;
    for (int n = 0; n < count; ++n)
        crossings += crossingsLeftOf(pixel, points[n], points[n + 1 < count ? n + 1 : 0]);
    return crossings % 2 != 0;
}

PointBox boxOfPoints(const PixelPoint* points, int count)
{
    if (count <= 0) return PointBox{};
    PointBox box = {points[0].x, points[0].y, points[0].x, points[0].y};
    for (int n = 1; n < count; ++n) {
        const PixelPoint p = points[n];
        if (p.x < box.minX) box.minX = p.x;
        if (p.x > box.maxX) box.maxX = p.x;
        if (p.y < box.minY) box.minY = p.y;
        if (p.y > box.maxY) box.maxY = p.y;
    }
    return box;
}

// The order matters on a canvas of a pixel or two: the far edge wins.
static int clampAxis(int value, int first, int end)
{
    if (value <= first) value = first + 1;
    if (value >= end - 1) value = end - 2;
    return value;
}

PixelPoint clampToCanvas(PixelPoint point, PixelRect canvas)
{
    return PixelPoint{clampAxis(point.x, canvas.left, canvas.right), clampAxis(point.y, canvas.top, canvas.bottom)};
}

PixelPoint clampOutlinePoint(PixelPoint point, PixelRect canvas)
{
    const PixelPoint inside = clampToCanvas(point, canvas);
    return PixelPoint{inside.x < 1 ? 1 : inside.x, inside.y < 1 ? 1 : inside.y};
}
