#include <gtest/gtest.h>

#include <cmath>

#include "image/pixels/pixel_ops.h"
#include "selection/geometry/selection_images.h"
#include "selection/geometry/selection_transform.h"
#include "selection/geometry/turn_angle.h"
#include "tests/reference/outline_reference.h"
#include "tests/reference/turn_reference.h"
#include "tests/unit/pure/pixel_points.h"
#include "tests/unit/pure/stored_image.h"

static std::vector<PixelPoint> randomPoints(std::mt19937& random, int count, int range)
{
    std::vector<PixelPoint> points;
    for (int n = 0; n < count; ++n)
        points.push_back(PixelPoint{(int)(random() % (unsigned)range), (int)(random() % (unsigned)range)});
    return points;
}

TEST(SelectionTransform, MovedPointsStayAtOneOrMore)
{
    PixelPoint points[] = {{5, 9}, {1, 1}, {40, 2}};
    movePoints(points, 3, -4, -3);
    expectPoint(1, 6, points[0]);
    expectPoint(1, 1, points[1]);
    expectPoint(36, 1, points[2]);
}

TEST(SelectionTransform, ScalingFollowsTheBoxAndTruncates)
{
    std::mt19937 random(50);
    for (int n = 0; n < 300; ++n) {
        const std::vector<PixelPoint> points = randomPoints(random, 2 + n % 20, 4000);
        const PointBox box = boxOfPoints(points.data(), (int)points.size());
        if (box.minX == box.maxX || box.minY == box.maxY) continue;
        const PixelRect from = {box.minX - 1, box.minY, box.maxX + 1, box.maxY + 1};
        const int left = (int)(random() % 3000), top = (int)(random() % 3000);
        const PixelRect to = {left, top, left + 30 + (int)(random() % 5000), top + 30 + (int)(random() % 5000)};
        std::vector<PixelPoint> scaled(points.size());
        scalePoints(points.data(), (int)points.size(), from, to, scaled.data());
        const int width = to.right - 1 - (to.left + 1), height = to.bottom - 1 - to.top;
        for (size_t k = 0; k < points.size(); ++k) {
            const double x = std::floor((points[k].x - box.minX) * (double)width / (box.maxX - box.minX));
            const double y = std::floor((points[k].y - box.minY) * (double)height / (box.maxY - box.minY));
            expectPoint(to.left + 1 + (int)x, to.top + (int)y, scaled[k]);
        }
        std::vector<PixelPoint> same = points;
        scalePoints(same.data(), (int)same.size(), from, from, same.data());
        for (size_t k = 0; k < points.size(); ++k)
            expectPoint(points[k].x, points[k].y, same[k]);
    }
}

TEST(SelectionTransform, ScalingHoldsZeroWidthsAndLargeProducts)
{
    const PixelPoint line[] = {{5, 5}, {5, 30000}, {5, 17000}};
    PixelPoint scaled[3];
    scalePoints(line, 3, PixelRect{4, 4, 6, 30001}, PixelRect{100, 4, 32000, 32001}, scaled);
    expectPoint(101, 5, scaled[0]);
    expectPoint(101, 32000, scaled[1]);
    expectPoint(101, 5 + (int)(16995LL * 31995 / 29995), scaled[2]);
    scalePoints(line, 0, PixelRect{}, PixelRect{}, scaled);
}

TEST(SelectionTransform, FlipsStayInTheirOwnBox)
{
    PixelPoint points[] = {{2, 3}, {10, 4}, {7, 9}};
    flipPointsVertically(points, 3);
    expectPoint(2, 9, points[0]);
    expectPoint(10, 8, points[1]);
    expectPoint(7, 3, points[2]);
    flipPointsHorizontally(points, 3);
    expectPoint(10, 9, points[0]);
    expectPoint(2, 8, points[1]);
    expectPoint(5, 3, points[2]);
}

TEST(SelectionTransform, TurningIsCounterClockwiseAndRoundsTowardZero)
{
    const PixelPoint points[] = {{100, 100}, {300, 100}, {300, 200}, {100, 200}};
    PixelPoint turned[4];
    turnPoints(points, 4, turnAbout(boxOfPoints(points, 4), 90), turned);
    const double angle = 90 * 3.1415926 / 180;
    for (int n = 0; n < 4; ++n) {
        const double right = points[n].x - 200, up = 150 - points[n].y;
        expectPoint((int)(200 + std::cos(angle) * right - std::sin(angle) * up),
                    (int)(150 - (std::cos(angle) * up + std::sin(angle) * right)), turned[n]);
    }
    // The upper left corner goes to the lower left one; a coordinate may fall just short of the whole number.
    EXPECT_NEAR(150, turned[0].x, 1);
    EXPECT_NEAR(250, turned[0].y, 1);
}

TEST(SelectionTransform, ElevenTurnsOfFifteenAreOneOf165)
{
    std::mt19937 random(51);
    const std::vector<PixelPoint> points = randomPoints(random, 500, 2000);
    const PointBox box = boxOfPoints(points.data(), 500);
    int rotation = 0;
    std::vector<PixelPoint> once(500), last(500);
    for (int n = 0; n < 11; ++n) {
        rotation = addRotation(rotation, 15);
        turnPoints(points.data(), 500, turnAbout(box, rotation), last.data());
    }
    turnPoints(points.data(), 500, turnAbout(box, 165), once.data());
    for (int n = 0; n < 500; ++n)
        expectPoint(once[(size_t)n].x, once[(size_t)n].y, last[(size_t)n]);
}

// Every build must turn alike: a checksum over many turns, the same number everywhere.
TEST(SelectionTransform, AllBuildsTurnAlike)
{
    std::mt19937 random(52);
    uint32_t sum = 2166136261u;
    for (int degrees = -360; degrees <= 360; ++degrees) {
        const std::vector<PixelPoint> points = randomPoints(random, 100, 6000);
        std::vector<PixelPoint> turned(100);
        turnPoints(points.data(), 100, turnAbout(boxOfPoints(points.data(), 100), degrees), turned.data());
        for (PixelPoint p : turned)
            sum = ((sum ^ (uint32_t)p.x) * 16777619u ^ (uint32_t)p.y) * 16777619u;
    }
    EXPECT_EQ(0x7c7ebc73u, sum);
}

// A selection of random outline with its source image and mask.
struct Floating {
    PixelRect rect;
    reference::Picture pixels, mask;
};

static bool makeFloating(std::mt19937& random, int shape, int size, std::vector<PixelPoint>& points, Floating& floating)
{
    const std::vector<ReferencePoint> given = randomOutline(random, shape, size, size, 12);
    const ReferenceOutline outline = referenceOutline(size, size, given, given.back());
    const ReferenceBounds bounds = outline.crossings.bounds();
    if (bounds.empty) return false;
    points = asPixels(outline.points);
    const reference::Picture image = randomReference(random, size, size);
    floating = {{bounds.left, bounds.top, bounds.right, bounds.bottom},
                referenceSelectionImage(image, outline.crossings, bounds),
                referenceSelectionMask(outline.crossings, bounds)};
    return true;
}

TEST(SelectionTransform, TurnedPixelsComeFromInsideTheOutline)
{
    std::mt19937 random(53);
    int checked = 0;
    for (int n = 0; n < 200; ++n) {
        std::vector<PixelPoint> points;
        Floating a = {{}, reference::Picture(0, 0), reference::Picture(0, 0)};
        if (!makeFloating(random, n % 3, 60, points, a)) continue;
        const int degrees = (int)(random() % 720) - 360;
        const PointBox box = boxOfPoints(points.data(), (int)points.size());
        const Turn turn = turnAbout(box, degrees);
        std::vector<PixelPoint> turned(points.size());
        turnPoints(points.data(), (int)points.size(), turn, turned.data());
        RowHead* table = crossingsOfPoints(200, turned.data(), (int)turned.size());
        PixelRect rect;
        if (computeCrossingBounds(table, rect)) {
            StoredImage target(rect.right - rect.left, rect.bottom - rect.top), mask(target.width, target.height);
            StoredImage source(a.pixels), sourceMask(a.mask);
            fillSelectionMask(mask.view(), table, rect);
            turnPixels(PlacedImage{target.view(), mask.view(), rect},
                       PlacedImage{source.view(), sourceMask.view(), a.rect}, turn);
            const ReferencePatch from = {a.rect.left, a.rect.top, a.pixels, a.mask};
            const reference::Picture result = target.picture(), resultMask = mask.picture();
            for (int y = 0; y < target.height; ++y) {
                for (int x = 0; x < target.width; ++x) {
                    const reference::Pixel p = result.at(x, y);
                    if (resultMask.at(x, y).red != 0) {
                        ASSERT_TRUE((p == reference::Pixel{0, 0, 0}));
                        continue;
                    }
                    double expected[3];
                    if (!referenceTurnedPixel(from, {turn.centreX, turn.centreY, degrees}, rect.left + x, rect.top + y,
                                              expected))
                        continue;
                    ASSERT_NEAR(expected[0], p.blue, 0.5001);
                    ASSERT_NEAR(expected[1], p.green, 0.5001);
                    ASSERT_NEAR(expected[2], p.red, 0.5001);
                    checked++;
                }
            }
        }
        freeCrossings(table);
    }
    EXPECT_GT(checked, 10000);
}

TEST(SelectionTransform, FullTurnOfPixelsIsACopy)
{
    std::mt19937 random(54);
    std::vector<PixelPoint> points;
    Floating a = {{}, reference::Picture(0, 0), reference::Picture(0, 0)};
    while (!makeFloating(random, 0, 50, points, a)) {
    }
    StoredImage target(a.pixels.width, a.pixels.height), source(a.pixels), mask(a.mask);
    turnPixels(PlacedImage{target.view(), mask.view(), a.rect}, PlacedImage{source.view(), mask.view(), a.rect},
               turnAbout(boxOfPoints(points.data(), (int)points.size()), 0));
    EXPECT_EQ(source.rows, target.rows);
}

TEST(SelectionTransform, WhereNothingIsInsideTheNearestInsidePixelServes)
{
    reference::Picture pixels(12, 1), mask(12, 1), all(12, 1);
    for (int x = 0; x < 12; ++x)
        mask.at(x, 0) = {255, 255, 255};
    mask.at(3, 0) = {0, 0, 0};
    pixels.at(3, 0) = {10, 20, 30};
    StoredImage source(pixels), sourceMask(mask), inside(all), target(12, 1);
    const PixelRect rect = {100, 50, 112, 51};
    turnPixels(PlacedImage{target.view(), inside.view(), rect}, PlacedImage{source.view(), sourceMask.view(), rect},
               turnAbout(PointBox{100, 50, 112, 51}, 0));
    for (int x = 0; x < 12; ++x) {
        const bool reached = std::abs(x - 3) <= TURN_SEARCH;
        EXPECT_EQ(reached ? (reference::Pixel{10, 20, 30}) : (reference::Pixel{0, 0, 0}), target.picture().at(x, 0))
            << x;
    }
}
