// Zooming, panning and resizing: what stays, where it ends.
#include <gtest/gtest.h>

#include <algorithm>

#include "canvas/view/view.h"
#include "tests/unit/pure/guarded_image.h"

static const ViewSize canvas = {500, 375}, photo = {4000, 3000};

static CanvasView fitted(ViewSize client, ViewSize image)
{
    return resizedView({}, client, image);
}

static bool same(const CanvasView& a, const CanvasView& b)
{
    return a.zoomStep == b.zoomStep && a.centre.x == b.centre.x && a.centre.y == b.centre.y &&
           a.client.width == b.client.width && a.client.height == b.client.height;
}

static PixelPoint firstPixel(const CanvasView& view)
{
    return imagePointAt(view, {0, 0});
}

static PixelPoint lastPixel(const CanvasView& view)
{
    return imagePointAt(view, {view.client.width - 1, view.client.height - 1});
}

static void expectInside(const CanvasView& view)
{
    ASSERT_GE(firstPixel(view).x, 0);
    ASSERT_GE(firstPixel(view).y, 0);
    ASSERT_LT(lastPixel(view).x, view.image.width);
    ASSERT_LT(lastPixel(view).y, view.image.height);
}

// Whether one more screen pixel would lie outside the image.
static bool atBorder(const CanvasView& view, bool across)
{
    const PixelRect whole = deviceRectAt(view, {0, 0, view.image.width, view.image.height});
    return across ? whole.left >= 0 || whole.right <= view.client.width
                  : whole.top >= 0 || whole.bottom <= view.client.height;
}

// Fitted, the nearest pixel to a point at the right or bottom may be one behind the last.
static PixelPoint hitPixel(const CanvasView& view, PixelPoint client)
{
    const PixelPoint hit = imagePointAt(view, client);
    return {std::min(hit.x, view.image.width - 1), std::min(hit.y, view.image.height - 1)};
}

static CanvasView zoomedTo(CanvasView view, int percent)
{
    while (viewPercent(view) != percent)
        view = steppedAboutCentre(view, 1);
    return view;
}

TEST(ViewChange, OnlyStepsLargerThanFittedExist)
{
    // Fitted shows 1:8, so that 25 % is the first step.
    EXPECT_EQ(25, viewPercent(steppedAboutCentre(fitted(canvas, photo), 1)));
    // The larger of the two scales counts: 3000 in 1600 is more than a half.
    EXPECT_EQ(67, viewPercent(steppedAboutCentre(fitted({500, 1600}, photo), 1)));
    // As large as fitted is not larger.
    EXPECT_EQ(33, viewPercent(steppedAboutCentre(fitted({1000, 750}, photo), 1)));
    // An icon that is shown forty times as large has none.
    EXPECT_FALSE(isZoomed(steppedAboutCentre(fitted({640, 640}, {16, 16}), 1)));
    EXPECT_FALSE(isZoomed(steppedAboutCentre(fitted({640, 480}, {0, 0}), 1)));
}

TEST(ViewChange, BelowTheFirstStepLiesFitted)
{
    CanvasView view = fitted(canvas, photo);
    for (int step = 1; step <= 14; ++step)
        view = steppedView(view, 1, {100, 100});
    for (int step = 14; step > 1; --step)
        view = steppedView(view, -1, {100, 100});
    EXPECT_EQ(25, viewPercent(view));
    view = steppedView(view, -1, {100, 100});
    EXPECT_FALSE(isZoomed(view));
    EXPECT_FALSE(isZoomed(steppedView(view, -1, {100, 100})));
}

TEST(ViewChange, ThePixelUnderThePointerStays)
{
    Dice dice = {11};
    int kept = 0;
    for (int round = 0; round < 20000; ++round) {
        CanvasView view =
            fitted({dice.between(1, 700), dice.between(1, 500)}, {dice.between(1, 5000), dice.between(1, 4000)});
        for (int i = dice.upTo(20); i > 0; --i) {
            const PixelPoint at = {dice.upTo(view.client.width - 1), dice.upTo(view.client.height - 1)};
            const CanvasView next = steppedView(view, dice.upTo(3) ? 1 : -1, at);
            if (isZoomed(next)) {
                expectInside(next);
                const PixelPoint before = hitPixel(view, at), after = imagePointAt(next, at);
                ASSERT_TRUE(before.x == after.x || atBorder(next, true)) << round;
                ASSERT_TRUE(before.y == after.y || atBorder(next, false)) << round;
                kept += before.x == after.x && before.y == after.y;
            }
            view = next;
        }
    }
    EXPECT_GT(kept, 50000);
}

// In and out at one point: nothing creeps.
TEST(ViewChange, ThePixelStaysThroughTheWholeLadder)
{
    CanvasView view = steppedView(fitted(canvas, photo), 1, {250, 190});
    const PixelPoint at = {207, 173}, pixel = imagePointAt(view, at);
    for (int round = 0; round < 10; ++round) {
        for (int i = 0; i < 26; ++i) {
            view = steppedView(view, i < 13 ? 1 : -1, at);
            ASSERT_EQ(pixel.x, imagePointAt(view, at).x);
            ASSERT_EQ(pixel.y, imagePointAt(view, at).y);
        }
        ASSERT_EQ(25, viewPercent(view));
    }
}

TEST(ViewChange, KeysZoomAboutTheCentre)
{
    CanvasView view = fitted({501, 376}, {4001, 3001});
    for (int i = 0; i < 14; ++i) {
        view = steppedAboutCentre(view, 1);
        // The middle column's 1, 2, 3 or 4 pixels are around the image's middle one; it shows the first of them.
        EXPECT_NEAR(2000, imagePointAt(view, {250, 188}).x, viewPercent(view) < 100 ? 2 : 0) << viewPercent(view);
        EXPECT_NEAR(1500, imagePointAt(view, {250, 188}).y, viewPercent(view) < 100 ? 1 : 0) << viewPercent(view);
    }
}

TEST(ViewChange, FullSizeIs100PercentOrFitted)
{
    EXPECT_EQ(100, viewPercent(fullSizeView(fitted(canvas, photo))));
    EXPECT_EQ(100, viewPercent(fullSizeView(zoomedTo(fitted(canvas, photo), 1600))));
    EXPECT_FALSE(isZoomed(fullSizeView(fitted({640, 640}, {320, 320}))));
    EXPECT_FALSE(isZoomed(fullSizeView(zoomedTo(fitted({640, 640}, {320, 320}), 800))));
    EXPECT_FALSE(isZoomed(fullSizeView({})));
}

TEST(ViewChange, PanningFollowsAndStopsAtTheBorders)
{
    const CanvasView view = zoomedTo(fitted(canvas, photo), 400);
    const CanvasView moved = pannedView(view, 12, -40);
    EXPECT_EQ(firstPixel(view).x + 3, firstPixel(moved).x);
    EXPECT_EQ(firstPixel(view).y - 10, firstPixel(moved).y);
    EXPECT_TRUE(same(view, pannedView(moved, -12, 40)));
    const CanvasView corner = pannedView(view, -1000000, -1000000);
    EXPECT_EQ(0, firstPixel(corner).x);
    EXPECT_EQ(0, firstPixel(corner).y);
    const CanvasView opposite = pannedView(view, 1000000, 1000000);
    EXPECT_EQ(3999, lastPixel(opposite).x);
    EXPECT_EQ(2999, lastPixel(opposite).y);
    EXPECT_TRUE(same(fitted(canvas, photo), pannedView(fitted(canvas, photo), 5, 5)));
}

TEST(ViewChange, ResizingKeepsScaleAndCentre)
{
    Dice dice = {12};
    for (int round = 0; round < 500; ++round) {
        const CanvasView view =
            pannedView(zoomedTo(fitted(canvas, photo), 200), dice.between(-2000, 2000), dice.between(-2000, 2000));
        const CanvasView other = resizedView(view, {dice.between(1, 500), dice.between(1, 375)}, photo);
        EXPECT_EQ(200, viewPercent(other));
        expectInside(other);
        EXPECT_TRUE(same(view, resizedView(other, canvas, photo))) << "no drift";
        // The old canvas's middle column stays in the middle.
        EXPECT_NEAR(imagePointAt(view, {250, 0}).x, imagePointAt(other, {other.client.width / 2, 0}).x, 1);
    }
}

TEST(ViewChange, FittedAgainWhenFitReachesTheScale)
{
    const CanvasView view = zoomedTo(fitted(canvas, photo), 50);
    EXPECT_EQ(50, viewPercent(resizedView(view, {1999, 1000}, photo)));
    EXPECT_FALSE(isZoomed(resizedView(view, {2000, 1000}, photo)));
    EXPECT_FALSE(isZoomed(resizedView(view, {1000, 1600}, photo)));
    const CanvasView back = resizedView(resizedView(view, {1000, 1600}, photo), canvas, photo);
    EXPECT_FALSE(isZoomed(back)) << "fitted stays fitted";
}
