// Which image pixel a screen pixel shows, and back, told a second time by looking at every screen pixel.
#include <gtest/gtest.h>

#include "canvas/view/view.h"
#include "tests/unit/pure/guarded_image.h"

// A canvas and an image that is shown in parts at every step, somewhere in the image.
static CanvasView someView(Dice& dice, int step)
{
    CanvasView view =
        resizedView({}, {dice.between(1, 60), dice.between(1, 60)}, {dice.between(300, 900), dice.between(300, 900)});
    while (view.zoomStep < step)
        view = steppedAboutCentre(view, 1);
    return pannedView(view, dice.between(-900, 900), dice.between(-900, 900));
}

static int shownAcross(const CanvasView& view, int x)
{
    return imagePointAt(view, {x, 0}).x;
}

TEST(ViewPoints, NoSizesChangeNothing)
{
    const PixelPoint point = imagePointAt({}, {-7, 31});
    EXPECT_EQ(-7, point.x);
    EXPECT_EQ(31, point.y);
    const PixelRect rect = deviceRectAt({}, {3, -4, 50, 60});
    EXPECT_EQ(3, rect.left);
    EXPECT_EQ(-4, rect.top);
    EXPECT_EQ(50, rect.right);
    EXPECT_EQ(60, rect.bottom);
}

TEST(ViewPoints, StepsAreTheseFourteen)
{
    const int percent[] = {25, 33, 50, 67, 100, 150, 200, 300, 400, 600, 800, 1200, 1600, 3200};
    CanvasView view = resizedView({}, {50, 40}, {1000, 800});
    for (int expected : percent) {
        view = steppedAboutCentre(view, 1);
        EXPECT_EQ(expected, viewPercent(view));
    }
    EXPECT_EQ(3200, viewPercent(steppedAboutCentre(view, 1))) << "beyond the last there is none";
    const ViewScale third = viewScale(2), twoThirds = viewScale(4);
    EXPECT_EQ(3, third.image * third.screen);
    EXPECT_EQ(6, twoThirds.image * twoThirds.screen);
}

// From 100 % on at the multiples of 100 every pixel is a whole block, cut only by the border.
TEST(ViewPoints, MultiplesOf100ShowWholeBlocks)
{
    Dice dice = {1};
    for (int round = 0; round < 400; ++round) {
        const CanvasView view = someView(dice, dice.between(ZOOM_STEP_100, ZOOM_STEP_COUNT));
        if (viewPercent(view) % 100) continue;
        const int block = viewPercent(view) / 100;
        int run = 1;
        bool first = true;
        for (int x = 1; x < view.client.width; ++x, ++run) {
            if (shownAcross(view, x) == shownAcross(view, x - 1)) continue;
            ASSERT_EQ(shownAcross(view, x - 1) + 1, shownAcross(view, x));
            ASSERT_LE(run, block);
            ASSERT_TRUE(first || run == block);
            first = false;
            run = 0;
        }
        ASSERT_LE(run, block);
    }
}

// Screen pixels follow each other at the scale's distance in the image.
TEST(ViewPoints, EveryScaleKeepsItsDistances)
{
    Dice dice = {2};
    for (int round = 0; round < 600; ++round) {
        const int step = dice.between(1, ZOOM_STEP_COUNT);
        const CanvasView view = someView(dice, step);
        const ViewScale scale = viewScale(step);
        for (int x = 0; x + scale.screen < view.client.width; ++x)
            ASSERT_EQ(shownAcross(view, x) + scale.image, shownAcross(view, x + scale.screen));
    }
}

TEST(ViewPoints, ARectangleIsShownByTheScreenPixelsThatShowItsPixels)
{
    Dice dice = {3};
    for (int round = 0; round < 3000; ++round) {
        const CanvasView view = someView(dice, dice.between(1, ZOOM_STEP_COUNT));
        const PixelPoint corner = imagePointAt(view, {dice.between(-20, 60), dice.between(-20, 60)});
        const PixelRect image = {corner.x, corner.y, corner.x + dice.upTo(30), corner.y + dice.upTo(30)};
        const PixelRect shown = deviceRectAt(view, image), cover = deviceCover(view, image);
        for (int x = -30; x < 90; ++x) {
            const int pixel = shownAcross(view, x);
            ASSERT_EQ(pixel >= image.left && pixel < image.right, x >= shown.left && x < shown.right);
            const int next = shownAcross(view, x + 1);  // what x shows reaches up to there
            const bool reached =
                image.left < image.right && pixel < image.right && (next > image.left || pixel >= image.left);
            ASSERT_TRUE(!reached || (x >= cover.left && x < cover.right)) << x;
        }
        ASSERT_LE(cover.left, shown.left);
        ASSERT_LE(cover.top, shown.top);
        ASSERT_GE(cover.right, shown.right);
        ASSERT_GE(cover.bottom, shown.bottom);
        ASSERT_LE(cover.right - shown.right + shown.left - cover.left, 1);
    }
}

TEST(ViewPoints, PointsLieWhereTheCornersOfRectanglesDo)
{
    Dice dice = {9};
    for (int round = 0; round < 300; ++round) {
        const CanvasView view = someView(dice, dice.between(0, ZOOM_STEP_COUNT));
        for (int i = 0; i < 20; ++i) {
            const int reach = i % 4 ? 900 : 40000000;
            const PixelPoint at = {dice.between(-reach, reach), dice.between(-reach, reach)};
            const PixelRect shown = deviceRectAt(view, {at.x, at.y, at.x + 1, at.y + 1});
            PixelPoint points[] = {at, at};
            devicePointsAt(view, points, 1);
            ASSERT_EQ(shown.left, points[0].x);
            ASSERT_EQ(shown.top, points[0].y);
            ASSERT_EQ(at.x, points[1].x) << "only as many as told";
        }
    }
}

TEST(ViewPoints, ThePixelsOfAPartOfTheCanvas)
{
    Dice dice = {4};
    for (int round = 0; round < 2000; ++round) {
        const CanvasView view = someView(dice, dice.between(1, ZOOM_STEP_COUNT));
        const int left = dice.upTo(view.client.width - 1), top = dice.upTo(view.client.height - 1);
        const PixelRect part = {left, top, dice.between(left + 1, view.client.width),
                                dice.between(top + 1, view.client.height)};
        const PixelRect pixels = imageCover(view, part);
        const PixelPoint first = imagePointAt(view, {part.left, part.top});
        const PixelPoint last = imagePointAt(view, {part.right - 1, part.bottom - 1});
        ASSERT_EQ(first.x, pixels.left);
        ASSERT_EQ(first.y, pixels.top);
        ASSERT_EQ(last.x + 1, pixels.right);
        ASSERT_EQ(last.y + 1, pixels.bottom);
    }
}
