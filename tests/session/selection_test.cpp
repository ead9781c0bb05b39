// What the freehand selection does to the photo: every part of its frame pressed or dragged.
#include <algorithm>

#include "tests/session/selection_fixture.h"

typedef SelectionSession Selections;

// A colour button, and what one press of it does to the values, which stop at their limits.
struct ColourButton {
    int hit;
    int reference::Values::*value;
    int step, lowest, highest;
};

static const ColourButton colourButtons[] = {
    {BRIGHTER, &reference::Values::brightness, -5, -100, 100},
    {DARKER, &reference::Values::brightness, 5, -100, 100},
    {HUE_DOWN, &reference::Values::hue, -3, -127, 127},
    {HUE_UP, &reference::Values::hue, 3, -127, 127},
    {SATURATION_MORE, &reference::Values::saturation, -5, 0, 100},
    {SATURATION_LESS, &reference::Values::saturation, 5, 0, 100},
    {CONTRAST_MORE, &reference::Values::contrast, -5, -100, 100},
    {CONTRAST_LESS, &reference::Values::contrast, 5, -100, 100},
    {LIFT_UP, &reference::Values::lift, 1, 0, 1000},
    {LIFT_DOWN, &reference::Values::lift, -1, 0, 1000},
};

static void stepModel(SelectionModel* model, const ColourButton& button)
{
    int& value = model->values.*button.value;
    value = std::max(button.lowest, std::min(button.highest, value + button.step));
}

TEST_F(Selections, AppliedWhereTheyWereDrawnChangeNothing)
{
    for (const Size& size : sizes) {
        SCOPED_TRACE(size.name);
        openAt(size);
        draw(star);
        expectPhoto("after drawing");
        apply();
        expectPhoto("after applying");
        EXPECT_TRUE(model.before == snapshot(photo));
        closeSession();
    }
}

TEST_F(Selections, MovedAndAppliedToSeveralPlaces)
{
    for (const Size& size : sizes) {
        SCOPED_TRACE(size.name);
        openAt(size);
        draw(star);
        for (const POINT by : {POINT{31, 17}, POINT{-77, 40}, POINT{23, -90}}) {
            dragInside(by.x, by.y);
            expectPhoto("moving writes nothing");
            apply();
            expectPhoto("after applying");
        }
        EXPECT_FALSE(model.before == snapshot(photo));
        closeSession();  // gives the original bytes back
    }
}

TEST_F(Selections, EveryColourButtonStepsItsValue)
{
    for (const Size& size : sizes) {
        SCOPED_TRACE(size.name);
        openAt(size);
        draw(star);
        for (const ColourButton& button : colourButtons) {
            SCOPED_TRACE(button.hit);
            const int times = button.hit == LIFT_DOWN ? 3 : 2;  // once below 0
            for (int i = 0; i < times; ++i) {
                press(button.hit);
                stepModel(&model, button);
            }
            const std::vector<uint8_t> earlier = expectedBlock(model);
            apply();
            if (button.hit != LIFT_DOWN) {
                EXPECT_FALSE(earlier == expectedBlock(model)) << "a step shows";
            }
            expectPhoto("after the steps");
        }
        closeSession();
    }
}

TEST_F(Selections, ColoursSteppedToTheirLimitsAndBackAreTheEarlierPixels)
{
    openAt(sizes[2]);
    draw(star);
    const ColourButton &brighter = colourButtons[0], &darker = colourButtons[1];
    for (int i = 0; i < 22; ++i) {  // two beyond the limit
        press(brighter.hit);
        stepModel(&model, brighter);
    }
    EXPECT_EQ(-100, model.values.brightness);
    apply();
    expectPhoto("at the limit");
    dragInside(-60, 50);
    for (int i = 0; i < 20; ++i) {
        press(darker.hit);
        stepModel(&model, darker);
    }
    EXPECT_EQ(0, model.values.brightness);
    apply();
    expectPhoto("back at the start");
    closeSession();
}

TEST_F(Selections, FlippedBothWays)
{
    for (const Size& size : sizes) {
        SCOPED_TRACE(size.name);
        openAt(size);
        draw(star);
        for (const int hit : {FLIP_HORIZONTAL, FLIP_VERTICAL, FLIP_HORIZONTAL, FLIP_VERTICAL}) {
            press(hit);
            flipModel(&model, hit == FLIP_VERTICAL);
            apply();
            expectPhoto(hit == FLIP_VERTICAL ? "flipped vertically" : "flipped horizontally");
        }
        EXPECT_FALSE(model.before == snapshot(photo));
        closeSession();
    }
}

TEST_F(Selections, EveryEdgeAndHandleResizes)
{
    const struct {
        int hit, dx, dy;
    } drags[] = {{LEFT_EDGE, -40, 9}, {RIGHT_EDGE, 25, -9}, {TOP_EDGE, 9, -30},     {BOTTOM_EDGE, -9, 35},
                 {TOP_LEFT, 22, 14},  {TOP_RIGHT, -31, 11}, {BOTTOM_LEFT, -8, -26}, {BOTTOM_RIGHT, 19, 17}};
    for (const Size& size : sizes) {
        SCOPED_TRACE(size.name);
        openAt(size);
        draw(star);
        for (const auto& way : drags) {
            SCOPED_TRACE(way.hit);
            dragSide(way.hit, way.dx, way.dy);
            apply();
            expectPhoto("after resizing");
        }
        EXPECT_FALSE(model.before == snapshot(photo));
        closeSession();
    }
}

TEST_F(Selections, ResizedOutAndBackAreTheSamePixels)
{
    openAt(sizes[0]);
    draw(star);
    const FloatingShape drawn = model.shown;
    for (int i = 0; i < 5; ++i) {
        dragSide(BOTTOM_RIGHT, 23 + i, -40 + i);
        dragSide(TOP_LEFT, -51, 12 - 3 * i);
        dragSide(BOTTOM_RIGHT, -23 - i, 40 - i);
        dragSide(TOP_LEFT, 51, -12 + 3 * i);
    }
    ASSERT_TRUE(EqualRect(&drawn.rect, &model.shown.rect));
    model.shown = drawn;
    dragInside(60, 30);
    apply();
    expectPhoto("out and back five times");
    closeSession();
}

TEST_F(Selections, TurnedByWholeTurnsAreTheSamePixels)
{
    openAt(sizes[0]);
    draw({{200, 150}, {300, 150}, {300, 250}, {200, 250}});
    const FloatingShape drawn = model.shown;
    const POINT centre = {250, 200};
    const POINT grip = clientOfHit(ROTATE);
    const int rx = (int)(grip.x - centre.x), ry = (int)(grip.y - centre.y);
    // Once around and back to the pixel where it began, in steps that each take the shorter way.
    ASSERT_TRUE(drawStroke(
        &host,
        {grip, {centre.x + ry, centre.y - rx}, {centre.x - rx, centre.y - ry}, {centre.x - ry, centre.y + rx}, grip}));
    dragInside(40, 30);
    apply();
    expectPhoto("one turn in one drag");
    EXPECT_TRUE(model.shown.pixels.pixels == drawn.pixels.pixels);
    closeSession();
}

TEST_F(Selections, TurnedThereAndBackAreTheSamePixelsAtEveryScale)
{
    for (const Size& size : sizes) {
        SCOPED_TRACE(size.name);
        openAt(size);
        draw(star);
        for (const int wanted : {37, -120}) {
            SCOPED_TRACE(wanted);
            dragTurn(wanted);
            turnModel(&model, wanted);
            expectPhoto("turning writes nothing");
            dragTurn(-wanted);
            turnModel(&model, 0);
        }
        dragInside(-35, 28);
        apply();
        expectPhoto("there and back");
        EXPECT_FALSE(model.before == snapshot(photo));
        closeSession();
    }
}

TEST_F(Selections, TurnedPixelsStayInsideTheTurnedOutline)
{
    for (const Size& size : sizes) {
        SCOPED_TRACE(size.name);
        openAt(size);
        draw(star);
        dragTurn(63);
        turnModel(&model, 63);
        press(APPLY);
        const std::vector<uint8_t> block = snapshot(photo);
        const reference::Picture now =
            reference::fromStoredRows(&block[sizeof(BITMAPINFOHEADER)], photo.width, photo.height);
        const RECT& r = model.shown.rect;
        int inside = 0, changed = 0;
        for (int y = 0; y < now.height; ++y) {
            for (int x = 0; x < now.width; ++x) {
                const bool same = now.at(x, y) == model.photo.at(x, y);
                if (PtInRect(&r, {x, y}) && model.shown.mask.at(x - r.left, y - r.top).red == 0) {
                    ++inside;
                    changed += !same;
                } else {
                    ASSERT_TRUE(same) << x << "," << y;
                }
            }
        }
        EXPECT_GT(changed, inside / 2);
        closeSession();
    }
}

TEST_F(Selections, APressOutsideTheFrameKeepsTheSelection)
{
    openAt(sizes[1]);
    draw(star);
    ASSERT_TRUE(drawStroke(&host, {{20, 20}, {60, 30}, {40, 80}}));
    dragInside(30, 20);
    apply();
    expectPhoto("after a stroke outside");
    closeSession();
}
