#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "selection/geometry/outline_brush.h"
#include "tests/reference/outline_reference.h"
#include "tests/unit/pure/pixel_points.h"

constexpr int SIDE_LENGTH = 140;
static const PixelRect canvas = {0, 0, SIDE_LENGTH, SIDE_LENGTH};

static std::vector<ReferencePoint> asReference(const PixelPoint* points, int count)
{
    std::vector<ReferencePoint> result;
    for (int n = 0; n < count; ++n)
        result.push_back({points[n].x, points[n].y});
    return result;
}

// Which cells are selected, row by row.
static std::vector<std::vector<bool>> regionOf(const std::vector<ReferencePoint>& points)
{
    const ReferenceCrossings crossings = referenceOutline(SIDE_LENGTH, SIDE_LENGTH, points, points.back()).crossings;
    std::vector<std::vector<bool>> region(SIDE_LENGTH, std::vector<bool>(SIDE_LENGTH));
    for (int y = 0; y < SIDE_LENGTH; ++y) {
        bool inside = false;
        for (int x = 0; x < SIDE_LENGTH; ++x) {
            inside ^= crossings.cells[(size_t)y][(size_t)x];
            region[(size_t)y][(size_t)x] = inside;
        }
    }
    return region;
}

// How far a cell is from the dab's centre, as outlines see it.
static double distanceTo(const BrushDab& dab, int x, int y)
{
    return std::hypot(x + 0.5 - dab.centre.x, y - 0.5 - dab.centre.y);
}

static std::vector<ReferencePoint> square(int left, int top, int right, int bottom)
{
    return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

struct Reshaped {
    BrushResult result;
    std::vector<ReferencePoint> points;
};

static Reshaped reshape(const std::vector<ReferencePoint>& given, BrushDab dab)
{
    const std::vector<PixelPoint> points = asPixels(given);
    PixelPoint* made = nullptr;
    int count = 0;
    const BrushResult result = reshapeOutline(points.data(), (int)points.size(), dab, canvas, made, count);
    const Reshaped reshaped = {result, asReference(made, count)};
    EXPECT_EQ(result == BRUSH_RESHAPED, count > 0);
    freeOutlinePoints(made);
    return reshaped;
}

// Inside the circle everything is selected, or nothing; outside of it nothing changes. Left out is the
// rim, where the arc is rounded to pixels.
static void expectDisk(const std::vector<ReferencePoint>& before, const std::vector<ReferencePoint>& after,
                       BrushDab dab)
{
    const std::vector<std::vector<bool>> old = regionOf(before), now = regionOf(after);
    for (int y = 0; y < SIDE_LENGTH; ++y) {
        for (int x = 0; x < SIDE_LENGTH; ++x) {
            const double distance = distanceTo(dab, x, y);
            if (distance > dab.radius - 2 && distance < dab.radius + 2.5) continue;
            const bool expected = distance < dab.radius ? dab.adds : old[(size_t)y][(size_t)x];
            ASSERT_EQ(expected, now[(size_t)y][(size_t)x]) << x << ", " << y;
        }
    }
}

TEST(OutlineBrush, AddsAndCutsADiskAtAnEdge)
{
    const std::vector<ReferencePoint> region = square(30, 30, 100, 100);
    for (bool adds : {true, false}) {
        const BrushDab dab = {{99, 60}, 15, adds};
        const Reshaped reshaped = reshape(region, dab);
        ASSERT_EQ(BRUSH_RESHAPED, reshaped.result);
        expectDisk(region, reshaped.points, dab);
        for (ReferencePoint p : reshaped.points)
            EXPECT_GT(std::hypot(p.x - 99, p.y - 60), 14) << "the old edge is gone";
    }
}

TEST(OutlineBrush, NoPointInsideTheCircleChangesNothing)
{
    EXPECT_EQ(BRUSH_MISSED, reshape(square(30, 30, 100, 100), {{60, 60}, 20, true}).result);
    EXPECT_EQ(BRUSH_MISSED, reshape(square(30, 30, 100, 100), {{15, 60}, 15, false}).result);  // touches
    EXPECT_EQ(BRUSH_MISSED, reshape(square(30, 30, 100, 100), {{30, 60}, 0, true}).result);
}

TEST(OutlineBrush, AllPointsInsideGiveTheCircleOrNothing)
{
    const std::vector<ReferencePoint> region = square(60, 60, 66, 70);
    EXPECT_EQ(BRUSH_CLEARED, reshape(region, {{62, 64}, 20, false}).result);
    const BrushDab adding = {{62, 64}, 20, true};
    const Reshaped circle = reshape(region, adding);
    ASSERT_EQ(BRUSH_RESHAPED, circle.result);
    expectDisk(region, circle.points, adding);
}

// Points as far apart as after enlarging: the circle lies between two of them.
TEST(OutlineBrush, CircleBetweenTwoPointsIsFound)
{
    const std::vector<ReferencePoint> region = square(20, 20, 120, 120);
    const BrushDab dab = {{70, 22}, 10, false};
    const Reshaped reshaped = reshape(region, dab);
    ASSERT_EQ(BRUSH_RESHAPED, reshaped.result);
    expectDisk(region, reshaped.points, dab);
}

TEST(OutlineBrush, GapBetweenTwoPartsIsFilledOrWidened)
{
    // A comb: the circle meets four edges and lies over two teeth and the gap between them.
    const std::vector<ReferencePoint> comb = {{20, 100}, {20, 20}, {60, 20},  {60, 80},
                                              {72, 80},  {72, 20}, {110, 20}, {110, 100}};
    for (bool adds : {true, false}) {
        const BrushDab dab = {{64, 50}, 20, adds};
        const Reshaped reshaped = reshape(comb, dab);
        ASSERT_EQ(BRUSH_RESHAPED, reshaped.result);
        expectDisk(comb, reshaped.points, dab);
    }
}

TEST(OutlineBrush, RandomOutlinesGainOrLoseTheWholeDisk)
{
    std::mt19937 random(60);
    int reshapedCount = 0;
    for (int n = 0; n < 600; ++n) {
        const std::vector<ReferencePoint> region = randomOutline(random, n % 3, SIDE_LENGTH, SIDE_LENGTH, 3 + n % 40);
        const int radius = 2 + (int)(random() % 23);
        const int room = SIDE_LENGTH - 2 * radius - 4;
        const BrushDab dab = {
            {radius + 2 + (int)(random() % (unsigned)room), radius + 2 + (int)(random() % (unsigned)room)},
            radius,
            random() % 2 == 0};
        const Reshaped reshaped = reshape(region, dab);
        if (reshaped.result != BRUSH_RESHAPED) continue;
        reshapedCount++;
        ASSERT_NO_FATAL_FAILURE(expectDisk(region, reshaped.points, dab)) << n;
    }
    EXPECT_GT(reshapedCount, 200);
}

TEST(OutlineBrush, NewPointsStayOnTheCanvas)
{
    const Reshaped reshaped = reshape(square(2, 2, 60, 60), {{12, 12}, 24, true});
    ASSERT_EQ(BRUSH_RESHAPED, reshaped.result);
    for (ReferencePoint p : reshaped.points) {
        EXPECT_GE(p.x, 1);
        EXPECT_GE(p.y, 1);
    }
}
