#include <gtest/gtest.h>

#include <cstring>

#include "image/pixels/pixel_ops.h"
#include "selection/geometry/outline.h"
#include "selection/geometry/selection_images.h"
#include "tests/reference/outline_reference.h"
#include "tests/unit/pure/pixel_points.h"
#include "tests/unit/pure/stored_image.h"

static std::vector<ReferencePoint> pointsOf(const Outline& outline)
{
    std::vector<ReferencePoint> points;
    for (int n = 0; n < outline.pointCount; ++n)
        points.push_back({outline.points[n].x, outline.points[n].y});
    return points;
}

static void expectCrossings(const ReferenceCrossings& expected, const RowHead* table)
{
    for (int row = 0; row <= expected.rowCount; ++row) {
        std::vector<int> columns;
        const RowHead* head = crossingsOfRow(table, row);
        for (const RowHead* node = head->next; node != head; node = node->next)
            columns.push_back(node->x);
        ASSERT_EQ(expected.row(row), columns) << "row " << row;
    }
}

static void expectBounds(const ReferenceBounds& expected, const RowHead* table, PixelRect& rect)
{
    ASSERT_EQ(!expected.empty, computeCrossingBounds(table, rect));
    if (expected.empty) return;
    EXPECT_EQ(expected.left, rect.left);
    EXPECT_EQ(expected.top, rect.top);
    EXPECT_EQ(expected.right, rect.right);
    EXPECT_EQ(expected.bottom, rect.bottom);
}

// The floating images of an outline against the reference.
static void expectImages(const ReferenceOutline& expected, const RowHead* table, const reference::Picture& image)
{
    const ReferenceBounds bounds = expected.crossings.bounds();
    PixelRect rect = {};
    ASSERT_NO_FATAL_FAILURE(expectBounds(bounds, table, rect));
    if (bounds.empty) return;
    StoredImage from(image), mask(rect.right - rect.left, rect.bottom - rect.top), cut(mask.width, mask.height);
    fillSelectionMask(mask.view(), table, rect);
    EXPECT_EQ(storedRows(referenceSelectionMask(expected.crossings, bounds), 255), mask.rows);
    copyFromOffset(cut.view(), from.view(), rect.left, rect.top);
    cutSelectionImage(cut.view(), table, rect);
    EXPECT_EQ(storedRows(referenceSelectionImage(image, expected.crossings, bounds), 0xCC), cut.rows);
}

TEST(Outline, RandomOutlinesMatchTheReference)
{
    std::mt19937 random(71);
    for (int n = 0; n < 600; ++n) {
        const int width = 4 + (int)(random() % 60), height = 4 + (int)(random() % 60);
        const std::vector<ReferencePoint> given = randomOutline(random, n, width, height, 1 + (int)(random() % 80));
        // Most are released where they were dragged to; some jump at the last moment.
        const ReferencePoint release =
            n % 5 ? given.back() : ReferencePoint{1, 1 + (int)(random() % (unsigned)(height - 2))};
        const ReferenceOutline expected = referenceOutline(height, width, given, release);
        Outline outline = {};
        ASSERT_TRUE(startOutline(outline, height, PixelPoint{given[0].x, given[0].y}));
        for (size_t k = 1; k < given.size(); ++k)
            extendOutline(outline, PixelPoint{given[k].x, given[k].y});
        closeOutline(outline, PixelPoint{release.x, release.y});
        ASSERT_FALSE(outline.incomplete);
        ASSERT_EQ(expected.points, pointsOf(outline)) << "outline " << n;
        ASSERT_NO_FATAL_FAILURE(expectCrossings(expected.crossings, outline.crossings));
        ASSERT_NO_FATAL_FAILURE(expectImages(expected, outline.crossings, randomReference(random, width, height)));
        freeOutline(outline);
    }
}

TEST(Outline, AHundredThousandPointsMatchTheReference)
{
    std::mt19937 random(72);
    const int width = 500, height = 400;
    for (int shape = 0; shape < RANDOM_OUTLINE_SHAPES; ++shape) {
        // The shapes with segments as long as the image take the reference too long.
        const bool longSegments = shape == 0 || shape == 2 || shape == 5;
        const std::vector<ReferencePoint> given =
            randomOutline(random, shape, width, height, longSegments ? 1000 : 100000);
        const ReferenceOutline expected = referenceOutline(height, width, given, given.back());
        const std::vector<PixelPoint> points = asPixels(given);
        Outline outline = {};
        ASSERT_TRUE(replayOutline(outline, height, points.data(), (int)points.size()));
        EXPECT_TRUE(expected.points == pointsOf(outline)) << "shape " << shape;
        ASSERT_NO_FATAL_FAILURE(expectImages(expected, outline.crossings, randomReference(random, width, height)));
        freeOutline(outline);
    }
}

TEST(Outline, ReplayingAnOutlineGivesItAgain)
{
    std::mt19937 random(73);
    for (int n = 0; n < 60; ++n) {
        const std::vector<PixelPoint> given = asPixels(randomOutline(random, n, 50, 40, 30));
        Outline first = {}, second = {};
        ASSERT_TRUE(replayOutline(first, 40, given.data(), (int)given.size()));
        ASSERT_TRUE(replayOutline(second, 40, first.points, first.pointCount));
        EXPECT_EQ(pointsOf(first), pointsOf(second));
        freeOutline(first);
        freeOutline(second);
    }
}

TEST(Outline, CrossingsOfPointsCloseTheOutlineWithoutAddingPoints)
{
    std::mt19937 random(74);
    for (int n = 0; n < 120; ++n) {
        const std::vector<ReferencePoint> given = randomOutline(random, n, 50, 40, 1 + n % 30);
        const std::vector<PixelPoint> points = asPixels(given);
        RowHead* table = crossingsOfPoints(40, points.data(), (int)points.size());
        ASSERT_NE(nullptr, table);
        const ReferenceCrossings expected = referenceOutline(40, 50, given, given.back()).crossings;
        ASSERT_NO_FATAL_FAILURE(expectCrossings(expected, table));
        for (int y = -1; y < 42; ++y)
            for (int x = 0; x < 50; ++x)
                ASSERT_EQ(expected.inside(x, y), outlineContains(points.data(), (int)points.size(), PixelPoint{x, y}));
        freeCrossings(table);
    }
}

TEST(Outline, ClickAndReleaseAtOnePointSelectsNothing)
{
    Outline outline = {};
    ASSERT_TRUE(startOutline(outline, 20, PixelPoint{5, 5}));
    extendOutline(outline, PixelPoint{5, 5});
    closeOutline(outline, PixelPoint{5, 5});
    EXPECT_EQ(1, outline.pointCount);
    PixelRect rect;
    EXPECT_FALSE(computeCrossingBounds(outline.crossings, rect));
    freeOutline(outline);
}

TEST(Outline, OutlineAlongOneRowSelectsNothing)
{
    const PixelPoint points[] = {{5, 5}, {15, 5}, {9, 5}};
    Outline outline = {};
    ASSERT_TRUE(replayOutline(outline, 20, points, 3));
    PixelRect rect;
    EXPECT_FALSE(computeCrossingBounds(outline.crossings, rect));
    freeOutline(outline);
}

TEST(Outline, SpikeThatTouchesARowLeavesNoSpanThere)
{
    const PixelPoint points[] = {{5, 5}, {15, 5}, {15, 10}, {15, 12}, {15, 10}, {5, 10}};
    Outline outline = {};
    ASSERT_TRUE(replayOutline(outline, 20, points, 6));
    for (int row : {11, 12})
        EXPECT_EQ(crossingsOfRow(outline.crossings, row), crossingsOfRow(outline.crossings, row)->next);
    freeOutline(outline);
}

TEST(Outline, NothingHappensBeforeTheStartAndWithoutPoints)
{
    Outline outline = {};
    extendOutline(outline, PixelPoint{3, 3});
    closeOutline(outline, PixelPoint{3, 3});
    EXPECT_EQ(nullptr, outline.points);
    EXPECT_FALSE(replayOutline(outline, 10, nullptr, 0));
    EXPECT_FALSE(startOutline(outline, -1, PixelPoint{1, 1}));
    EXPECT_EQ(nullptr, outline.crossings);
}

TEST(Outline, PointArraysGrowAndCopiesGrowOn)
{
    for (int size : {1, 63, 64, 65, 127, 128, 129, 1000}) {
        PixelPoint* points = nullptr;
        int count = 0;
        while (count < size)
            ASSERT_TRUE(appendOutlinePoint(points, count, PixelPoint{count, -count}));
        PixelPoint* copy = copyOutlinePoints(points, count);
        int copied = count;
        while (copied < 3000)
            ASSERT_TRUE(appendOutlinePoint(copy, copied, PixelPoint{copied, -copied}));
        for (int n = 0; n < copied; ++n)
            ASSERT_TRUE(copy[n].x == n && copy[n].y == -n);
        freeOutlinePoints(points);
        freeOutlinePoints(copy);
    }
    EXPECT_EQ(nullptr, copyOutlinePoints(nullptr, 0));
}

TEST(Outline, PointsAtTheCanvasEdgeArePulledOnePixelInside)
{
    const PixelRect canvas = {0, 0, 100, 80};
    expectPoint(1, 1, clampToCanvas(PixelPoint{0, -5}, canvas));
    expectPoint(98, 78, clampToCanvas(PixelPoint{99, 79}, canvas));
    expectPoint(98, 78, clampToCanvas(PixelPoint{98, 500}, canvas));
    expectPoint(1, 78, clampToCanvas(PixelPoint{1, 78}, canvas));
    expectPoint(-9, -9, clampToCanvas(PixelPoint{-10, -10}, PixelRect{-10, -10, 5, 5}));
    expectPoint(1, 1, clampOutlinePoint(PixelPoint{-10, -10}, PixelRect{-10, -10, 5, 5}));
}

TEST(SelectionImages, ApplyAndComposeSkipWhatLiesOutside)
{
    std::mt19937 random(75);
    for (int n = 0; n < 400; ++n) {
        const int width = 1 + (int)(random() % 20), height = 1 + (int)(random() % 20);
        const reference::Picture image = randomReference(random, width, height);
        const reference::Picture pixels = randomReference(random, 1 + (int)(random() % 12), 1 + (int)(random() % 12));
        const reference::Picture mask = randomMask(random, pixels.width, pixels.height);
        const int left = (int)(random() % 50) - 25, top = (int)(random() % 50) - 25;
        reference::Picture applied = image, composed(pixels.width, pixels.height);
        for (int y = 0; y < pixels.height; ++y) {
            for (int x = 0; x < pixels.width; ++x) {
                const int ix = left + x, iy = top + y;
                const bool there = ix >= 0 && iy >= 0 && ix < width && iy < height;
                const bool inside = mask.at(x, y).red == 0;
                if (there) composed.at(x, y) = image.at(ix, iy);
                if (inside) composed.at(x, y) = pixels.at(x, y);
                if (there && inside) applied.at(ix, iy) = pixels.at(x, y);
            }
        }
        StoredImage target(image), source(pixels), through(mask), result(pixels.width, pixels.height);
        composeSelection(result.view(), target.view(), source.view(), through.view(),
                         PixelRect{left, top, left + pixels.width, top + pixels.height});
        EXPECT_EQ(storedRows(composed, 0xCC), result.rows);
        applySelection(target.view(), source.view(), through.view(), left, top);
        EXPECT_EQ(storedRows(applied, 0xCC), target.rows);
    }
}

TEST(SelectionImages, RebuildKeepsTheFloatingPixelsWhereTheOldOutlineWas)
{
    std::mt19937 random(76);
    for (int n = 0; n < 200; ++n) {
        const int width = 8 + (int)(random() % 30), height = 8 + (int)(random() % 30);
        const reference::Picture image = randomReference(random, width, height);
        const std::vector<ReferencePoint> given = randomOutline(random, n, width, height, 20);
        const ReferenceOutline outline = referenceOutline(height, width, given, given.back());
        const ReferenceBounds bounds = outline.crossings.bounds();
        if (bounds.empty) continue;
        const reference::Picture old = randomReference(random, 1 + (int)(random() % 20), 1 + (int)(random() % 20));
        const reference::Picture oldMask = randomMask(random, old.width, old.height);
        const int left = (int)(random() % 30) - 8, top = (int)(random() % 30) - 8;
        reference::Picture under(bounds.right - bounds.left, bounds.bottom - bounds.top);
        const reference::Picture mask = referenceSelectionMask(outline.crossings, bounds);
        for (int y = 0; y < under.height; ++y) {
            for (int x = 0; x < under.width; ++x) {
                if (mask.at(x, y).red != 0) continue;
                const int ix = bounds.left + x, iy = bounds.top + y, ox = ix - left, oy = iy - top;
                const bool inOld = ox >= 0 && oy >= 0 && ox < old.width && oy < old.height;
                if (inOld && oldMask.at(ox, oy).red == 0)
                    under.at(x, y) = old.at(ox, oy);
                else if (ix >= 0 && iy >= 0 && ix < width && iy < height)
                    under.at(x, y) = image.at(ix, iy);
            }
        }
        const std::vector<PixelPoint> points = asPixels(given);
        RowHead* table = crossingsOfPoints(height, points.data(), (int)points.size());
        StoredImage result(under.width, under.height), from(image), floating(old), through(oldMask);
        const PixelRect rect = {bounds.left, bounds.top, bounds.right, bounds.bottom};
        rebuildSelectionImage(result.view(), rect, from.view(), floating.view(), through.view(),
                              PixelRect{left, top, left + old.width, top + old.height});
        cutSelectionImage(result.view(), table, rect);
        EXPECT_EQ(storedRows(under, 0xCC), result.rows);
        freeCrossings(table);
    }
}
