#include "selection/geometry/outline_brush.h"

#include <cmath>
#include <cstdint>

#include "tools/kernels/digital_line.h"

constexpr double FULL_TURN = 6.28318530717958647692;

// Points under construction. A failure sticks.
struct PointList {
    PixelPoint* points;
    int count;
    bool failed;
};

static void add(PointList& list, PixelPoint point)
{
    if (list.count > 0) {
        const PixelPoint last = list.points[list.count - 1];
        if (last.x == point.x && last.y == point.y) return;
    }
    if (!appendOutlinePoint(list.points, list.count, point)) list.failed = true;
}

static void release(PointList& list)
{
    freeOutlinePoints(list.points);
    list = PointList{};
}

static bool isStrictlyInside(const BrushDab& dab, PixelPoint point)
{
    const int64_t dx = (int64_t)point.x - dab.centre.x, dy = (int64_t)point.y - dab.centre.y;
    return dx * dx + dy * dy < (int64_t)dab.radius * dab.radius;
}

// Every pixel of the closed outline: points that lie apart may have the circle between them.
static PointList everyPixel(const PixelPoint* points, int count)
{
    PointList all = {};
    for (int n = 0; n < count && !all.failed; ++n) {
        DigitalLine line = beginLine(points[n], points[n + 1 < count ? n + 1 : 0]);
        do
            add(all, PixelPoint{line.x, line.y});
        while (nextPoint(line));
    }
    // The round ended where it began.
    const bool closed = all.count > 1 && all.points[0].x == all.points[all.count - 1].x &&
                        all.points[0].y == all.points[all.count - 1].y;
    if (closed) all.count--;
    return all;
}

struct Arc {
    double from, turn;  // radians, clockwise on the screen; at most half a turn either way
};

static double angleAt(const BrushDab& dab, PixelPoint point)
{
    return atan2((double)point.y - dab.centre.y, (double)point.x - dab.centre.x);
}

static Arc shorterArc(const BrushDab& dab, PixelPoint enters, PixelPoint leaves)
{
    const double from = angleAt(dab, enters);
    double turn = angleAt(dab, leaves) - from;
    if (turn > FULL_TURN / 2) turn -= FULL_TURN;
    if (turn < -FULL_TURN / 2) turn += FULL_TURN;
    return Arc{from, turn};
}

static Arc otherArc(Arc arc)
{
    return Arc{arc.from, arc.turn > 0 ? arc.turn - FULL_TURN : arc.turn + FULL_TURN};
}

// Rounded to pixels of the circle; steps are shorter than a pixel.
static void addArc(PointList& list, const BrushDab& dab, Arc arc, PixelRect canvas)
{
    const int steps = 1 + (int)(2 * dab.radius * fabs(arc.turn));
    for (int n = 0; n <= steps; ++n) {
        const double angle = arc.from + arc.turn * n / steps;
        const PixelPoint point = {dab.centre.x + (int)floor(dab.radius * cos(angle) + 0.5),
                                  dab.centre.y + (int)floor(dab.radius * sin(angle) + 0.5)};
        add(list, clampOutlinePoint(point, canvas));
    }
}

// A run of inside points in the list of all, which begins with an outside point.
struct Run {
    int first, end;
};

static bool nextRun(const PointList& all, const BrushDab& dab, Run& run)
{
    int n = run.end;
    while (n < all.count && !isStrictlyInside(dab, all.points[n]))
        n++;
    if (n == all.count) return false;
    run.first = n;
    while (n < all.count && isStrictlyInside(dab, all.points[n]))
        n++;
    run.end = n;
    return true;
}

static Arc arcOfRun(const PointList& all, const BrushDab& dab, Run run)
{
    return shorterArc(dab, all.points[run.first - 1], all.points[run.end < all.count ? run.end : 0]);
}

// Index of the run with the longest arc.
static int longestArc(const PointList& all, const BrushDab& dab)
{
    int longest = -1, index = 0;
    double length = -1;
    for (Run run = {0, 0}; nextRun(all, dab, run); ++index) {
        const double turn = fabs(arcOfRun(all, dab, run).turn);
        if (turn <= length) continue;
        length = turn;
        longest = index;
    }
    return longest;
}

// Replaces every run by its shorter arc, except the run with index `flipped`.
static PointList replaceRuns(const PointList& all, const BrushDab& dab, PixelRect canvas, int flipped)
{
    PointList list = {};
    int copied = 0, index = 0;
    for (Run run = {0, 0}; nextRun(all, dab, run) && !list.failed; ++index) {
        for (; copied < run.first; ++copied)
            add(list, all.points[copied]);
        const Arc arc = arcOfRun(all, dab, run);
        addArc(list, dab, index == flipped ? otherArc(arc) : arc, canvas);
        copied = run.end;
    }
    for (; copied < all.count; ++copied)
        add(list, all.points[copied]);
    return list;
}

// Turns the list around so that it begins with an outside point. False when there is none.
static bool beginOutside(PointList& all, const BrushDab& dab)
{
    int first = 0;
    while (first < all.count && isStrictlyInside(dab, all.points[first]))
        first++;
    if (first == all.count) return false;
    PointList turned = {};
    for (int n = 0; n < all.count; ++n)
        add(turned, all.points[(first + n) % all.count]);
    turned.failed |= all.failed;
    release(all);
    all = turned;
    return true;
}

static BrushResult finish(PointList& list, PixelPoint*& reshaped, int& reshapedCount)
{
    if (list.failed) {
        release(list);
        return BRUSH_NO_MEMORY;
    }
    reshaped = list.points;
    reshapedCount = list.count;
    return BRUSH_RESHAPED;
}

static BrushResult reshapeWhole(const BrushDab& dab, PixelRect canvas, PixelPoint*& reshaped, int& reshapedCount)
{
    if (!dab.adds) return BRUSH_CLEARED;
    PointList circle = {};
    addArc(circle, dab, Arc{0, FULL_TURN}, canvas);
    return finish(circle, reshaped, reshapedCount);
}

static PointList reshapePartly(const PointList& all, const BrushDab& dab, PixelRect canvas)
{
    PointList list = replaceRuns(all, dab, canvas, -1);
    if (list.failed || outlineContains(list.points, list.count, dab.centre) == dab.adds) return list;
    release(list);
    return replaceRuns(all, dab, canvas, longestArc(all, dab));
}

BrushResult reshapeOutline(const PixelPoint* points, int count, BrushDab dab, PixelRect canvas, PixelPoint*& reshaped,
                           int& reshapedCount)
{
    reshaped = nullptr;
    reshapedCount = 0;
    PointList all = everyPixel(points, count);
    Run run = {0, 0};
    BrushResult result = BRUSH_NO_MEMORY;
    if (!all.failed && !nextRun(all, dab, run)) {
        result = BRUSH_MISSED;
    } else if (!all.failed && !beginOutside(all, dab)) {
        result = reshapeWhole(dab, canvas, reshaped, reshapedCount);
    } else if (!all.failed) {
        PointList list = reshapePartly(all, dab, canvas);
        result = finish(list, reshaped, reshapedCount);
    }
    release(all);
    return result;
}
